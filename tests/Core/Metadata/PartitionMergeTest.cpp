#include "Core/Metadata/PartitionMerge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PartitionComparison.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Types.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/SampleFiles.h"

namespace Vantor {
namespace {

constexpr const char* kSample = VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf";

std::unique_ptr<PartitionMetadata> readSample(const Path& path = kSample) {
  return MXF::readHeaderMetadata(path, builtInDictionary());
}

Bytes written(PartitionMetadata& partition) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(partition, MXF::SetOrder::kFile, sink);
  return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

MetadataSet& setNamed(const PartitionMetadata& partition, const std::string& symbol) {
  for (auto* set : partition.sets()) {
    if (set->name() == symbol) return *set;
  }
  throw std::out_of_range(symbol);
}

Element& propertyNamed(MetadataSet& set, const std::string& symbol) {
  for (const auto& attribute : set.definition()->attributes()) {
    if (attribute.metaElement()->symbol() == symbol) return set.createElement(attribute);
  }
  throw std::out_of_range(symbol);
}

void setText(PartitionMetadata& partition, const std::string& set, const std::string& property, const wstring& text) {
  dynamic_cast<SimpleElement&>(propertyNamed(setNamed(partition, set), property))
      .set(std::make_unique<Types::UTF16String>(text), true);
}

/// One file, read three times: as it is, and as what two documents of it would give.
class PartitionMerge : public testing::Test {
 protected:
  auto_ptr<PartitionMetadata> merge(const MergeRules& rules = {}) {
    return mergeEdits(*original_, {before_.get()}, *after_, rules, &summary_);
  }
  std::size_t differences(const PartitionMetadata& merged) const {
    return comparePartitions(*original_, merged).differences.size();
  }

