#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Factories.h"
#include "LosslessXML.h"
#include "tests/XMLBuilder/GoldenValues.h"
#include "tests/XMLBuilder/LosslessExportSupport.h"

/// Which values a lossless document holds as text and which as octets, and that they all come back.
namespace Vantor::XMLBuilder {
namespace {

using LosslessXML::ExportOptions;
using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using XMLUtils::EncodingType;
using namespace Types::Identifiers;

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

TEST(LosslessExportValues, ALayoutOfMoreThanFiveComponentsIsItsBytes) {
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

TEST(LosslessExportValues, AnArrayOfPaddedTextsIsItsBytes) {
  const auto partition = withProperty(arrayOf(kISO8String));
  partition.add("Preface", 1)
      .item("Prop", *Types::Factories::fromBytes(kISO8String, reinterpret_cast<const uint8*>("ab"), 2))
      .item("Prop", *Types::Factories::fromBytes(kISO8String, reinterpret_cast<const uint8*>("a\0"), 2));
  expectBytes(partition, "000000020000000261626100");

  const auto plain = withProperty(arrayOf(kISO8String));
  plain.add("Preface", 1).item("Prop", Types::ISO8String("ab")).item("Prop", Types::ISO8String("cd"));
  expectText(plain);
}

TEST(LosslessExportValues, AnArrayOfTextsWithNULsIsItsBytes) {
  const auto partition = withProperty(batchOf(kUTF16String));
  const uint8 octets[] = {0x00, 0x41, 0x00, 0x00};
  partition.add("Preface", 1).item("Prop", *Types::Factories::fromBytes(kUTF16String, octets, sizeof octets));
  expectBytes(partition, "000000010000000400410000");
}

TEST(LosslessExportValues, ATextWithFinalNULsIsItsBytesInANamespaceThatDefinitionsChoose) {
  const auto partition = withProperty(kUTF16String);
  const uint8 octets[] = {0x00, 0x41, 0x00, 0x00};
  partition.add("Preface", 1).value("Prop", *Types::Factories::fromBytes(kUTF16String, octets, sizeof octets));
  expectBytes(partition, "00410000");
}

TEST(LosslessExportValues, ATextWithOctetsThatAreNoCharactersIsItsBytes) {
  const auto partition = withProperty(kISO7String);
  partition.add("Preface", 1).value("Prop", Types::ISO7String("A\xff"));
  expectBytes(partition, "41FF");
}

TEST(LosslessExportValues, AFractionOfASecondBeyondItsFieldIsItsBytes) {
  const auto partition = withProperty(kTimestamp);
  partition.add("Preface", 1).value("Prop", Types::Timestamp(2026, 1, 2, 3, 4, 5, 1024));
  expectBytes(partition, "07EA010203040500");
}

TEST(LosslessExportValues, ABlankCodeUnitIsItsBytes) {
  const auto partition = withProperty(kUTF16);
  partition.add("Preface", 1).value("Prop", Types::UTF16(u' '));
  expectBytes(partition, "0020");
}

TEST(LosslessExportValues, AValueOfAnotherTypeThanThePropertysIsItsBytes) {
  const auto partition = withProperty(kUInt32);
  partition.add("Preface", 1).value("Prop", Types::ISO7String("12"));
  expectBytes(partition, "3132");
}

TEST(LosslessExportValues, APropertyWithoutValueIsMarkedAndEmptyUnlessItsTextIsEmptyToo) {
  const auto partition = withProperty(kUInt32);
  partition.add("Preface", 1).present("Prop");
  EXPECT_THAT(losslesslyExported(partition),
              testing::HasSubstr("UniversalLabel=\"" + std::string(kPropLabel) + "\"/>"));
  const auto text = withProperty(kUTF8String);
  text.add("Preface", 1).present("Prop");
  expectText(text);
}

TEST(LosslessExportValues, AMisplacedValueIsItsBytesWhereItsTextWouldNotDo) {
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

TEST(LosslessExportValues, MarksAPropertyOfAStaticTagWithTheTag) {
  PartitionMetadata partition(builtInDictionary());
  addRGBADescriptor(partition, 0x34, 0x01);
  ExportOptions options;
  options.start = partition.sets().front();
  EXPECT_THAT(LosslessXML::exportBytes(partition, options, EncodingType::kUTF8),
              testing::HasSubstr("<groups:DarkElement groups:StaticLocalTag=\"34.01\">5208470842084108"));
}

TEST(LosslessExportValues, MarksAPropertyOfADynamicTagWithItsLabel) {
  PartitionMetadata partition(builtInDictionary());
  partition.partitionDictionary().addPrimerEntry(
      {0x8001, MetaMetadata::registerKey("060e2b34.01010102.04010503.06000000")});
  addRGBADescriptor(partition, 0x80, 0x01);
  ExportOptions options;
  options.start = partition.sets().front();
  EXPECT_THAT(LosslessXML::exportBytes(partition, options, EncodingType::kUTF8),
              testing::HasSubstr("groups:UniversalLabel=\"06.0E.2B.34.01.01.01.02.04.01.05.03.06.00.00.00\">52084708"));
}

TEST(LosslessExportValues, AnEmptyCollectionIsAnEmptyElementWhereverItIsPresent) {
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

TEST(LosslessExportValues, AnUnsetCollectionIsLeftOut) {
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

TEST(LosslessExportValues, KeepsTheOctetsOfValuesOfEveryType) {
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

TEST(LosslessExportValues, KeepsRandomOctetsOfEveryType) {
  std::mt19937 random(11);
#define VANTOR_EXPECT_KEPT(Type, number, octets) \
  if (isScalar(k##Type)) expectRandomValuesKept<Types::Type>(k##Type, octets, random);
  VANTOR_FOR_EACH_TYPE(VANTOR_EXPECT_KEPT)
#undef VANTOR_EXPECT_KEPT
}

}  // namespace
}  // namespace Vantor::XMLBuilder
