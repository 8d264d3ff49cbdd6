#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataSalvage.h"
#include "Core/Metadata/PartitionDigest.h"
#include "tests/Core/MXF/WholeFile.h"
#include "tests/SampleFiles.h"

namespace Vantor::MXF {
namespace {

struct WholeSets {
  std::vector<uint64> ends;   // of sets and dark sets, ascending
  uint64 start = 0, end = 0;  // of the metadata, behind the primer pack
};

WholeSets wholeSetsOf(DataIO::SeekableSource& source) {
  WholeSets sets;
  source.seek(0);
  const auto header = readHeaderPartition(source);
  readHeaderMetadata(source, builtInDictionary(), header);
  sets.end = source.position();
  source.seek(header.packEnd);
  while (source.position() < sets.end) {
    const auto klv = readKLVHeader(source);
    const bool isSet = KLV::canBeSet(klv.key);
    if (KLV::isPrimerPack(klv.key)) sets.start = source.position() + klv.length.value;
    skipValue(klv, source);
    if (isSet) sets.ends.push_back(source.position());
  }
  return sets;
}

class SalvageOfSamplesTest : public testing::TestWithParam<Path> {
 protected:
  static Bytes start(const Path& path, uint64 size) {
    Bytes bytes = bytesOf(path);
    bytes.resize(static_cast<std::size_t>(std::min<uint64>(bytes.size(), size)));
    return bytes;
  }
};

TEST_P(SalvageOfSamplesTest, HasAllOfASoundFile) {
  DataIO::File::FileDataSource file(GetParam());
  const auto partitions = readStructure(file).partitions;
  for (const auto& partition : partitions) {
    if (partition.pack.headerByteCount == 0) continue;
    const auto whole = readHeaderMetadata(file, builtInDictionary(), partition);
    const auto end = file.position();
    const auto salvaged = salvageHeaderMetadata(file, builtInDictionary(), partition);
    EXPECT_EQ(file.position(), end);
    EXPECT_EQ(digestOf(*salvaged.metadata), digestOf(*whole));
    EXPECT_TRUE(salvaged.missing.empty());
  }
}

TEST_P(SalvageOfSamplesTest, HasTheWholeSetsBeforeACut) {
  DataIO::File::FileDataSource file(GetParam());
  const auto whole = wholeSetsOf(file);
  const Bytes bytes = start(GetParam(), whole.end);
  for (int i = 0; i < 50; ++i) {
    const uint64 cut = whole.start + (whole.end - whole.start) * static_cast<uint64>(i) / 50;
    DataIO::Memory::MemoryFile damaged(slice(bytes, 0, cut));
    const auto salvaged = salvageHeaderMetadata(damaged, builtInDictionary());
    const auto before = std::upper_bound(whole.ends.begin(), whole.ends.end(), cut) - whole.ends.begin();
    EXPECT_EQ(salvaged.metadata->entries().size(), static_cast<std::size_t>(before)) << cut;
    EXPECT_LE(salvaged.missing.size(), 1u);
  }
}

TEST_P(SalvageOfSamplesTest, GoesOnBehindTheDamage) {
  DataIO::File::FileDataSource file(GetParam());
  const auto whole = wholeSetsOf(file);
  const Bytes bytes = start(GetParam(), whole.ends.back());
  std::size_t found = 0, tried = 0;
  for (std::size_t i = 0; i + 1 < whole.ends.size(); i += 1 + whole.ends.size() / 40) {
    Bytes damaged = bytes;
    damaged[static_cast<std::size_t>(whole.ends[i]) + 17] ^= 0x40;  // the length of the next KLV
    DataIO::Memory::MemoryFile memory(damaged);
    const auto salvaged = salvageHeaderMetadata(memory, builtInDictionary());
    ++tried;
    if (salvaged.metadata->entries().size() + 2 >= whole.ends.size()) ++found;
  }
  // Fill and dark sets may be hit; what stands behind these is found, too.
  EXPECT_GT(10 * found, 8 * tried);
}

INSTANTIATE_TEST_SUITE_P(Samples, SalvageOfSamplesTest, testing::ValuesIn(sampleFiles()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
