#include <gmock/gmock.h>

#include <string>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/MXFBytes.h"
#include "tests/Core/MXF/WholeFile.h"
#include "tests/SampleFiles.h"

namespace Vantor::MXF {
namespace {

struct Sample {
  const char* file;
  std::size_t sets;                // dark groups included
  std::size_t darkSets;            // KLVs that are no local sets
  std::vector<uint64> partitions;  // offsets
  bool footerRepeatsMetadata;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.file; }

// The counts are those of scripts/count-sets.py.
const Sample kSamples[] = {
    {"op1a.mxf", 27, 0, {0, 6144, 23552}, false},
    {"ffmpeg-mpeg2-pipe-unfinished.mxf", 27, 0, {0, 6144, 23552}, false},
    {"gst-audio-ac3.mxf", 19, 0, {0, 3553, 6822}, true},
    {"bmx-as02-as02b.mxf", 43, 0, {0, 23163}, false},
    {"bmx-as11-d10.header.mxf", 31, 0, {0}, false},
    {"bmx-imf-j2c.header.mxf", 14, 0, {0}, false},
    {"bmx-op1a-adm.header.mxf", 44, 0, {0}, false},
    {"bmx-op1a-mca-properties.header.mxf", 44, 0, {0}, false},
    {"bmx-op1a-timedtext.mxf", 21, 0, {0, 20184, 20441, 21377, 21600, 21825}, false},
    {"bmx-rdd9-embedxml.header.mxf", 58, 0, {0}, false},
    {"libmxf-bbcarchive-10bit.header.mxf", 53, 0, {0}, false},
    {"libmxf-writeaviddv50.header.mxf", 437, 2, {0}, false},
};

class SampleFile : public testing::TestWithParam<Sample> {
 protected:
  Path path() const { return Path(VANTOR_TEST_DATA_DIR) / GetParam().file; }
};

/// Every sample there is, whatever it holds.
class AnySampleFile : public testing::TestWithParam<Path> {};

/// The KLVs of a partition's header metadata with their keys and lengths, but for primer pack and fill.
std::vector<Bytes> setsIn(const Bytes& file, const PartitionInfo& partition) {
  std::vector<Bytes> sets;
  DataIO::Memory::MemoryDataSource source(file.data(), file.size());
  source.skip(partition.packEnd);
  uint64 end = file.size();
  while (source.position() < end) {
    const auto start = static_cast<std::ptrdiff_t>(source.position());
    uint8 octets[KLV::Key::kSize];
    source.read(octets, sizeof octets);
    const KLV::Key key(octets);
    source.skip(KLV::readBERLength(source).value);
    if (KLV::isPrimerPack(key)) end = static_cast<uint64>(start) + partition.pack.headerByteCount;
    if (KLV::isPrimerPack(key) || KLV::isFill(key)) continue;
    sets.emplace_back(file.begin() + start, file.begin() + static_cast<std::ptrdiff_t>(source.position()));
  }
  return sets;
}

Bytes written(const PartitionMetadata::Entry& entry, PartitionDictionary& tags) {
  DataIO::Memory::MemoryDataSink sink;
  if (const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry)) {
    (*set)->serialize(sink, tags);
  } else {
    std::get<auto_ptr<DarkMetadataSet>>(entry)->serialize(sink);
  }
  return sink.take();
}

TEST_P(SampleFile, HasItsPartitions) {
  std::vector<uint64> offsets;
  for (const auto& partition : readStructure(path()).partitions) offsets.push_back(partition.offset);
  EXPECT_EQ(offsets, GetParam().partitions);
}

TEST_P(SampleFile, HasItsSets) {
  const auto metadata = readHeaderMetadata(path(), builtInDictionary());
  EXPECT_EQ(metadata->sets().size(), GetParam().sets);
  EXPECT_EQ(static_cast<std::size_t>(metadata->darkEnd() - metadata->darkBegin()), GetParam().darkSets);
}

TEST_P(AnySampleFile, WritesEverySetWithTheBytesThatWereRead) {
  const PartitionInfo header = readStructure(GetParam()).partitions.front();
  const auto metadata = readHeaderMetadata(GetParam(), builtInDictionary());
  const auto expected = setsIn(bytesOf(GetParam()), header);
  ASSERT_FALSE(expected.empty());
  ASSERT_EQ(metadata->entries().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(written(metadata->entries()[i], metadata->partitionDictionary()), expected[i]) << "KLV " << i;
  }
}

TEST_P(SampleFile, HasTheSameMetadataInItsFooterOrNone) {
  const auto readFooter = [&] { return readHeaderMetadata(path(), builtInDictionary(), PartitionChoice::footer()); };
  if (!GetParam().footerRepeatsMetadata) {
    EXPECT_THROW(readFooter(), Exceptions::ParseError);
    return;
  }
  const auto header = readHeaderMetadata(path(), builtInDictionary());
  const auto footer = readFooter();
  ASSERT_EQ(footer->entries().size(), header->entries().size());
  for (std::size_t i = 0; i < header->entries().size(); ++i) {
    EXPECT_EQ(written(footer->entries()[i], footer->partitionDictionary()),
              written(header->entries()[i], header->partitionDictionary()));
  }
}

TEST_P(AnySampleFile, IsWrittenAgainAsTheSameSetsInTheSameOrder) {
  Bytes expected;
  for (const auto& set : setsIn(bytesOf(GetParam()), readStructure(GetParam()).partitions.front())) {
    expected.insert(expected.end(), set.begin(), set.end());
  }
  const auto metadata = readHeaderMetadata(GetParam(), builtInDictionary());
  DataIO::Memory::MemoryDataSink sink;
  writeHeaderMetadata(*metadata, SetOrder::kFile, sink);

  DataIO::Memory::MemoryDataSource source(sink.rawBuffer(), sink.serializedSize());
  source.skip(KLV::Key::kSize);
  source.skip(KLV::readBERLength(source).value);
  const uint8* afterPrimer = sink.rawBuffer() + source.position();
  EXPECT_EQ(Bytes(afterPrimer, afterPrimer + source.remaining()), expected);
}

TEST_P(SampleFile, BecomesAFileOfItsHeaderMetadataAlone) {
  const auto metadata = readHeaderMetadata(path(), builtInDictionary());
  DataIO::Memory::MemoryDataSink sink;
  writeHeaderOnlyFile(*metadata, SetOrder::kSerialization, sink);
  const TemporaryFile file(sink.take());

  const auto structure = readStructure(file.path());
  ASSERT_EQ(structure.partitions.size(), 1u);
  const auto& pack = structure.partitions.front().pack;
  EXPECT_EQ(pack.kind, KLV::PartitionKind::kHeader);
  EXPECT_EQ(pack.status, KLV::PartitionStatus::kClosedComplete);
  EXPECT_EQ(pack.kagSize, 1u);
  EXPECT_EQ(pack.operationalPattern, readStructure(path()).partitions.front().pack.operationalPattern);
  DataIO::File::FileDataSource source(file.path());
  EXPECT_EQ(readRandomIndexPack(source, 0), std::vector<uint64>{0});
  const auto readBack = readHeaderMetadata(file.path(), builtInDictionary());
  EXPECT_TRUE(comparePartitions(*metadata, *readBack).isEqual());
  EXPECT_EQ(readBack->entries().size(), metadata->entries().size());
}

TEST(SampleFiles, AreAllListedHere) { EXPECT_EQ(mxfFilesIn(VANTOR_TEST_DATA_DIR).size(), std::size(kSamples)); }

INSTANTIATE_TEST_SUITE_P(Samples, SampleFile, testing::ValuesIn(kSamples));
INSTANTIATE_TEST_SUITE_P(Samples, AnySampleFile, testing::ValuesIn(sampleFiles()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
