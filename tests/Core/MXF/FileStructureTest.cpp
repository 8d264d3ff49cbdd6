#include "Core/MXF/FileStructure.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/MXFBytes.h"

namespace Vantor::MXF {
namespace {

using KLV::PartitionKind;
using KLV::PartitionStatus;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;

const Bytes kEssence = klv(kPictureElement, Bytes(50, 0x55));  // 70 bytes

// Where the partitions of `threePartitions()` start, and where the last one ends.
constexpr uint64 kBody = kPackSize + 70;
constexpr uint64 kFooter = 2 * kBody;
constexpr uint64 kEnd = kFooter + kPackSize;

/// The links between the partition packs.
struct Links {
  uint64 headersFooter = kFooter;
  uint64 bodysPrevious = 0;
  uint64 footersPrevious = kBody;
};

Bytes packOf(PartitionKind kind, PartitionStatus status, uint64 thisPartition, uint64 previous, uint64 footer) {
  PartitionPack pack;
  pack.kind = kind;
  pack.status = status;
  pack.thisPartition = thisPartition;
  pack.previousPartition = previous;
  pack.footerPartition = footer;
  return partition(pack);
}

Bytes headerPack(uint64 footer = 0) {
  return packOf(PartitionKind::kHeader, PartitionStatus::kOpenIncomplete, 0, 0, footer);
}

Bytes threePartitions(const Links& links = {}) {
  return headerPack(links.headersFooter) + kEssence +
         packOf(PartitionKind::kBody, PartitionStatus::kOpenIncomplete, kBody, links.bodysPrevious, 0) + kEssence +
         packOf(PartitionKind::kFooter, PartitionStatus::kClosedComplete, kFooter, links.footersPrevious, kFooter);
}

FileStructure structureOf(const Bytes& bytes) { return readStructure(TemporaryFile(bytes).path()); }

std::vector<uint64> offsetsOf(const FileStructure& structure) {
  std::vector<uint64> offsets;
  for (const auto& partition : structure.partitions) offsets.push_back(partition.offset);
  return offsets;
}

PartitionInfo find(const Bytes& bytes, const PartitionChoice& choice) {
  const TemporaryFile file(bytes);
  DataIO::File::FileDataSource source(file.path());
  return findPartition(source, choice);
}

void damage(Bytes& bytes, uint64 offset) { bytes[static_cast<std::size_t>(offset)] ^= 0xff; }

TEST(FileStructure, ListsThePartitionsOfTheRandomIndexPack) {
  const FileStructure structure = structureOf(threePartitions() + randomIndexPack({0, kBody, kFooter}));
  EXPECT_EQ(structure.source, StructureSource::kRandomIndexPack);
  EXPECT_THAT(offsetsOf(structure), ElementsAre(0, kBody, kFooter));
  EXPECT_EQ(structure.fileSize, kEnd + 60);
  EXPECT_EQ(structure.end, structure.fileSize);
  EXPECT_EQ(structure.runIn, 0u);
  EXPECT_EQ(structure.partitions[1].packEnd, kBody + kPackSize);
  EXPECT_EQ(structure.partitions[1].pack.kind, PartitionKind::kBody);
  EXPECT_EQ(structure.partitions[2].pack.status, PartitionStatus::kClosedComplete);
}

TEST(FileStructure, FollowsThePreviousPartitionsWithoutARandomIndexPack) {
  const FileStructure structure = structureOf(threePartitions());
  EXPECT_EQ(structure.source, StructureSource::kPreviousPartitions);
  EXPECT_THAT(offsetsOf(structure), ElementsAre(0, kBody, kFooter));
}

TEST(FileStructure, WalksWhenTheHeaderDoesNotKnowTheFooter) {
  Links links;
  links.headersFooter = 0;
  const FileStructure structure = structureOf(threePartitions(links));
  EXPECT_EQ(structure.source, StructureSource::kWalk);
  EXPECT_THAT(offsetsOf(structure), ElementsAre(0, kBody, kFooter));
  EXPECT_EQ(structure.end, kEnd);
  EXPECT_EQ(structure.fileSize, kEnd);
}

TEST(FileStructure, DoesNotBelieveARandomIndexPackThatLeavesAPartitionOut) {
  EXPECT_EQ(structureOf(threePartitions() + randomIndexPack({0, kFooter})).source,
            StructureSource::kPreviousPartitions);
  EXPECT_EQ(structureOf(threePartitions() + randomIndexPack({0, kBody})).source, StructureSource::kPreviousPartitions);
  EXPECT_EQ(structureOf(threePartitions() + randomIndexPack({kBody, kFooter})).source,
            StructureSource::kPreviousPartitions);
}

TEST(FileStructure, DoesNotBelieveARandomIndexPackWithAnOffsetWhereNoPartitionIs) {
  const FileStructure structure = structureOf(threePartitions() + randomIndexPack({0, kBody + 1, kFooter}));
  EXPECT_EQ(structure.source, StructureSource::kPreviousPartitions);
  EXPECT_THAT(offsetsOf(structure), ElementsAre(0, kBody, kFooter));
}

TEST(FileStructure, WalksWhenPreviousPartitionsFormACycle) {
  for (const Links links : {Links{kFooter, 0, kFooter}, Links{kFooter, kFooter, kBody}, Links{kFooter, kBody, kBody},
                            Links{kFooter, 0, ~uint64{0}}}) {
    const FileStructure structure = structureOf(threePartitions(links) + randomIndexPack({0, kBody, kFooter}));
    EXPECT_EQ(structure.source, StructureSource::kWalk);
    EXPECT_THAT(offsetsOf(structure), ElementsAre(0, kBody, kFooter));
  }
}

TEST(FileStructure, WalksWhenAPreviousPartitionIsNone) {
  Links links;
  links.footersPrevious = kBody - 1;
  EXPECT_EQ(structureOf(threePartitions(links)).source, StructureSource::kWalk);
}

TEST(FileStructure, CountsOffsetsFromTheEndOfTheRunIn) {
  for (const std::size_t runIn : {std::size_t{1}, std::size_t{11}, std::size_t{4096}, std::size_t{65535}}) {
    const Bytes start(runIn, 0x06);
    const FileStructure structure = structureOf(start + threePartitions() + randomIndexPack({0, kBody, kFooter}));
    EXPECT_EQ(structure.source, StructureSource::kRandomIndexPack);
    EXPECT_EQ(structure.runIn, runIn);
    EXPECT_THAT(offsetsOf(structure), ElementsAre(runIn, runIn + kBody, runIn + kFooter));
    EXPECT_EQ(structureOf(start + threePartitions()).source, StructureSource::kPreviousPartitions);
    EXPECT_EQ(find(start + threePartitions(), PartitionChoice::footer()).offset, runIn + kFooter);
  }
}

TEST(FileStructure, LooksForNoHeaderBehindALongerRunIn) {
  EXPECT_THAT([] { structureOf(zeros(65536) + threePartitions()); },
              ThrowsMessage<Exceptions::ParseError>(
                  StrEq("this is no MXF file: no partition pack among its first 65,536 bytes")));
}

TEST(FileStructure, RefusesFilesWithoutHeaderPartition) {
  EXPECT_THROW(structureOf({}), Exceptions::ParseError);
  EXPECT_THROW(structureOf({0x06}), Exceptions::ParseError);
  EXPECT_THROW(structureOf(kEssence), Exceptions::ParseError);
  EXPECT_THAT(
      [] { structureOf(zeros(3) + packOf(PartitionKind::kBody, PartitionStatus::kClosedComplete, 0, 0, 0)); },
      ThrowsMessage<Exceptions::ParseError>(StrEq("at byte offset 3: expected a header partition pack, found key "
                                                  "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.04.00")));
}

TEST(FileStructure, RefusesAHeaderPackThatIsCutAnywhere) {
  const Bytes pack = headerPack();
  for (std::size_t size = 0; size < pack.size(); ++size) {
    EXPECT_THROW(structureOf(Bytes(pack.begin(), pack.begin() + size)), Exceptions::ParseError) << size;
  }
}

TEST(FileStructure, RefusesAPackOfAnImpossibleSizeBeforeReadingIt) {
  TemporaryFile file(
      klvHeader(KLV::partitionPackKey(PartitionKind::kHeader, PartitionStatus::kClosedComplete), uint64{50} << 30, 9));
  ASSERT_TRUE(file.growTo(uint64{100} << 30));
  EXPECT_THAT([&] { readStructure(file.path()); },
              ThrowsMessage<Exceptions::ParseError>(
                  StrEq("at byte offset 0: expected a partition pack, found one of 53687091200 bytes")));
}

TEST(FileStructure, KeepsTheNumbersOfPartitionsBehindADamagedPack) {
  Bytes bytes = threePartitions();
  damage(bytes, kBody + kPackSize - 1);  // the item size of the essence containers stays, their count does not
  damage(bytes, kBody + kPackSize - 5);
  const FileStructure structure = structureOf(bytes);
  EXPECT_EQ(structure.source, StructureSource::kWalk);
  EXPECT_THAT(offsetsOf(structure), ElementsAre(0, kBody, kFooter));
  EXPECT_TRUE(structure.partitions[1].damaged);
  EXPECT_EQ(structure.partitions[1].pack.kind, PartitionKind::kBody);
  EXPECT_EQ(find(bytes, PartitionChoice::number(2)).offset, kFooter);
  EXPECT_THAT([&] { find(bytes, PartitionChoice::number(1)); },
              ThrowsMessage<Exceptions::ParseError>(HasSubstr("a partition pack's essence containers")));
}

TEST(FileStructure, StopsWalkingWhereTheKLVsStop) {
  const Bytes sound = headerPack() + kEssence;
  for (const Bytes& rest : {klvHeader(kPictureElement, 1), klvHeader(kPictureElement, ~uint64{0}, 9), Bytes(40, 0xff),
                            zeros(40), Bytes(5, 0x06)}) {
    const FileStructure structure = structureOf(sound + rest);
    EXPECT_THAT(offsetsOf(structure), ElementsAre(0));
    EXPECT_EQ(structure.end, sound.size());
    EXPECT_EQ(structure.fileSize, sound.size() + rest.size());
  }
}

TEST(FileStructure, WalksThroughEmptyKLVs) {
  Bytes bytes = headerPack();
  for (int i = 0; i < 20000; ++i) bytes = std::move(bytes) + klvHeader(kForeign, 0, 1);
  const uint64 footer = bytes.size();
  bytes = bytes + packOf(PartitionKind::kFooter, PartitionStatus::kClosedComplete, footer, 0, footer);
  EXPECT_THAT(offsetsOf(structureOf(bytes)), ElementsAre(0, footer));
}

TEST(FileStructure, TellsWhichPartitionStartsAtAnOffset) {
  const FileStructure structure = structureOf(zeros(5) + threePartitions());
  EXPECT_EQ(partitionAt(structure, 5), 0u);
  EXPECT_EQ(partitionAt(structure, 5 + kBody), 1u);
  EXPECT_EQ(partitionAt(structure, 5 + kFooter), 2u);
  for (const uint64 offset : {uint64{0}, kBody, kFooter + 6, ~uint64{0}}) {
    EXPECT_EQ(partitionAt(structure, offset), std::nullopt);
  }
}

TEST(FindPartition, GivesTheHeaderByNameAndByNumber) {
  EXPECT_EQ(find(threePartitions(), PartitionChoice::header()).offset, 0u);
  EXPECT_EQ(find(threePartitions(), PartitionChoice::number(0)).offset, 0u);
}

TEST(FindPartition, FindsTheFooterByEachWay) {
  Links untold;
  untold.headersFooter = 0;
  Links wrong;
  wrong.headersFooter = kFooter + 1;
  Links notTheFooter;
  notTheFooter.headersFooter = kBody;
  Links beyond;
  beyond.headersFooter = ~uint64{0};
  for (const Links& links : {Links(), untold, wrong, notTheFooter, beyond}) {
    for (const Bytes& index : {Bytes(), randomIndexPack({0, kBody, kFooter}), randomIndexPack({0, kFooter - 1})}) {
      EXPECT_EQ(find(threePartitions(links) + index, PartitionChoice::footer()).offset, kFooter);
    }
  }
}

TEST(FindPartition, FindsTheFooterByTheIndexWhereAWalkWouldEndBefore) {
  Links untold;
  untold.headersFooter = 0;
  Bytes bytes = threePartitions(untold) + randomIndexPack({0, kBody, kFooter});
  damage(bytes, kPackSize + 16);  // the length of the first essence element
  EXPECT_EQ(find(bytes, PartitionChoice::footer()).offset, kFooter);
}

TEST(FindPartition, TellsThatThereIsNoFooter) {
  EXPECT_THAT([] { find(headerPack() + kEssence, PartitionChoice::footer()); },
              ThrowsMessage<Exceptions::ParseError>(StrEq("the file has no footer partition")));
  EXPECT_THAT([] { find(headerPack() + kEssence + zeros(9), PartitionChoice::footer()); },
              ThrowsMessage<Exceptions::ParseError>(
                  StrEq("the file has no footer partition; behind byte offset 178 it cannot be followed")));
}

TEST(FindPartition, FindsPartitionsByNumberWithAndWithoutIndex) {
  for (const Bytes& index : {Bytes(), randomIndexPack({0, kBody, kFooter}), randomIndexPack({0, kFooter})}) {
    EXPECT_EQ(find(threePartitions() + index, PartitionChoice::number(1)).offset, kBody);
    EXPECT_EQ(find(threePartitions() + index, PartitionChoice::number(2)).offset, kFooter);
    EXPECT_THAT([&] { find(threePartitions() + index, PartitionChoice::number(3)); },
                ThrowsMessage<Exceptions::ParseError>(StrEq("the file has no partition 3, only 3, counted from 0")));
  }
}

/// A header, a body and a footer partition, with the status of each; 0 for one without metadata.
FileStructure withMetadata(const std::vector<int>& statuses) {
  FileStructure structure;
  for (const int status : statuses) {
    auto& partition = structure.partitions.emplace_back();
    if (status != 0) partition.pack.status = static_cast<PartitionStatus>(status);
    partition.pack.headerByteCount = status == 0 ? 0 : 100;
  }
  structure.partitions.front().pack.kind = PartitionKind::kHeader;
  structure.partitions[1].pack.kind = PartitionKind::kBody;
  structure.partitions.back().pack.kind = PartitionKind::kFooter;
  return structure;
}

TEST(BestPartition, IsTheLastOfThoseWithTheBestStatus) {
  // From the worst: open incomplete, open complete, closed incomplete, closed complete.
  EXPECT_EQ(bestPartition(withMetadata({1, 1, 1})), 2u);
  EXPECT_EQ(bestPartition(withMetadata({3, 1, 1})), 0u);
  EXPECT_EQ(bestPartition(withMetadata({3, 2, 1})), 1u);
  EXPECT_EQ(bestPartition(withMetadata({2, 4, 3})), 1u);
  EXPECT_EQ(bestPartition(withMetadata({4, 4, 0})), 1u);
  EXPECT_EQ(bestPartition(withMetadata({4, 1, 4})), 2u);
  EXPECT_EQ(bestPartition(withMetadata({0, 0, 0})), std::nullopt);
  auto damaged = withMetadata({1, 2, 4});
  damaged.partitions[2].damaged = true;
  EXPECT_EQ(bestPartition(damaged), 1u);
}

TEST(BestPartition, IsAChoiceByName) {
  const auto structure = withMetadata({1, 2, 4});
  EXPECT_EQ(choiceOf(structure, 0).text(), "header");
  EXPECT_EQ(choiceOf(structure, 1).text(), "1");
  EXPECT_EQ(choiceOf(structure, 2).text(), "footer");
}

TEST(FindPartition, FindsTheBest) {
  PartitionPack header, footer;
  header.headerByteCount = footer.headerByteCount = 100;
  footer.kind = PartitionKind::kFooter;
  footer.status = PartitionStatus::kClosedComplete;
  EXPECT_EQ(find(partition(header) + kEssence + partition(footer), PartitionChoice::best()).offset, kBody);
  header.status = PartitionStatus::kClosedComplete;
  footer.status = PartitionStatus::kClosedIncomplete;
  EXPECT_EQ(find(partition(header) + kEssence + partition(footer), PartitionChoice::best()).offset, 0u);
  EXPECT_EQ(find(threePartitions(), PartitionChoice::best()).offset, 0u);  // which has no metadata either
}

TEST(FindPartition, FindsGenericStreamPartitions) {
  const Bytes stream = packOf(PartitionKind::kBody, PartitionStatus::kGenericStream, kPackSize, 0, 0);
  EXPECT_EQ(find(headerPack() + stream, PartitionChoice::number(1)).pack.status, PartitionStatus::kGenericStream);
}

}  // namespace
}  // namespace Vantor::MXF
