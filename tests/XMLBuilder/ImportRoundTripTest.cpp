#include <filesystem>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using XMLBuilder::exported;
using XMLBuilder::Flags;
using XMLBuilder::inLines;
using XMLUtils::EncodingType;

constexpr EncodingType kEncodings[] = {EncodingType::kUTF8, EncodingType::kUTF8Indented, EncodingType::kUTF16,
                                       EncodingType::kUTF16Indented};

auto_ptr<PartitionMetadata> newPartition() { return std::make_unique<PartitionMetadata>(builtInDictionary()); }

class SampleFiles : public ::testing::TestWithParam<const char*> {
 protected:
  SampleFiles()
      : original_(MXF::readHeaderMetadata(std::filesystem::path(VANTOR_TEST_DATA_DIR) / GetParam(), builtInDictionary())) {
  }
  PartitionMetadata& original() const { return *original_; }

 private:
  std::unique_ptr<PartitionMetadata> original_;
};

TEST_P(SampleFiles, Come) {
  for (const auto flags : {XMLBuilder::kNested, XMLBuilder::kFlat}) {
    const auto before = exported(original(), flags);
    const auto partition = newPartition();
    importRaw(before, *partition);
    EXPECT_EQ(inLines(renumbered(exported(*partition, flags))), inLines(renumbered(before)));
  }
}

INSTANTIATE_TEST_SUITE_P(Import, SampleFiles,
                         ::testing::Values("bmx-as02-as02b.mxf", "bmx-op1a-adm.header.mxf", "bmx-op1a-timedtext.mxf",
                                           "bmx-rdd9-embedxml.header.mxf", "ffmpeg-mpeg2-pipe-unfinished.mxf",
                                           "gst-audio-ac3.mxf", "libmxf-bbcarchive-10bit.header.mxf",
                                           "libmxf-writeaviddv50.header.mxf", "op1a.mxf"));

}  // namespace
}  // namespace Vantor::XML2Partition
