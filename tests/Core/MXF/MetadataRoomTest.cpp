#include "Core/MXF/MetadataRoom.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/WholeFile.h"

namespace Vantor::MXF {
namespace {

using Exceptions::IOError;
using Exceptions::ParseError;
using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

const Bytes kMetadata = metadataOfSize(200, 1);

/// A header partition whose pack counts so many bytes; `between` stands behind it, then comes a footer partition.
Bytes file(uint64 count, const Bytes& between) {
  PartitionPack header;
  header.headerByteCount = count;
  header.footerPartition = kPackSize + between.size();
  PartitionPack footer;
  footer.kind = KLV::PartitionKind::kFooter;
  footer.thisPartition = footer.footerPartition = header.footerPartition;
  return partition(header) + between + partition(footer);
}

std::optional<MetadataRoom> roomIn(const Bytes& bytes, std::size_t number = 0) {
  const TemporaryFile file(bytes);
  DataIO::File::FileDataSource source(file.path());
  return findMetadataRoom(source, readStructure(source), number);
}

void expectRoom(const Bytes& bytes, uint64 offset, uint64 size) {
  const auto room = roomIn(bytes);
  ASSERT_TRUE(room.has_value());
  EXPECT_EQ(room->offset, offset);
  EXPECT_EQ(room->size, size);
  EXPECT_EQ(room->end(), offset + size);
}

TEST(MetadataRoom, GoesFromThePrimerPackAsFarAsThePackCounts) { expectRoom(file(200, kMetadata), kPackSize, 200); }

TEST(MetadataRoom, BeginsBehindTheFillBehindThePack) {
  expectRoom(file(200, fill(30) + fill(0) + kMetadata), kPackSize + 70, 200);
}

TEST(MetadataRoom, TakesInTheFillThatIsCounted) {
  expectRoom(file(200 + 50 + 70, kMetadata + fill(30) + fill(50)), kPackSize, 320);
  expectRoom(file(200 + 50, kMetadata + fill(30) + fill(50)), kPackSize, 250);
  expectRoom(file(200, kMetadata + fill(30) + fill(50)), kPackSize, 200);
}

TEST(MetadataRoom, EndsBeforeIndexTablesAndEssence) {
  expectRoom(file(200, kMetadata + indexTable()), kPackSize, 200);
  expectRoom(file(200, kMetadata + klv(kPictureElement, Bytes(9, 1)) + setWithUID(kPreface, 2)), kPackSize, 200);
}

TEST(MetadataRoom, IsNoneInPartitionsWithoutHeaderMetadata) {
  EXPECT_FALSE(roomIn(file(200, kMetadata), 1).has_value());
  EXPECT_FALSE(roomIn(file(0, indexTable())).has_value());
  EXPECT_FALSE(roomIn(file(0, {})).has_value());
}

TEST(MetadataRoom, IsRefusedWhenTheCountIsWrong) {
  for (const uint64 count :
       {uint64{0}, uint64{1}, uint64{199}, uint64{201}, uint64{219}, uint64{251}, uint64{5000}, ~uint64{0}}) {
    EXPECT_THROW(roomIn(file(count, kMetadata + fill(30))), ParseError) << count;
  }
}

TEST(MetadataRoom, IsRefusedWhenTheCountTakesInIndexTables) {
  EXPECT_THAT([] { roomIn(file(200 + indexTable().size(), kMetadata + indexTable())); },
              ThrowsMessage<ParseError>(AllOf(HasSubstr("at byte offset 308: partition 0 counts"),
                                              HasSubstr("do not end with a KLV of them"))));
}

TEST(MetadataRoom, IsRefusedWhenSetsFollow) {
  EXPECT_THAT([] { roomIn(file(200, kMetadata + fill(5) + setWithUID(kPreface, 2))); },
              ThrowsMessage<ParseError>(HasSubstr("at byte offset 333: a set stands behind the header metadata")));
}

TEST(MetadataRoom, IsRefusedWhenTheFileIsCutOff) {
  Bytes bytes = file(200, kMetadata);
  EXPECT_THROW(roomIn(slice(bytes, 0, kPackSize + 199)), ParseError);
  EXPECT_THROW(roomIn(slice(bytes, 0, kPackSize)), ParseError);
}

TEST(MetadataRoom, IsRefusedWithoutAPrimerPack) {
  EXPECT_THAT([] { roomIn(file(40, setWithUID(kPreface, 2))); },
              ThrowsMessage<ParseError>(HasSubstr("expected the primer pack of partition 0")));
}

TEST(MetadataRoom, MayHaveAnObjectDirectoryOrItsRoot) {
  const KLV::Key directory = keyOf("96.13.B3.8A.87.34.87.46.F1.02.96.F0.56.E0.4D.2A");
  for (const auto& key : {directory, kForeign}) {
    EXPECT_TRUE(roomIn(file(230, kMetadata + klv(key, Bytes(10, 1))))->hasObjectDirectory);
    EXPECT_THAT([&] { roomIn(file(200, kMetadata + klv(key, Bytes(10, 1)))); },
                ThrowsMessage<IOError>(
                    AllOf(HasSubstr("at byte offset 308: "), HasSubstr(Utils::wstringToString(key.toString())))));
  }
  EXPECT_FALSE(roomIn(file(200, kMetadata))->hasObjectDirectory);
}

TEST(MetadataRoom, IsRefusedWhereAnObjectDirectoryStandsOutsideOfHeaderMetadata) {
  const Bytes list = klv(kForeign, Bytes(10, 1));
  const Bytes essence = klv(kPictureElement, Bytes(9, 1));
  for (const auto& before : {Bytes(), fill(30), indexTable(), indexTable() + fill(3) + indexTable()}) {
    const auto refusal = ThrowsMessage<IOError>(HasSubstr("in partition 0 holds offsets of sets"));
    EXPECT_THAT([&] { roomIn(file(200, kMetadata + before + list)); }, refusal);
    EXPECT_THAT([&] { roomIn(file(0, before + list)); }, refusal);
    EXPECT_FALSE(roomIn(file(0, before + essence + list)).has_value());
  }
}

TEST(MetadataRoom, HasTheObjectDirectoryOfASample) {
  DataIO::File::FileDataSource source(Path(VANTOR_TEST_DATA_DIR) / "libmxf-writeaviddv50.header.mxf");
  const FileStructure structure = readStructure(source);
  const auto room = findMetadataRoom(source, structure, 0);
  EXPECT_EQ(room->offset, 256u);
  EXPECT_TRUE(room->hasObjectDirectory);
}

TEST(MetadataRoom, HasAnEndWithoutTheFill) {
  const auto check = [](const Bytes& metadata, uint64 expected) {
    const TemporaryFile bytes(file(metadata.size(), metadata));
    DataIO::File::FileDataSource source(bytes.path());
    const auto room = withoutFill(source, *findMetadataRoom(source, readStructure(source), 0));
    EXPECT_EQ(room.offset, kPackSize);
    EXPECT_EQ(room.size, expected);
  };
  check(kMetadata, 200);
  check(kMetadata + fill(30) + fill(0), 200);
  check(kMetadata + fill(30) + setWithUID(kPreface, 3) + fill(9), 200 + 50 + 40);
}

TEST(MetadataRoom, HasTheSameBytesAsAnotherOrNot) {
  const std::size_t size = 200000;
  const Bytes bytes = metadataOfSize(size, 1);
  Bytes other = bytes;
  other.back() ^= 1;
  const TemporaryFile file(bytes + bytes + other);
  DataIO::File::FileDataSource source(file.path());
  const MetadataRoom first{0, size};
  EXPECT_TRUE(haveSameBytes(source, first, {size, size}));
  EXPECT_FALSE(haveSameBytes(source, first, {2 * size, size}));
  EXPECT_TRUE(haveSameBytes(source, {0, size - 1}, {2 * size, size - 1}));
  EXPECT_FALSE(haveSameBytes(source, first, {size, size - 1}));
}

}  // namespace
}  // namespace Vantor::MXF
