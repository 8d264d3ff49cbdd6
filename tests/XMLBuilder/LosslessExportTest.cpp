#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <xercesc/dom/DOM.hpp>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "LosslessXML.h"
#include "XMLBuilder/DocumentDescription.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/LoadDocument.h"
#include "tests/SampleFiles.h"
#include "tests/XMLBuilder/LosslessExportSupport.h"

/// What lossless documents have and those of `partition2XML` lack, and that nothing is lost on the way back.
namespace Vantor::XMLBuilder {
namespace {

using LosslessXML::ExportOptions;
using MetaMetadata::arrayOf;
using XMLUtils::EncodingType;
using namespace Types::Identifiers;

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
  const auto document = LosslessXML::exportBytes(*partition, {}, EncodingType::kUTF8Indented);
  const std::regex start(
      "<.xml version=\"1.0\" encoding=\"UTF-8\".>\n"
      "<.mxfxml form=\"nested\" sets=\"all\" partition=\"header\" vocabulary=\"legacy\" metadata=\"[0-9A-F]*\".>\n"
      "<s377m:MetadataSets ");
  EXPECT_TRUE(std::regex_search(document, start, std::regex_constants::match_continuous)) << document;
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

// Sets that several others lead to.

/// Sets of three kinds and a Preface, which may refer to one set each.
TestPartition partitionOfReferrers() {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference);
  return TestPartition(
      dictionary.set("Preface", {"Strong"}).set("A", {"Strong"}).set("B", {"Strong"}).set("C", {"Strong"}));
}

TEST(LosslessExport, WritesASetOfSeveralFloatingSetsOnce) {
  auto partition = partitionOfReferrers();
  partition.add("Preface", 1);
  partition.add("A", 2).refer("Strong", 4);
  partition.add("B", 3).refer("Strong", 4);
  partition.add("C", 4);
  EXPECT_XML(losslesslyExported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}"><p:Strong><p:C rp210:InstanceUID="{4}"/></p:Strong></p:A>
        <p:B rp210:InstanceUID="{3}"><p:Strong><p:C_REF types:TargetInstance="{4}"/></p:Strong></p:B>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  expectNothingLost(*partition);
}

TEST(LosslessExport, WritesASetOfThePrefaceAndAFloatingSetOnce) {
  auto partition = partitionOfReferrers();
  partition.add("Preface", 1).refer("Strong", 3);
  partition.add("A", 2).refer("Strong", 3);
  partition.add("B", 3);
  EXPECT_XML(losslesslyExported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Strong><p:B rp210:InstanceUID="{3}"/></p:Strong></p:Preface>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}"><p:Strong><p:B_REF types:TargetInstance="{3}"/></p:Strong></p:A>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  expectNothingLost(*partition);
}

TEST(LosslessExport, GrowsWithTheSetsAndNotWithTheWaysToThem) {
  constexpr uint32 kRoots = 100, kChain = 400;
  for (const auto& flags : {kNested, kFlat}) {
    auto partition = partitionOfReferrers();
    partition.add("Preface", 1);
    for (uint32 i = 0; i < kRoots; ++i) partition.add("A", 1000 + i).refer("Strong", 2000);
    for (uint32 i = 0; i < kChain; ++i) partition.add("B", 2000 + i).refer("Strong", 2000 + (i + 1) % kChain);
    EXPECT_LT(losslesslyExported(partition, flags).size(), (kRoots + kChain) * std::size_t{400});
    expectNothingLost(*partition);
  }
}

TEST(LosslessExport, WritesADarkGroupThatManySetsReferToOnce) {
  for (const auto& flags : {kNested, kFlat}) {
    auto partition = partitionOfReferrers();
    partition.add("Preface", 1);
    partition.addDarkGroup(9);
    for (uint32 i = 0; i < 5; ++i) partition.add("A", 20 + i).refer("Strong", 9);
    const std::string text = losslesslyExported(partition, flags);
    const auto first = text.find("<groups:DarkMetadata ");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(text.find("<groups:DarkMetadata ", first + 1), std::string::npos);
    expectNothingLost(*partition);
  }
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
