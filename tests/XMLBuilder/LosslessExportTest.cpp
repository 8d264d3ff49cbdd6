#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <xercesc/dom/DOM.hpp>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Factories.h"
#include "LosslessXML.h"
#include "XML2Partition.h"
#include "XMLBuilder/DocumentDescription.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/LoadDocument.h"
#include "tests/SampleFiles.h"
#include "tests/XMLBuilder/GoldenValues.h"
#include "tests/XMLBuilder/Support.h"

/// What lossless documents have and those of `partition2XML` lack, and that nothing is lost on the way back.
namespace Vantor::XMLBuilder {
namespace {

using LosslessXML::ExportOptions;
using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using testing::StartsWith;
using XMLUtils::EncodingType;
using namespace Types::Identifiers;

ExportOptions optionsOf(Flags flags) { return {flags.nestStrongReferences, flags.excludeNonStructural}; }

/// The document as `exported` gives it, without its description.
std::string losslesslyExported(PartitionMetadata& partition, Flags flags = kNested) {
  const std::string text = LosslessXML::exportBytes(partition, optionsOf(flags), EncodingType::kUTF8);
  EXPECT_THAT(text, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?><?mxfxml form="));
  const auto end = text.find("?><s377m:MetadataSets");
  return end == std::string::npos ? text : text.substr(end + 2);
}
std::string losslesslyExported(const TestPartition& partition, Flags flags = kNested) {
  return losslesslyExported(*partition, flags);
}

/// Reads a document into an empty partition.
class Reimported {
 public:
  Reimported(const std::string& document, SharedPtr<const MetaMetadata::Dictionary> dictionary)
      : partition_(std::move(dictionary)) {
    result_ = LosslessXML::Document::fromBytes(document.data(), document.size()).import(partition_);
  }
  PartitionMetadata& operator*() { return partition_; }
  std::vector<std::string> messages() const {
    std::vector<std::string> texts;
    for (const auto& diagnostic : result_.diagnostics) texts.push_back(describe(diagnostic));
    return texts;
  }

 private:
  PartitionMetadata partition_;
  LosslessXML::Import result_;
};

Reimported reimported(PartitionMetadata& partition, Flags flags) {
  return {LosslessXML::exportBytes(partition, optionsOf(flags), EncodingType::kUTF8),
          partition.partitionDictionary().dictionary()};
}

void expectNothingLost(PartitionMetadata& partition) {
  for (const auto& flags : {kNested, kFlat}) {
    auto copy = reimported(partition, flags);
    EXPECT_THAT(copy.messages(), testing::IsEmpty());
    EXPECT_EQ(comparePartitions(partition, *copy).differences.size(), 0u)
        << (flags.nestStrongReferences ? "nested" : "flat");
  }
}

// The description.

TEST(LosslessExport, IsTheOrdinaryDocumentBehindItsDescriptionWhereNothingIsHidden) {
  TestDictionary dictionary;
  dictionary.property("Number", kUInt32).property("Strong", kStrongReference).property("Weak", kWeakReference);
  TestPartition partition(dictionary.set("Preface", {"Number", "Strong", "Weak"}).set("A"));
  partition.add("Preface", 1).value("Number", Types::UInt32(7)).refer("Strong", 2).refer("Weak", 1).unknown(0x7fff);
  partition.add("A", 2);
  partition.add("A", 3);
  partition.addDarkSet({1, 2});
  for (const auto& flags : kAllFlags) EXPECT_EQ(losslesslyExported(partition, flags), exported(partition, flags));
}

/// The data of the processing instruction in front of the root.
wstring descriptionIn(const std::string& document) {
  const XMLUtils::Holder<xercesc::DOMLSParser> parser(
      XMLUtils::Initializer::instance().domImplementation().createLSParser(
          xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr));
  const auto* loaded =
      XMLUtils::loadDocumentFromBuffer(reinterpret_cast<const uint8*>(document.data()), document.size(), *parser);
  const auto* first = loaded->getFirstChild();
  if (first->getNodeType() != xercesc::DOMNode::PROCESSING_INSTRUCTION_NODE) return {};
  EXPECT_EQ(std::u16string_view(first->getNodeName()), u"mxfxml");
  return first->getNodeValue();
}

TestPartition smallPartition() {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface").set("A"));
  partition.add("Preface", 1);
  partition.add("A", 2);
  return partition;
}

TEST(LosslessExport, DescribesTheDocumentInEveryEncoding) {
  const auto partition = smallPartition();
  ExportOptions options{false, true};
  options.start = partition->sets()[1];
  options.partition = "footer";
  for (const auto encoding :
       {EncodingType::kUTF8, EncodingType::kUTF8Indented, EncodingType::kUTF16, EncodingType::kUTF16Indented}) {
    const auto read = parseDescription(descriptionIn(LosslessXML::exportBytes(*partition, options, encoding)));
    ASSERT_TRUE(read);
    EXPECT_FALSE(read->isNested);
    EXPECT_TRUE(read->isStructuralOnly);
    EXPECT_EQ(read->start, uid(2));
    EXPECT_EQ(read->partition, "footer");
    EXPECT_EQ(read->vocabulary, MetaMetadata::Vocabulary::kLegacy);
    EXPECT_EQ(read->digest, digestOf(*partition));
  }
}

TEST(LosslessExport, PutsTheDescriptionOnALineOfItsOwnInIndentedText) {
  const auto partition = smallPartition();
  EXPECT_THAT(LosslessXML::exportBytes(*partition, {}, EncodingType::kUTF8Indented),
              testing::MatchesRegex("<.xml version=\"1.0\" encoding=\"UTF-8\".>\n"
                                    "<.mxfxml form=\"nested\" sets=\"all\" partition=\"header\" vocabulary=\"legacy\" "
                                    "metadata=\"[0-9A-F]*\".>\n"
                                    "<s377m:MetadataSets (.|\n)*"));
}

TEST(LosslessExport, NamesNoStartForThePrefaceAndTheVocabularyOfTheDictionary) {
  PartitionMetadata partition(builtInDictionary(MetaMetadata::Vocabulary::kST434_2014));
  ExportOptions options;
  options.start =
      partition.createMetadataSet(partition.partitionDictionary().dictionary()->findSetBySymbol("Preface")->key());
  const auto read = parseDescription(descriptionIn(LosslessXML::exportBytes(partition, options, EncodingType::kUTF8)));
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->start);
  EXPECT_EQ(read->vocabulary, MetaMetadata::Vocabulary::kST434_2014);
}

TEST(LosslessExport, DescribesNothingWhereTheStartHasNoIdentifier) {
  const auto partition = smallPartition();
  dynamic_cast<SimpleElement&>(*partition->sets()[1]->begin()).set(nullptr, false);
  ExportOptions options;
  options.start = partition->sets()[1];
  EXPECT_EQ(descriptionIn(LosslessXML::exportBytes(*partition, options, EncodingType::kUTF8)), u"");
}

TEST(LosslessExport, IsEmptyWithoutASetToStartFrom) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface").set("A"));
  partition.add("A", 2);
  EXPECT_EQ(LosslessXML::exportDocument(*partition, {}), nullptr);
  EXPECT_EQ(LosslessXML::exportBytes(*partition, {}, EncodingType::kUTF8), "");
}

// References.

TestPartition withReferences() {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference).property("Other", kStrongReference).property("Weak", kWeakReference);
  dictionary.property("Strongs", arrayOf(kStrongReference));
  const std::vector<Listed> listed = {"Strong", "Other", "Weak", "Strongs"};
  return TestPartition(dictionary.set("Preface", listed).set("A", listed).descriptive("Descriptive", listed));
}

