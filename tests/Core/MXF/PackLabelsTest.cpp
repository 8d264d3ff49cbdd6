#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/ReplacementTest.h"

namespace Vantor::MXF {
namespace {

using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;
using Label = Types::UniversalLabel;

Label labelOf(uint8 octet) { return Label(Bytes(16, octet).data()); }

std::vector<Label> labels(std::size_t count) {
  std::vector<Label> some;
  while (some.size() < count) some.push_back(labelOf(static_cast<uint8>(0x60 + some.size())));
  return some;
}

/// All packs have the pattern 0x10 and two essence containers.
FileLayout labelled(FileLayout layout) {
  for (auto& partition : layout.partitions) {
    partition.operationalPattern = labelOf(0x10);
    partition.essenceContainers = labels(2);
  }
  return layout;
}

FileLayout withPattern(FileLayout layout, uint8 octet) {
  for (auto& partition : layout.partitions) partition.operationalPattern = labelOf(octet);
  return layout;
}

FileLayout withContainers(FileLayout layout, std::size_t count) {
  for (auto& partition : layout.partitions) partition.essenceContainers = labels(count);
  return layout;
}

PackLabels pattern(uint8 octet) { return {labelOf(octet)}; }
PackLabels containers(std::size_t count) { return {{}, labels(count)}; }

class PackLabelsTest : public ReplacementTest {};
class PackLabelsRewriteTest : public ReplacementTest, public testing::WithParamInterface<RewriteCase> {};

TEST_F(PackLabelsTest, AreWrittenInPlaceIntoThePacksOfAllPartitions) {
  for (const uint32 kag : {1, 512}) {
    const FileLayout layout = labelled(fivePartitions(kag));
    const Path file = write(layout);
    ASSERT_TRUE(fits(file, pattern(0x20)));
    replaceInPlace(file, pattern(0x20));
    EXPECT_EQ(bytesOf(file), fileOf(withPattern(layout, 0x20)));
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
}

TEST_F(PackLabelsTest, AreWrittenIntoTheChosenPackAlone) {
  FileLayout layout = labelled(fivePartitions());
  const Path file = write(layout);
  PackLabels footer = pattern(0x20);
  footer.partition = 4;
  replaceInPlace(file, footer);
  layout.partitions[4].operationalPattern = labelOf(0x20);
  EXPECT_EQ(bytesOf(file), fileOf(layout));
}

TEST_F(PackLabelsTest, LeavePacksAloneThatHaveThemInAnyOrder) {
  FileLayout layout = labelled(fivePartitions());
  const Path file = write(layout);
  auto time = std::filesystem::last_write_time(file);
  PackLabels same = {labelOf(0x10), std::vector<Label>{labels(2)[1], labels(2)[0]}};
  ASSERT_TRUE(fits(file, same));
  replaceInPlace(file, same);
  EXPECT_EQ(bytesOf(file), fileOf(layout));
  EXPECT_EQ(std::filesystem::last_write_time(file), time);
  same.essenceContainers = std::vector<Label>(2, labels(1)[0]);
  replaceInPlace(file, same);
  EXPECT_NE(bytesOf(file), fileOf(layout));
}

TEST_F(PackLabelsTest, GrowAndShrinkInPlaceWhereTheFillBehindThePackHasRoom) {
  const FileLayout layout = labelled(fivePartitions(512));
  const Path file = write(layout);
  for (const std::size_t count : {3, 24, 0, 1, 2}) {
    ASSERT_TRUE(fits(file, containers(count))) << count;
    replaceInPlace(file, containers(count));
    EXPECT_EQ(bytesOf(file), fileOf(withContainers(layout, count))) << count;
  }
  EXPECT_FALSE(fits(file, containers(25)));  // 4 bytes are too few for fill
  EXPECT_THAT(
      [&] { replaceInPlace(file, containers(25)); },
      ThrowsMessage<InvalidLength>(HasSubstr("the pack of partition 0 has room for 512 bytes, or for 17 and more "
                                             "bytes less, but the new one takes 508")));
  EXPECT_EQ(bytesOf(file), fileOf(layout));
}

TEST_F(PackLabelsTest, TakeTheFillBehindThePackToItsEnd) {
  FileLayout layout = labelled(fivePartitions(1));
  for (auto& partition : layout.partitions) partition.spareForPack = 32;
  const Path file = write(layout);
  for (auto& partition : layout.partitions) partition.spareForPack = 0;
  ASSERT_FALSE(fits(file, containers(3)));  // 16 bytes are too few for fill
  ASSERT_TRUE(fits(file, containers(4)));
  replaceInPlace(file, containers(4));
  EXPECT_EQ(bytesOf(file), fileOf(withContainers(layout, 4)));
  EXPECT_FALSE(fits(file, containers(3)));
  EXPECT_TRUE(fits(file, containers(2)));
}

TEST_F(PackLabelsTest, KeepTheNumbersInThePackRightOrWrong) {
  Bytes bytes = fileOf(labelled(fivePartitions(512)));
  bytes[20 + 16 + 7] ^= 0x55;  // the header's PreviousPartition
  const Path file = write(bytes);
  replaceInPlace(file, pattern(0x20));
  EXPECT_EQ(bytesOf(file)[20 + 16 + 7], bytes[20 + 16 + 7]);
}

TEST_F(PackLabelsTest, KeepTheKeyAndTheLengthField) {
  FileLayout layout = labelled(fivePartitions(1));
  for (auto& partition : layout.partitions) partition.berOctets = 9;
  Bytes bytes = fileOf(layout);
  bytes[7] = 0x02;  // another version of the register
  const Path file = write(bytes);
  rewrite(file, containers(5), folder_ / "b.mxf");
  Bytes expected = fileOf(withContainers(layout, 5));
  expected[7] = 0x02;
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), expected);
}

TEST_F(PackLabelsTest, LengthenALengthFieldThatIsTooShort) {
  FileLayout layout = fivePartitions(1);
  for (auto& partition : layout.partitions) partition.berOctets = 1;
  const Path file = write(layout);
  rewrite(file, containers(3), folder_ / "b.mxf");  // 88 + 3 * 16 octets
  EXPECT_EQ(bytesOf(folder_ / "b.mxf")[16], 0x81);
  if (hasPython()) {
    EXPECT_EQ(complaint(folder_ / "b.mxf", file, "--labels"), "");
  }
}

TEST_P(PackLabelsRewriteTest, MakeTheFileThatHadBeenWrittenWithThem) {
  const FileLayout layout = labelled(layoutOf(GetParam()));
  const Path file = write(layout);
  for (const std::size_t count : {0, 1, 3, 300}) {
    FileLayout expected = withPattern(withContainers(layout, count), 0x30);
    for (auto& partition : expected.partitions) partition.spareForPack = count == 0 ? 32 : 0;  // which fill can take
    DataIO::Memory::MemoryDataSink sink;
    rewrite(file, PackLabels{labelOf(0x30), labels(count)}, sink);
    EXPECT_EQ(sink.take(), fileOf(expected)) << count;
    expected.partitions[0].metadata = *replacement(0, 5000).bytes;
    rewrite(file, Replacements({replacement(0, 5000)}, {labelOf(0x30), labels(count)}), sink);
    EXPECT_EQ(sink.take(), fileOf(expected)) << count << ", with metadata";
  }
}

TEST_P(PackLabelsRewriteTest, MoveTheRestOfTheFileWithOnePack) {
  FileLayout layout = labelled(layoutOf(GetParam()));
  const Path file = write(layout);
  for (std::size_t partition = 0; partition < 5; ++partition) {
    PackLabels one = containers(300);
    one.partition = partition;
    FileLayout expected = layout;
    expected.partitions[partition].essenceContainers = labels(300);
    DataIO::Memory::MemoryDataSink sink;
    rewrite(file, one, sink);
    EXPECT_EQ(sink.take(), fileOf(expected)) << partition;
  }
}

TEST_P(PackLabelsRewriteTest, AreInOrderForAWitness) {
  if (!hasPython()) GTEST_SKIP() << "there is no Python";
  const Path file = write(labelled(layoutOf(GetParam())));
  for (const std::size_t count : {0, 40}) {
    rewrite(file, Replacements({replacement(2, 3000)}, containers(count)), folder_ / "b.mxf");
    EXPECT_EQ(complaint(folder_ / "b.mxf", file, "--labels"), "");
    EXPECT_THAT(complaint(folder_ / "b.mxf", file), HasSubstr("another partition pack"));
  }
}

INSTANTIATE_TEST_SUITE_P(Layouts, PackLabelsRewriteTest, testing::ValuesIn(kRewriteCases));

TEST_F(PackLabelsTest, MakeTheSameFileInPlaceAndAnew) {
  const FileLayout layout = labelled(fivePartitions(512, 100));
  const Replacements both({replacement(0, 620), replacement(4, 300)}, {labelOf(0x20), labels(7)});
  const Path file = write(layout);
  rewrite(file, both, folder_ / "b.mxf");
  replaceInPlace(file, both);
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
}

TEST_F(PackLabelsTest, GiveAnEmptyListWithoutItemSizeOne) {
  Bytes bytes = fileOf(fivePartitions());
  bytes[20 + 84 + 3] = 0;  // 16 before
  const Path file = write(bytes);
  rewrite(file, containers(1), folder_ / "b.mxf");
  EXPECT_EQ(readStructure(folder_ / "b.mxf").partitions[0].pack.essenceContainers, labels(1));
}

TEST_F(PackLabelsTest, AreRefusedForAPartitionThatIsNotThere) {
  const Path file = write(labelled(fivePartitions()));
  PackLabels sixth = pattern(0x20);
  sixth.partition = 5;
  const auto refusal = ThrowsMessage<InvalidFormat>(
      HasSubstr("the pack of partition 5 cannot get other labels: the file has 5 partitions, counted from 0"));
  EXPECT_THAT([&] { fits(file, sixth); }, refusal);
  EXPECT_THAT([&] { replaceInPlace(file, sixth); }, refusal);
  EXPECT_THAT([&] { rewrite(file, sixth, folder_ / "b.mxf"); }, refusal);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(PackLabelsTest, AreRefusedWhereNoReaderWouldTakeThePack) {
  const Path file = write(labelled(fivePartitions()));
  const PackLabels most = {{}, std::vector<Label>(65530, labelOf(1))};
  EXPECT_NO_THROW(rewrite(file, most, folder_ / "b.mxf"));
  EXPECT_EQ(readStructure(folder_ / "b.mxf").partitions[4].pack.essenceContainers.size(), 65530u);
  const PackLabels tooMany = {{}, std::vector<Label>(65531, labelOf(1))};
  EXPECT_THAT([&] { rewrite(file, tooMany, folder_ / "b.mxf"); },
              ThrowsMessage<InvalidLength>(HasSubstr("the pack of partition 0 cannot get 65531 essence containers")));
}

#ifdef __linux__

TEST_F(PackLabelsTest, AreUndoneOrWholeWhenTheProgramIsKilledAtAnyOfManySystemCalls) {
  const Path file = write(labelled(fivePartitions(512)));
  expectUndoneOrDone(file, Replacements({replacement(0, 500)}, {labelOf(0x20), labels(9)}), 5);
}

#endif

}  // namespace
}  // namespace Vantor::MXF
