#include "JSON/Document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/KLV/Keys.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/JSON/Support.h"

namespace Vantor::JSON {
namespace {

using testing::HasSubstr;

/// A document with these sets, each on lines of its own from line 2 on.
std::string documentOf(const std::string& sets) {
  return R"({"format": "mxfxml-metadata", "version": 1, "sets": [)"
         "\n" +
         sets + "\n]}";
}

std::unique_ptr<PartitionMetadata> read(const std::string& sets) {
  return imported(documentOf(sets), PartitionMetadata(testDictionary()));
}

std::string refusalOf(const std::string& document) {
  try {
    imported(document, PartitionMetadata(testDictionary()));
  } catch (const Exceptions::BaseException& error) {
    return error.message();
  }
  return "no refusal";
}

/// Why the properties of a Thing are refused.
std::string refusalOfThing(const std::string& members) {
  return refusalOf(documentOf(R"({"set": "Thing", )" + members + "}"));
}

/// A partition comes back with all octets of its sets.
std::unique_ptr<PartitionMetadata> expectRoundTrip(const PartitionMetadata& metadata) {
  auto back = imported(exported(metadata), metadata);
  EXPECT_EQ(exported(*back).substr(200), exported(metadata).substr(200));  // behind the digest
  const auto comparison = comparePartitions(metadata, *back);
  EXPECT_TRUE(comparison.isEqual());
  return back;
}

const MetadataSet& onlySet(const PartitionMetadata& metadata) { return *metadata.sets().at(0); }

/// The limit that refuses a document, or its import.
std::string refusedLimit(const std::string& text, uint64 Limits::*limit, uint64 value) {
  Limits limits;
  limits.*limit = value;
  try {
    PartitionMetadata partition(testDictionary());
    Document::fromText(text, limits).import(partition);
  } catch (const Exceptions::LimitExceeded& refused) {
    return refused.arguments().back();
  }
  return "none";
}

TEST(JSONDocument, IsReadAndImportedWithinLimits) {
  const auto text = documentOf(R"({"set": "Thing", "properties": {}}, {"set": "Thing", "properties": {}})");
  EXPECT_EQ(refusedLimit(text, &Limits::sets, 2), "none");
  EXPECT_EQ(refusedLimit(text, &Limits::sets, 1), "sets");
  EXPECT_EQ(refusedLimit(text, &Limits::documentSize, text.size()), "none");
  EXPECT_EQ(refusedLimit(text, &Limits::documentSize, text.size() - 1), "document");
}

TEST(JSONDocument, IsWrittenWithinALimit) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4001, "00000007"));
  const auto size = exported(metadata).size();
  Limits limits;
  limits.outputSize = size;
  DataIO::Memory::MemoryDataSink sink;
  EXPECT_NO_THROW(writeDocument(metadata, "header", sink, nullptr, limits));
  limits.outputSize = size - 1;
  EXPECT_THROW(writeDocument(metadata, "header", sink, nullptr, limits), Exceptions::LimitExceeded);
}

TEST(JSONDocument, HasFormatVersionDescriptionAndSets) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4001, "00000007"));
  EXPECT_THAT(exported(metadata), HasSubstr(R"({
  "format": "mxfxml-metadata",
  "version": 1,
  "description": {
    "sets": "all",
    "partition": "header",
    "metadata": ")"));
  EXPECT_THAT(exported(metadata), HasSubstr(R"(
  "sets": [
    {
      "set": "Thing",
      "instanceUID": "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01",
      "properties": {
        "Number": 7
      }
    }
  ]
}
)"));
}

TEST(JSONDocument, OfAnEmptyPartitionIsRead) {
  const PartitionMetadata metadata(testDictionary());
  EXPECT_THAT(exported(metadata), testing::EndsWith("\"sets\": []\n}\n"));
  EXPECT_TRUE(imported(exported(metadata), metadata)->entries().empty());
}

TEST(JSONDocument, DescribesThePartition) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1));
  DataIO::Memory::MemoryDataSink sink;
  writeDocument(metadata, "3", sink);
  const auto document = Document::fromText(textOf(sink));
  ASSERT_TRUE(document.description());
  EXPECT_EQ(document.description()->partition, "3");
  EXPECT_EQ(document.description()->digest, digestOf(metadata));
  EXPECT_FALSE(Document::fromText(documentOf("")).description());
  EXPECT_THROW(writeDocument(metadata, "middle", sink), Exceptions::InvalidFormat);
}

TEST(JSONDocument, KeepsSetsInTheOrderOfTheFile) {
  PartitionMetadata metadata(testDictionary());
  for (const uint32 number : {3u, 1u, 2u}) readSet(metadata, "Thing", Items().instanceUID(number));
  const auto back = expectRoundTrip(metadata);
  EXPECT_EQ(*back->sets()[0]->instanceUID(), uid(3));
  EXPECT_EQ(*back->sets()[2]->instanceUID(), uid(2));
}