TEST(LosslessExport, ADarkTargetIsPointedAt) {
  const auto partition = withReferences();
  partition.add("Preface", 1).refer("Strong", 9).refer("Weak", 9).refer("Strongs", 9).refer("Strongs", 2);
  partition.add("A", 2);
  partition.addDarkGroup(9);
  EXPECT_XML(losslesslyExported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Strong><s377m:Dangling_REF types:TargetInstance="{9}"/></p:Strong>
        <p:Weak><s377m:Dangling_REF types:TargetInstance="{9}"/></p:Weak>
        <p:Strongs><s377m:Dangling_REF types:TargetInstance="{9}"/><p:A rp210:InstanceUID="{2}"/></p:Strongs>
      </p:Preface>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4" groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">
          3C0A001000000000000000000000000000000009
        </groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  EXPECT_THAT(exported(partition), testing::HasSubstr("<p:Strong/><p:Weak/><p:Strongs><p:A "));
  expectNothingLost(*partition);
}

TEST(LosslessExport, ATargetThatStandsElsewhereIsPointedAt) {
  const auto partition = withReferences();
  partition.add("Preface", 1).refer("Strong", 2).refer("Other", 2).refer("Strongs", 1).refer("Strongs", 2);
  partition.add("A", 2).refer("Strong", 2);
  EXPECT_XML(losslesslyExported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Strong>
          <p:A rp210:InstanceUID="{2}"><p:Strong><p:A_REF types:TargetInstance="{2}"/></p:Strong></p:A>
        </p:Strong>
        <p:Other><p:A_REF types:TargetInstance="{2}"/></p:Other>
        <p:Strongs>
          <p:Preface_REF types:TargetInstance="{1}"/><p:A_REF types:TargetInstance="{2}"/>
        </p:Strongs>
      </p:Preface>
    </s377m:MetadataSets>)");
  EXPECT_THAT(exported(partition), testing::HasSubstr("<p:Other/><p:Strongs/>"));
  expectNothingLost(*partition);
}

TEST(LosslessExport, APointerNamesNoSetWhereSeveralCarryTheIdentifier) {
  const auto partition = withReferences();
  partition.add("Preface", 1).refer("Strong", 2).refer("Other", 2);
  partition.add("A", 2);
  partition.add("A", 2);
  EXPECT_THAT(losslesslyExported(partition),
              testing::HasSubstr(xml("<MULTIPLE_METADATASETS_REF xmlns=\"urn:p\" types:TargetInstance=\"{2}\"/>")));
}

TEST(LosslessExport, AReferenceThatIsLeftOutStaysLeftOut) {
  const auto partition = withReferences();
  partition.add("Preface", 1).refer("Strong", 3).refer("Other", 3).refer("Weak", 9).refer("Strongs", 3);
  partition.add("Descriptive", 3);
  partition.addDarkGroup(9);
  EXPECT_EQ(losslesslyExported(partition, kNestedStructural), exported(partition, kNestedStructural));
}

TEST(LosslessExport, WritesMisplacedReferencesAsOthersToo) {
  const auto partition = withReferences();
  auto preface = partition.add("Preface", 1).refer("Strong", 2);
  dynamic_cast<CollectionElement&>(preface.misplaced("Strongs")).append(Types::StrongReference(uid(2)).clone());
  partition.add("A", 2);
  EXPECT_XML(losslesslyExported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements><p:Strongs><p:A rp210:InstanceUID="{2}"/></p:Strongs></groups:ExtensionElements>
        <p:Strong><p:A_REF types:TargetInstance="{2}"/></p:Strong>
      </p:Preface>
    </s377m:MetadataSets>)");
}

// Values.

/// A partition whose Preface has the property "Prop" (and "q:Foreign", which belongs to another set) of a type.
TestPartition withProperty(MetaMetadata::DataType type) {
  TestDictionary dictionary;
  dictionary.property("Prop", type).property("Foreign", type, {u"q", u"urn:q"});
  return TestPartition(dictionary.set("Preface", {"Prop"}).set("A", {"Foreign"}));
}

constexpr const char* kPropLabel = "06.0E.2B.34.01.01.01.01.7F.00.00.01.00.00.00.00";

/// Expects that a property is written as its octets, marked with its label: it has no static tag.
void expectBytes(const TestPartition& partition, const std::string& digits) {
  const std::string expected = "<groups:ExtensionElements><groups:DarkElement groups:UniversalLabel=\"" +
                               std::string(kPropLabel) + "\">" + digits +
                               "</groups:DarkElement></groups:ExtensionElements>";
  for (const auto& flags : kAllFlags) {
    const std::string text = losslesslyExported(partition, flags);
    EXPECT_THAT(text, testing::HasSubstr(expected));
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("<p:Prop")));
    EXPECT_THAT(exported(partition, flags), testing::HasSubstr("<p:Prop"));
  }
}

