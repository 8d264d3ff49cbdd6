#include "Edit/Changes.h"

#include <gtest/gtest.h>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"

namespace Vantor::Edit {
namespace {

class ChangesTest : public testing::Test {
 protected:
  Bytes written() {
    DataIO::Memory::MemoryDataSink sink;
    MXF::writeHeaderMetadata(*metadata_, MXF::SetOrder::kFile, sink);
    return sink.take();
  }
  Changes changes() { return changesBetween(before_, written(), builtInDictionary()); }

  std::unique_ptr<PartitionMetadata> metadata_ =
      MXF::readHeaderMetadata(VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf", builtInDictionary());
  const Bytes before_ = written();
};

TEST_F(ChangesTest, AreNoneBetweenTheSameSetsInAnyOrder) {
  EXPECT_TRUE(changes().isNone());
  auto entries = metadata_->releaseEntries();
  for (auto at = entries.rbegin(); at != entries.rend(); ++at) {
    metadata_->addMetadataSet(std::move(std::get<auto_ptr<MetadataSet>>(*at)));
  }
  EXPECT_NE(written(), before_);
  EXPECT_TRUE(changes().isNone());
}

TEST_F(ChangesTest, AreNotThoseOfAnObjectDirectory) {
  const Bytes key = {0x96, 0x13, 0xb3, 0x8a, 0x87, 0x34, 0x87, 0x46, 0xf1, 0x02, 0x96, 0xf0, 0x56, 0xe0, 0x4d, 0x2a};
  metadata_->addDarkMetadataSet(std::make_unique<DarkMetadataSet>(KLV::Key(key.data()), uint8{4}, KLV::Value()));
  EXPECT_NE(written(), before_);
  EXPECT_TRUE(changes().isNone());
}

TEST_F(ChangesTest, CountSetsAndTheirProperties) {
  metadata_->find("Identification").set("ApplicationName", u"Ed");
  metadata_->find("Identification").remove("ApplicationPlatform");
  metadata_->find("TimelineTrack[2]").set("TrackID", 9);
  const auto changes = this->changes();
  EXPECT_EQ(changes.changedSets, 2u);
  EXPECT_EQ(changes.changedProperties, 3u);
  EXPECT_EQ(changes.addedSets + changes.removedSets, 0u);
}

TEST_F(ChangesTest, CountASetWithAnotherLengthFieldAsOneProperty) {
  metadata_->find("Identification").setBerLength(9);
  const auto changes = this->changes();
  EXPECT_EQ(changes.changedSets, 1u);
  EXPECT_EQ(changes.changedProperties, 1u);
}

TEST_F(ChangesTest, CountNewAndRemovedSets) {
  metadata_->createMetadataSet("NetworkLocator");
  metadata_->remove(metadata_->find("Identification"));
  metadata_->remove(metadata_->find("EssenceData"));
  const auto changes = this->changes();
  EXPECT_EQ(changes.changedSets, 0u);
  EXPECT_EQ(changes.addedSets, 1u);
  EXPECT_EQ(changes.removedSets, 2u);
}

}  // namespace
}  // namespace Vantor::Edit