TEST(JSONDocument, KeepsSetsThatShareAnInstanceUIDOrHaveNone) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4001, "00000007"));
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4001, "00000008"));
  readSet(metadata, "Thing", Items().item(0x4001, "00000009"));
  const auto back = expectRoundTrip(metadata);
  EXPECT_EQ(back->findByInstanceUID(uid(1)).size(), 2u);
  EXPECT_EQ(back->sets()[2]->instanceUID(), nullptr);
}

TEST(JSONDocument, KeepsUnknownPropertiesUnderTheirTag) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x7001, "AB").item(0x7001, "CD").item(0x4001, "0102"));
  const auto back = expectRoundTrip(metadata);
  EXPECT_EQ(hexOf(written(onlySet(*back), *back)), hexOf(written(onlySet(metadata), metadata)));
}

TEST(JSONDocument, KeepsTheLabelOfAnUnknownPropertyWithADynamicTag) {
  PartitionMetadata metadata(testDictionary());
  const auto label = darkSetKey();
  metadata.partitionDictionary().addPrimerEntry({0x8123, label});
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x8123, "AB"));
  const auto back = imported(exported(metadata), metadata);
  const auto tag = back->partitionDictionary().tryFindTag(Types::UniversalLabel(label));
  const auto& unknown = *onlySet(*back).invalidBegin();
  EXPECT_EQ(unknown.metaAttribute().asUnknown()->localTag().value(), tag);
}

TEST(JSONDocument, KeepsAPropertyThatTheSetHasTwice) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4001, "00000007").item(0x4001, "00000008"));
  EXPECT_THAT(exported(metadata), HasSubstr("\"reason\": \"the set has it twice\""));
  const auto back = expectRoundTrip(metadata);
  EXPECT_EQ(onlySet(*back).get<Types::UInt32>("Number").value(), 7u);
}

TEST(JSONDocument, KeepsPropertiesOfOtherSets) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x5001, "0007").item(0x5001, "0008"));
  EXPECT_THAT(exported(metadata), HasSubstr("\"property\": \"Foreign\""));
  expectRoundTrip(metadata);
}

TEST(JSONDocument, KeepsOctetsThatAreNoText) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4002, "0041D83D0042").item(0x400f, "80"));
  const auto back = expectRoundTrip(metadata);
  EXPECT_EQ(hexOf(written(onlySet(*back), *back)), hexOf(written(onlySet(metadata), metadata)));
}

TEST(JSONDocument, KeepsReferencesToNoSet) {
  PartitionMetadata metadata(testDictionary());
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4006, hexOf(uid(9))));
  expectRoundTrip(metadata);
}

TEST(JSONDocument, KeepsDarkSets) {
  PartitionMetadata metadata(testDictionary());
  const auto group = Items().instanceUID(5).item(0x8001, "AB").bytes();
  const auto octets = hex("0102030405");
  metadata.addKLV(darkGroupKey(), 4, group.data(), group.size(), 0);
  metadata.addKLV(darkSetKey(), 9, octets.data(), octets.size(), 0);
  readSet(metadata, "Thing", Items().instanceUID(1).item(0x4006, hexOf(uid(5))));
  const auto back = expectRoundTrip(metadata);
  const auto kept = octetsOf(metadata);
  const auto dark = kept.substr(kept.size() - octets.size() - 16 - 9 - group.size() - 16 - 4);
  EXPECT_THAT(octetsOf(*back), testing::EndsWith(dark));
}

TEST(JSONDocument, GivesNoPropertyTheTagOfADarkSetBehindIt) {
  PartitionMetadata metadata(testDictionary());
  const auto back = read(R"({"set": "Thing", "properties": {"Dynamic": 7}},
{"key": ")" + Utils::wstringToString(darkGroupKey().toString()) +
                         R"(", "octets": "FFFF0001AB"})");
  MXF::SetOrder order = MXF::SetOrder::kFile;
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(*back, order, sink);
  EXPECT_EQ(back->partitionDictionary().tryFindTag(labelOf("Dynamic")), 0xFFFE);
}

TEST(JSONDocument, TakesTimecodesBeforeTheirRate) {
  PartitionMetadata metadata(testDictionary());
  const auto back = read(R"({"set": "Thing", "properties": {"Text": "x", "Number": "0x10"}})");
  EXPECT_EQ(onlySet(*back).get<Types::UInt32>("Number").value(), 16u);
}

TEST(JSONDocument, MakesAKnownPropertyOfOctetsThatDecode) {
  const auto back = read(R"({"set": "Thing", "properties": {}, "others": [{"tag": "40.01", "octets": "00000007"}]})");
  EXPECT_EQ(onlySet(*back).get<Types::UInt32>("Number").value(), 7u);
}

/// What an import remarks about documents of these sets.
std::vector<std::string> remarksOn(const std::string& sets) {
  PartitionMetadata metadata(testDictionary());
  Diagnostics found;
  Document::fromText(documentOf(sets)).import(metadata, nullptr, &found);
  std::vector<std::string> texts;
  for (const auto& diagnostic : found) texts.push_back(describe(diagnostic));
  return texts;
}