void expectText(const TestPartition& partition) {
  for (const auto& flags : kAllFlags) EXPECT_EQ(losslesslyExported(partition, flags), exported(partition, flags));
}

TEST(LosslessExport, ALayoutOfMoreThanFiveComponentsIsItsBytes) {
  Types::RGBALayout layout;
  for (uint32 i = 0; i < 5; ++i) layout.set(i, {'R', 8});
  const auto five = withProperty(kRGBALayout);
  five.add("Preface", 1).value("Prop", layout);
  expectText(five);

  for (uint32 i = 5; i < 8; ++i) layout.set(i, {'A', 10});
  const auto eight = withProperty(kRGBALayout);
  eight.add("Preface", 1).value("Prop", layout);
  expectBytes(eight, "52085208520852085208410A410A410A");
}

TEST(LosslessExport, AnArrayOfPaddedTextsIsItsBytes) {
  const auto partition = withProperty(arrayOf(kISO8String));
  partition.add("Preface", 1)
      .item("Prop", *Types::Factories::fromBytes(kISO8String, reinterpret_cast<const uint8*>("ab"), 2))
      .item("Prop", *Types::Factories::fromBytes(kISO8String, reinterpret_cast<const uint8*>("a\0"), 2));
  expectBytes(partition, "000000020000000261626100");

  const auto plain = withProperty(arrayOf(kISO8String));
  plain.add("Preface", 1).item("Prop", Types::ISO8String("ab")).item("Prop", Types::ISO8String("cd"));
  expectText(plain);
}

