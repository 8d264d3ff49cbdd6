#include "Core/MXF/IndexTable.h"

#include <gmock/gmock.h>

#include "Core/DataIO/Memory.h"
#include "tests/Core/MXF/WholeFile.h"

/// The rate and the stream of index tables, wherever these stand in a partition.
namespace Vantor::MXF {
namespace {

constexpr uint16 kIndexSID = 0x3f06;
constexpr uint16 kIndexEditRate = 0x3f0b;
constexpr uint16 kEntries = 0x3f0a;

Bytes rate(uint32 numerator, uint32 denominator) {
  return item(kIndexEditRate, bigEndian(numerator) + bigEndian(denominator));
}
Bytes segment(const Bytes& items) { return klv(keyOf("06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00"), items); }

/// A file whose second partition holds these bytes where its index table stands.
FileLayout withIndexTable(const Bytes& table) {
  FileLayout layout;
  layout.partitions = {{KLV::PartitionKind::kHeader}, {KLV::PartitionKind::kBody}, {KLV::PartitionKind::kFooter}};
  layout.partitions[0].metadata = metadataOfSize(300, 1);
  layout.partitions[1].indexTable = table;
  return layout;
}

std::optional<IndexTableSegment> read(const FileLayout& layout, std::size_t number = 1) {
  const Bytes bytes = fileOf(layout);
  DataIO::Memory::MemoryFile source(bytes.data(), bytes.size());
  return readIndexTable(source, readStructure(source), number);
}

void expectFilmRate(const std::optional<IndexTableSegment>& index) {
  ASSERT_TRUE(index);
  EXPECT_EQ(index->indexSID, 129u);
  EXPECT_EQ(index->editRate, Types::Rational(24, 1));
}

const Bytes kFilm = segment(item(kIndexSID, bigEndian(uint32{129})) + rate(24, 1));

TEST(IndexTable, HasTheStreamAndTheEditRateOfItsFirstSegment) {
  expectFilmRate(read(withIndexTable(kFilm)));
  expectFilmRate(read(withIndexTable(kFilm + segment(rate(25, 1)))));
  expectFilmRate(read(withIndexTable(segment(rate(24, 1) + item(kIndexSID, bigEndian(uint32{129}))))));
}

TEST(IndexTable, StandsBehindMetadataAndFill) {
  FileLayout layout = withIndexTable(kFilm);
  for (const uint32 kag : {1, 512}) {
    auto& partition = layout.partitions[1];
    partition.kag = kag;
    partition.metadata = metadataOfSize(300, 1);
    partition.spare = 100;
    expectFilmRate(read(layout));
  }
}

TEST(IndexTable, IsNoneWhereNoneCanBeRead) {
  EXPECT_FALSE(read(withIndexTable(kFilm), 0));
  EXPECT_FALSE(read(withIndexTable(kFilm), 2));
  EXPECT_FALSE(read(withIndexTable(segment(item(kIndexSID, bigEndian(uint32{129}))))));
  EXPECT_FALSE(read(withIndexTable(segment(item(kIndexEditRate, Bytes(7, 1))))));
  EXPECT_FALSE(read(withIndexTable(klv(keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.7F.00"), rate(24, 1)))));
}

TEST(IndexTable, IsNoneWhereItsItemsRunPastItsEnd) {
  Bytes items = rate(24, 1) + item(kEntries, Bytes(40, 0));
  items.resize(items.size() - 30);
  EXPECT_FALSE(read(withIndexTable(segment(items))));
}

TEST(IndexTable, IsNoneInAFileThatEndsBeforeItDoes) {
  const Bytes bytes = fileOf(withIndexTable(kFilm));
  DataIO::Memory::MemoryFile whole(bytes.data(), bytes.size());
  const auto partition = readStructure(whole).partitions[1];
  for (uint64 size = partition.packEnd; size < partition.packEnd + kFilm.size(); ++size) {
    DataIO::Memory::MemoryFile cut(bytes.data(), size);
    EXPECT_FALSE(readIndexTable(cut, readStructure(cut), 1)) << size;
  }
}

}  // namespace
}  // namespace Vantor::MXF