  std::unique_ptr<PartitionMetadata> original_ = readSample();
  std::unique_ptr<PartitionMetadata> before_ = readSample();
  std::unique_ptr<PartitionMetadata> after_ = readSample();
  MergeSummary summary_;
};

TEST(PartitionMergeOfSamples, GivesTheSameBytesWhenNothingWasEdited) {
  for (const auto& file : sampleFiles()) {
    const auto original = readSample(file);
    const auto before = readSample(file);
    const auto after = readSample(file);
    MergeSummary summary;
    const auto merged = mergeEdits(*original, {before.get()}, *after, {}, &summary);
    EXPECT_TRUE(summary.isUnchanged()) << file;
    EXPECT_EQ(written(*merged), written(*original)) << file;
  }
}

TEST_F(PartitionMerge, ChangesOnePropertyAndKeepsItsTag) {
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  const auto merged = merge();
  EXPECT_EQ(summary_.changedSets, 1u);
  EXPECT_EQ(summary_.changedProperties, 1u);
  EXPECT_EQ(differences(*merged), 1u);
  EXPECT_EQ(propertyNamed(setNamed(*merged, "Identification"), "ApplicationName").localTag(), 0x3c02);
}

TEST_F(PartitionMerge, KeepsWhatTheDocumentCannotSayOfAnEditedSet) {
  // A NUL behind the text, which no document tells.
  const Bytes octets = hex("00610000");
  auto& supplier = propertyNamed(setNamed(*original_, "Identification"), "ApplicationSupplierName");
  setDecodedValue(supplier,
                  Types::Factories::fromBytes(Types::Identifiers::kUTF16String, octets.data(), octets.size()));
  setText(*before_, "Identification", "ApplicationSupplierName", u"a");
  setText(*after_, "Identification", "ApplicationSupplierName", u"a");
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  const auto merged = merge();
  const auto* kept = propertyNamed(setNamed(*merged, "Identification"), "ApplicationSupplierName").wireValue();
  EXPECT_EQ(Bytes(kept->rawBuffer(), kept->rawBuffer() + kept->encodedSize()), octets);
  EXPECT_EQ(differences(*merged), 1u);
}

TEST_F(PartitionMerge, AddsAndTakesOutProperties) {
  auto& identification = setNamed(*after_, "Identification");
  identification.remove(propertyNamed(identification, "ApplicationName"));
  setText(*after_, "Identification", "ApplicationPlatform", u"Acme");
  setText(*before_, "Identification", "ApplicationPlatform", u"Other");
  const auto merged = merge();
  EXPECT_EQ(summary_.changedProperties, 2u);
  std::vector<std::string> present;
  for (const auto* property : setNamed(*merged, "Identification").inDefinitionOrder()) {
    present.push_back(property->metaAttribute().metaElement()->symbol());
  }
  EXPECT_THAT(present, testing::Not(testing::Contains("ApplicationName")));
  EXPECT_THAT(present, testing::Contains("ApplicationPlatform"));
}

TEST_F(PartitionMerge, TakesNothingOutWhenItMayNot) {
  auto& identification = setNamed(*after_, "Identification");
  identification.remove(propertyNamed(identification, "ApplicationName"));
  MergeRules rules;
  rules.mayRemove = false;
  const auto merged = merge(rules);
  EXPECT_TRUE(summary_.isUnchanged());
  EXPECT_EQ(written(*merged), written(*original_));
}

TEST_F(PartitionMerge, LeavesWhatCouldNotBeRead) {
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  MergeRules rules;
  rules.untouched.insert(MergeRules::keyOf(*setNamed(*original_, "Identification").instanceUID(), "ApplicationName"));
  EXPECT_EQ(differences(*merge(rules)), 0u);
}

TEST_F(PartitionMerge, AddsNewSetsAtTheEndAndTakesMissingOnesOut) {
  auto* added = after_->createMetadataSet(builtInDictionary()->findSetBySymbol("NetworkLocator")->key());
  dynamic_cast<SimpleElement&>(propertyNamed(*added, "URL"))
      .set(std::make_unique<Types::UTF16String>(wstring(u"a")), true);
  const auto merged = merge();
  EXPECT_EQ(summary_.addedSets, 1u);
  ASSERT_EQ(merged->sets().size(), original_->sets().size() + 1);
  EXPECT_EQ(merged->sets().back()->name(), "NetworkLocator");
  EXPECT_EQ(*merged->sets().back()->instanceUID(), *added->instanceUID());
}

TEST_F(PartitionMerge, TakesOutSetsThatTheEditedPartitionLacks) {
  PartitionMetadata fewer(builtInDictionary());
  for (const auto& entry : original_->partitionDictionary().primerEntries()) {
    fewer.partitionDictionary().addPrimerEntry(entry);
  }
  for (const auto* set : original_->sets()) {
    if (set->name() == "Identification") continue;
    DataIO::Memory::MemoryDataSink sink;
    auto tags = original_->partitionDictionary();
    set->serialize(sink, tags);
    const auto head = KLV::Key::kSize + set->berLength();
    fewer.addKLV(set->key(), set->berLength(), sink.rawBuffer() + head, sink.serializedSize() - head, 0);
  }
  const auto merged = mergeEdits(*original_, {before_.get()}, fewer, {}, &summary_);
  EXPECT_EQ(summary_.removedSets, 1u);
  EXPECT_EQ(summary_.changedSets, 0u);
  EXPECT_EQ(merged->sets().size(), original_->sets().size() - 1);
}

TEST_F(PartitionMerge, TakesWhatAnyFormOfTheDocumentHasForUnedited) {
  const auto other = readSample();
  setText(*other, "Identification", "ApplicationName", u"as another form tells it");
  setText(*after_, "Identification", "ApplicationName", u"as another form tells it");
  const auto merged = mergeEdits(*original_, {before_.get(), other.get()}, *after_, {}, &summary_);
  EXPECT_TRUE(summary_.isUnchanged());
}

TEST_F(PartitionMerge, ReplacesDarkKLVsByKey) {
  const KLV::Key key(hex("060E2B34010101010F00000000000001").data());
  const auto dark = [&key](const std::string& octets) {
    return std::make_unique<DarkMetadataSet>(key, uint8{4}, KLV::Value(hex(octets)));
  };
  original_->addDarkMetadataSet(dark("0102"));
  before_->addDarkMetadataSet(dark("0102"));
  after_->addDarkMetadataSet(dark("0304"));
  const auto merged = merge();
  EXPECT_EQ(summary_.changedSets, 1u);
  ASSERT_EQ(merged->darkEnd() - merged->darkBegin(), 1);
  EXPECT_EQ((*merged->darkBegin())->value().rawBuffer()[0], 0x03);
}

}  // namespace
}  // namespace Vantor