TEST(LosslessExport, AnArrayOfTextsWithNULsIsItsBytes) {
  const auto partition = withProperty(batchOf(kUTF16String));
  const uint8 octets[] = {0x00, 0x41, 0x00, 0x00};
  partition.add("Preface", 1).item("Prop", *Types::Factories::fromBytes(kUTF16String, octets, sizeof octets));
  expectBytes(partition, "000000010000000400410000");
}

TEST(LosslessExport, ATextWithFinalNULsIsItsText) {
  const auto partition = withProperty(kUTF16String);
  const uint8 octets[] = {0x00, 0x41, 0x00, 0x00};
  partition.add("Preface", 1).value("Prop", *Types::Factories::fromBytes(kUTF16String, octets, sizeof octets));
  expectText(partition);
}

TEST(LosslessExport, ATextWithOctetsThatAreNoCharactersIsItsBytes) {
  const auto partition = withProperty(kISO7String);
  partition.add("Preface", 1).value("Prop", Types::ISO7String("A\xff"));
  expectBytes(partition, "41FF");
}

TEST(LosslessExport, AFractionOfASecondBeyondItsFieldIsItsBytes) {
  const auto partition = withProperty(kTimestamp);
  partition.add("Preface", 1).value("Prop", Types::Timestamp(2026, 1, 2, 3, 4, 5, 1024));
  expectBytes(partition, "07EA010203040500");
}

TEST(LosslessExport, ABlankCodeUnitIsItsBytes) {
  const auto partition = withProperty(kUTF16);
  partition.add("Preface", 1).value("Prop", Types::UTF16(u' '));
  expectBytes(partition, "0020");
}

TEST(LosslessExport, AValueOfAnotherTypeThanThePropertysIsItsBytes) {
  const auto partition = withProperty(kUInt32);
  partition.add("Preface", 1).value("Prop", Types::ISO7String("12"));
  expectBytes(partition, "3132");
}

TEST(LosslessExport, APropertyWithoutValueIsMarkedAndEmptyUnlessItsTextIsEmptyToo) {
  const auto partition = withProperty(kUInt32);
  partition.add("Preface", 1).present("Prop");
  EXPECT_THAT(losslesslyExported(partition),
              testing::HasSubstr("UniversalLabel=\"" + std::string(kPropLabel) + "\"/>"));
  const auto text = withProperty(kUTF8String);
  text.add("Preface", 1).present("Prop");
  expectText(text);
}

TEST(LosslessExport, AMisplacedValueIsItsBytesWhereItsTextWouldNotDo) {
  const auto partition = withProperty(kUTF16);
  auto preface = partition.add("Preface", 1);
  dynamic_cast<SimpleElement&>(preface.misplaced("Foreign")).set(Types::UTF16(u' ').clone(), false);
  EXPECT_THAT(losslesslyExported(partition),
              testing::HasSubstr("<groups:ExtensionElements><groups:DarkElement "
                                 "groups:UniversalLabel=\"06.0E.2B.34.01.01.01.01.7F.00.00.02.00.00.00.00\">0020<"));
}