TEST(JSONDocument, HasARemarkOnASetWithoutInstanceUID) {
  EXPECT_THAT(remarksOn("{\"set\": \"Thing\",\n\"properties\": {}}"),
              testing::ElementsAre(
                  "line 2: /sets/0: Thing: the set has no \"instanceUID\", so that no reference can lead to it"));
  EXPECT_THAT(remarksOn("{\"set\": \"Thing\", \"instanceUID\": \"" + uid(1).dottedText() + "\", \"properties\": {}}"),
              testing::IsEmpty());
}

TEST(JSONDocument, IsRefusedWithoutFormatVersionOrSets) {
  EXPECT_EQ(refusalOf("{}"), "the document has no member \"format\"");
  EXPECT_EQ(refusalOf(R"({"format": "mxfxml-metadata", "version": 1})"), "the document has no member \"sets\"");
  EXPECT_EQ(refusalOf(R"({"format": "mxfxml-diff"})"),
            "line 1: /format: the format is \"mxfxml-diff\", not \"mxfxml-metadata\"");
  EXPECT_EQ(refusalOf(R"({"version": 2})"), "line 1: /version: this version of the format is not known; version 1 is");
  EXPECT_EQ(refusalOf(R"({"more": 2})"), "line 1: /more: documents have no such member");
  EXPECT_EQ(refusalOf(R"({"sets": {}})"), "line 1: /sets: it is no array");
  EXPECT_EQ(refusalOf(R"({"sets": [1]})"), "line 1: /sets/0: a set is an object");
  EXPECT_THAT(refusalOf(R"({"description": {"sets": "all", "partition": "no", "metadata": "0"}})"),
              HasSubstr("/description: "));
}

TEST(JSONDocument, IsRefusedWithLinePlaceAndSet) {
  EXPECT_EQ(refusalOf(documentOf(
                "{\"set\": \"Thing\", \"properties\": {}},\n"
                "{\"set\": \"Thing\", \"instanceUID\": \"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02\",\n"
                "\"properties\": {\n\"Number\": -1}}")),
            "line 5: /sets/1/properties/Number: Thing 00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02: '-1' is not a "
            "whole number from 0 to 4294967295; for example 25 or 0x19");
}

TEST(JSONDocument, IsRefusedForNamesThatTheDictionaryLacks) {
  EXPECT_THAT(refusalOf(documentOf(R"({"set": "Thong", "properties": {}})")),
              HasSubstr("/sets/0/set: Thong: the dictionary has no set 'Thong' (did you mean 'Thing'?)"));
  EXPECT_THAT(refusalOfThing(R"("properties": {"Numbre": 1})"),
              HasSubstr("/sets/0/properties/Numbre: Thing: the set has no property 'Numbre' (did you mean 'Number'?)"));
  EXPECT_THAT(refusalOfThing(R"("properties": {}, "colour": 1)"), HasSubstr("there is no member \"colour\" here"));
  EXPECT_THAT(refusalOfThing(R"("others": [])"), HasSubstr("the member \"properties\" is missing"));
}

TEST(JSONDocument, IsRefusedForAPropertyThatIsThereTwice) {
  const auto key = labelOf("Number").dottedText();
  EXPECT_THAT(refusalOfThing(R"("properties": {"Number": 1}, "others": [{"key": ")" + key + R"(", "value": 2}])"),
              HasSubstr("/sets/0/others/0: Thing: the property is there twice"));
}

TEST(JSONDocument, IsRefusedForAnInstanceUIDInTheWrongPlace) {
  const std::string id = R"("instanceUID": "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02", )";
  EXPECT_THAT(
      refusalOfThing(id + R"("properties": {"InstanceUID": "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.03"})"),
      HasSubstr("is its InstanceUID already"));
  EXPECT_THAT(
      refusalOfThing(R"("properties": {}, "others": [{"tag": "3C.0A", "octets": "00000000000000000000000000000003"}])"),
      HasSubstr("the InstanceUID stands in \"instanceUID\""));
  EXPECT_THAT(refusalOfThing(R"("instanceUID": "03", "properties": {})"), HasSubstr("/sets/0/instanceUID: "));
}

TEST(JSONDocument, IsRefusedForADarkSetThatContradictsItself) {
  const auto key = Utils::wstringToString(darkGroupKey().toString());
  EXPECT_THAT(
      refusalOf(documentOf(R"({"key": ")" + key +
                           R"(", "instanceUID": "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02", "octets": ""})")),
      HasSubstr("but the octets have none"));
  EXPECT_THAT(refusalOf(documentOf(R"({"key": "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.04.00", "octets": ""})")),
              HasSubstr("is of another part of MXF"));
  EXPECT_THAT(refusalOf(documentOf(R"({"key": ")" + key + R"(", "octets": "0"})")), HasSubstr("/sets/0/octets: "));
  EXPECT_THAT(refusalOf(documentOf(R"({"key": ")" + key + R"(", "octets": "", "lengthOctets": 10})")),
              HasSubstr("/sets/0/lengthOctets: it is no whole number from 0 to 9"));
}

}  // namespace
}  // namespace Vantor::JSON