/// An RGBA picture descriptor, as a file has it, with a layout of eight components.
void addRGBADescriptor(PartitionMetadata& partition, uint8 firstOfTag, uint8 secondOfTag) {
  Bytes value = {0x3c, 0x0a, 0x00, 0x10, 0, 0, 0, 0, 0,          0,           0, 0,
                 0,    0,    0,    0,    0, 0, 0, 5, firstOfTag, secondOfTag, 0, 16};
  value.insert(value.end(), {'R', 8, 'G', 8, 'B', 8, 'A', 8, 'R', 8, 'G', 8, 'B', 8, 'A', 8});
  partition.addKLV(MetaMetadata::registerKey("060e2b34.02530101.0d010101.01012900"), 4, value.data(), value.size(), 0);
}

TEST(LosslessExport, MarksAPropertyOfAStaticTagWithTheTag) {
  PartitionMetadata partition(builtInDictionary());
  addRGBADescriptor(partition, 0x34, 0x01);
  ExportOptions options;
  options.start = partition.sets().front();
  EXPECT_THAT(LosslessXML::exportBytes(partition, options, EncodingType::kUTF8),
              testing::HasSubstr("<groups:DarkElement groups:StaticLocalTag=\"34.01\">5208470842084108"));
}

TEST(LosslessExport, MarksAPropertyOfADynamicTagWithItsLabel) {
  PartitionMetadata partition(builtInDictionary());
  partition.partitionDictionary().addPrimerEntry(
      {0x8001, MetaMetadata::registerKey("060e2b34.01010102.04010503.06000000")});
  addRGBADescriptor(partition, 0x80, 0x01);
  ExportOptions options;
  options.start = partition.sets().front();
  EXPECT_THAT(LosslessXML::exportBytes(partition, options, EncodingType::kUTF8),
              testing::HasSubstr("groups:UniversalLabel=\"06.0E.2B.34.01.01.01.02.04.01.05.03.06.00.00.00\">52084708"));
}

TEST(LosslessExport, AnEmptyCollectionIsAnEmptyElementWhereverItIsPresent) {
  for (const auto type : {arrayOf(kUInt8), batchOf(kUInt8), arrayOf(kStrongReference), batchOf(kWeakReference)}) {
    const auto partition = withProperty(type);
    auto preface = partition.add("Preface", 1).emptied("Prop");
    dynamic_cast<CollectionElement&>(preface.misplaced("Foreign")).append(nullptr);
    for (const auto& flags : kAllFlags) {
      EXPECT_XML(losslesslyExported(partition, flags), R"(
        <s377m:MetadataSets {groups} {p} xmlns:q="urn:q" {rp210} {s377m}>
          <p:Preface rp210:InstanceUID="{1}">
            <groups:ExtensionElements><q:Foreign/></groups:ExtensionElements><p:Prop/>
          </p:Preface>
        </s377m:MetadataSets>)");
      EXPECT_XML(exported(partition, flags), R"(
        <s377m:MetadataSets {p} {rp210} {s377m}><p:Preface rp210:InstanceUID="{1}"/></s377m:MetadataSets>)");
    }
    expectNothingLost(*partition);
  }
}

TEST(LosslessExport, AnUnsetCollectionIsLeftOut) {
  const auto partition = withProperty(arrayOf(kUInt8));
  partition.add("Preface", 1);
  expectText(partition);
}

// Every type.

/// The octets of the only property, in whichever form it came back.
Bytes octetsOf(const MetadataSet& set) {
  const auto at = [](const Element& element) {
    const auto* value = element.wireValue();
    return value == nullptr ? Bytes() : Bytes(value->rawBuffer(), value->rawBuffer() + value->encodedSize());
  };
  if (set.invalidBegin() != set.invalidEnd()) return at(*set.invalidBegin());
  for (const Element& element : set) {
    if (element.metaAttribute().metaElement()->symbol() == "Prop") return at(element);
  }
  return {};
}

Bytes withoutFinalZeros(Bytes octets) {
  while (!octets.empty() && octets.back() == 0) octets.pop_back();
  return octets;
}

bool isText(const MetaMetadata::DataType& type) {
  return type.type == kUTF16String || type.type == kUTF8String || type.type == kISO7String || type.type == kISO8String;
}

void expectOctetsKept(const TestPartition& partition, const MetaMetadata::DataType& type) {
  auto original = octetsOf(*partition->sets().front());
  auto copy = reimported(*partition, kNested);
  ASSERT_EQ((*copy).sets().size(), 1u);
  EXPECT_THAT(copy.messages(), testing::IsEmpty());
  auto octets = octetsOf(*(*copy).sets().front());
  if (isText(type)) {
    original = withoutFinalZeros(original);
    octets = withoutFinalZeros(octets);
  }
  EXPECT_EQ(octets, original) << "type " << type.type << " of " << type.itemType << "\n"
                              << losslesslyExported(partition);
}

template <class Type>
void expectGoldenValuesKept(Identifier type) {
  for (const auto& golden : Golden<Type>::values()) {
    const auto single = withProperty(type);
    single.add("Preface", 1).value("Prop", *golden.value);
    expectOctetsKept(single, type);
    const auto items = withProperty(arrayOf(type));
    items.add("Preface", 1).item("Prop", *golden.value).item("Prop", *golden.value);
    expectOctetsKept(items, arrayOf(type));
  }
}

bool isScalar(Identifier type) {
  return type != kArray && type != kBatch && type != kStrongReference && type != kWeakReference;
}

TEST(LosslessExport, KeepsTheOctetsOfValuesOfEveryType) {
#define VANTOR_EXPECT_KEPT(Type, number, octets) \
  if (isScalar(k##Type)) expectGoldenValuesKept<Types::Type>(k##Type);
  VANTOR_FOR_EACH_TYPE(VANTOR_EXPECT_KEPT)
#undef VANTOR_EXPECT_KEPT
}

/// Octets that are difficult for texts and numbers.
Bytes someOctets(std::mt19937& random, std::size_t size) {
  constexpr uint8 kOctets[] = {0x00, 0x00, 0x01, 0x09, 0x0A, 0x0D, 0x20, 0x24, 0x23,
                               0x41, 0x78, 0x7F, 0x80, 0xC3, 0xD8, 0xDC, 0xFF};
  Bytes octets(size);
  for (uint8& octet : octets) octet = kOctets[random() % sizeof kOctets];
  return octets;
}

template <class Type>
void expectRandomValuesKept(Identifier type, std::size_t size, std::mt19937& random) {
  for (int round = 0; round < 40; ++round) {
    const auto octets = someOctets(random, size != 0 ? size : random() % 8);
    const auto value = Types::Factories::fromBytes(type, octets.data(), octets.size());
    if (value == nullptr) continue;
    const auto single = withProperty(type);
    single.add("Preface", 1).value("Prop", *value);
    expectOctetsKept(single, type);
    if (octets.empty()) continue;
    const auto items = withProperty(batchOf(type));
    items.add("Preface", 1).item("Prop", *value);
    expectOctetsKept(items, batchOf(type));
  }
}

TEST(LosslessExport, KeepsRandomOctetsOfEveryType) {
  std::mt19937 random(11);
#define VANTOR_EXPECT_KEPT(Type, number, octets) \
  if (isScalar(k##Type)) expectRandomValuesKept<Types::Type>(k##Type, octets, random);
  VANTOR_FOR_EACH_TYPE(VANTOR_EXPECT_KEPT)
#undef VANTOR_EXPECT_KEPT
}

// Whole files.

struct Way {
  Path file;
  MetaMetadata::Vocabulary vocabulary;
};
void PrintTo(const Way& way, std::ostream* out) {
  *out << way.file.filename() << (way.vocabulary == MetaMetadata::Vocabulary::kLegacy ? " legacy" : " ST 434");
}

std::vector<Way> ways() {
  std::vector<Way> all;
  for (const auto& file : sampleFiles()) {
    for (const auto vocabulary : {MetaMetadata::Vocabulary::kLegacy, MetaMetadata::Vocabulary::kST434_2014}) {
      all.push_back({file, vocabulary});
    }
  }
  return all;
}

class LosslessSample : public testing::TestWithParam<Way> {};

TEST_P(LosslessSample, ComesBackWhole) {
  const auto partition = MXF::readHeaderMetadata(GetParam().file, builtInDictionary(GetParam().vocabulary));
  expectNothingLost(*partition);
}

TEST_P(LosslessSample, HasTheDigestOfTheFileWhateverTheVocabulary) {
  const auto partition = MXF::readHeaderMetadata(GetParam().file, builtInDictionary(GetParam().vocabulary));
  const auto other = MXF::readHeaderMetadata(GetParam().file, builtInDictionary());
  EXPECT_EQ(digestOf(*partition), digestOf(*other));
}

INSTANTIATE_TEST_SUITE_P(Samples, LosslessSample, testing::ValuesIn(ways()));

}  // namespace
}  // namespace Vantor::XMLBuilder
