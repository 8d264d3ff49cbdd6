#include "Core/MXF/ObjectDirectory.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/ListedBytes.h"
#include "tests/Core/MXF/ReplacementTest.h"
#include "tests/SampleFiles.h"

namespace Vantor::MXF {
namespace {

using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using Exceptions::ParseError;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr uint64 kPlace = 5000;

/// A MetaDictionary, a Preface and two more sets.
ListedLayout fourSets() {
  ListedLayout layout;
  layout.sets = {{1, 30, 0, kMetaDictionaryKey}, {2, 20, 0, kPreface}, {3, 40, 7}, {4, 50, 9}};
  return layout;
}

/// What becomes of an edit of metadata at `kPlace` that moves them to another place.
Bytes placed(const ListedLayout& old, const ListedLayout& edited, uint64 place = kPlace, uint64 grid = 1) {
  DirectoryLayout layout = requireSoundDirectory(listedMetadata(old, kPlace), kPlace);
  layout.grid = grid;
  return ListedMetadata(editedMetadata(old, kPlace, edited), layout).at(place);
}

TEST(ObjectDirectory, FollowsMetadataThatMove) {
  for (const uint64 place : {uint64{0}, kPlace, uint64{1} << 40}) {
    EXPECT_EQ(placed(fourSets(), fourSets(), place), listedMetadata(fourSets(), place));
    const Bytes whole = listedMetadata(fourSets(), kPlace);
    EXPECT_EQ(ListedMetadata(whole, requireSoundDirectory(whole, kPlace)).at(place), listedMetadata(fourSets(), place));
  }
}

TEST(ObjectDirectory, FollowsASetThatGetsLongerOrShorter) {
  for (const std::size_t size : {0, 41, 3000}) {
    ListedLayout edited = fourSets();
    edited.sets[2].more = size;
    EXPECT_EQ(placed(fourSets(), edited), listedMetadata(edited, kPlace));
  }
}

TEST(ObjectDirectory, GetsEntriesForNewSetsAndLosesThoseOfRemovedOnes) {
  ListedLayout edited = fourSets();
  edited.sets.insert(edited.sets.begin() + 3, {5, 10});
  EXPECT_EQ(placed(fourSets(), edited), listedMetadata(edited, kPlace));
  edited.sets.erase(edited.sets.begin() + 2);
  EXPECT_EQ(placed(fourSets(), edited), listedMetadata(edited, kPlace));
}

TEST(ObjectDirectory, StaysTheLastKLVWhereItWasTheLast) {
  ListedLayout written = fourSets();
  written.last = {{5, 10}};
  ListedLayout expected = fourSets();
  expected.sets.push_back({5, 10});
  EXPECT_EQ(placed(fourSets(), written), listedMetadata(expected, kPlace));
}

TEST(ObjectDirectory, StaysAmongTheSetsWhereItWasAmongThem) {
  ListedLayout layout = fourSets();
  layout.last = {{5, 10}};
  EXPECT_EQ(placed(layout, layout), listedMetadata(layout, kPlace));
  layout.last.push_back({6, 20});
  EXPECT_EQ(placed(layout, layout, 77), listedMetadata(layout, 77));
}

TEST(ObjectDirectory, KeepsTheOctetsOfItsLengthField) {
  for (const uint8 octets : {2, 4, 9}) {
    ListedLayout layout = fourSets();
    layout.berOctets = octets;
    ListedLayout edited = layout;
    edited.sets.pop_back();
    EXPECT_EQ(placed(layout, edited), listedMetadata(edited, kPlace));
  }
  ListedLayout layout = fourSets();
  layout.berOctets = 2;
  ListedLayout edited = layout;
  for (uint8 i = 10; i < 30; ++i) edited.sets.push_back({i, 1});
  edited.berOctets = 3;  // more than 255 octets
  EXPECT_EQ(placed(layout, edited), listedMetadata(edited, kPlace));
}

TEST(ObjectDirectory, HasNoEntryForASetWithoutInstanceUID) {
  ListedLayout layout = fourSets();
  layout.sets.insert(layout.sets.begin() + 2, {0, 25});
  ListedLayout edited = layout;
  edited.sets[2].more = 100;
  EXPECT_EQ(placed(layout, edited), listedMetadata(edited, kPlace));
}

TEST(ObjectDirectory, HasAnEntryForEachOfTheSetsThatShareAnInstanceUID) {
  ListedLayout layout = fourSets();
  layout.sets.push_back({3, 60, 8});
  ListedLayout edited = layout;
  edited.sets[0].more = 100;
  EXPECT_EQ(placed(layout, edited), listedMetadata(edited, kPlace));
  edited.sets.push_back({3, 60, 0});
  EXPECT_EQ(placed(layout, edited), listedMetadata(edited, kPlace));
}

TEST(ObjectDirectory, HasEntriesForDarkGroupsButNotForOtherDarkSets) {
  ListedLayout layout = fourSets();
  layout.sets[2].key = keyOf("06.0E.2B.34.02.53.01.01.0E.77.01.01.01.01.7F.00");
  EXPECT_EQ(placed(layout, layout, 99), listedMetadata(layout, 99));
  layout.sets[2] = {0, 33, 0, keyOf("06.0E.2B.34.02.53.01.01.0E.77.01.01.01.01.7F.00")};
  EXPECT_EQ(placed(layout, layout, 99), listedMetadata(layout, 99));
  layout.sets[2].key = keyOf("0E.77.2B.34.02.53.01.01.0E.77.01.01.01.01.7F.00");
  EXPECT_EQ(placed(layout, layout, 99), listedMetadata(layout, 99));
}

TEST(ObjectDirectory, LeavesTheRootWhereFillCanMakeUpForThePrimerPack) {
  ListedLayout edited = fourSets();
  edited.primerRows = 4;
  edited.fillSize = 50 - 18;
  EXPECT_EQ(placed(fourSets(), edited, kPlace, 256).size(), listedMetadata(edited, kPlace).size());
  ListedLayout back = fourSets();
  EXPECT_EQ(placed(edited, back, kPlace, 256).size(), listedMetadata(fourSets(), kPlace).size());
  edited.primerRows = 1;
  edited.fillSize = 50 + 36;
  EXPECT_EQ(placed(fourSets(), edited, 80, 256).size(), listedMetadata(edited, 80).size());
}

/// Where the root stands in metadata.
std::size_t rootIn(const Bytes& bytes) {
  const Bytes key = keyBytes(kRootKey);
  return static_cast<std::size_t>(std::search(bytes.begin(), bytes.end(), key.begin(), key.end()) - bytes.begin());
}

TEST(ObjectDirectory, MovesTheRootByTheGridWhereThePrimerPackNeedsItsPlace) {
  const std::size_t before = rootIn(listedMetadata(fourSets(), kPlace));
  for (const std::size_t rows : {5, 6, 16, 17, 18, 60}) {
    ListedLayout edited = fourSets();
    edited.primerRows = rows;
    const Bytes bytes = placed(fourSets(), edited, kPlace, 256);
    const std::size_t primerSize = primer(Templates::vector<KLV::PrimerEntry>(rows)).size();
    EXPECT_EQ((rootIn(bytes) - before) % 256, 0u);
    EXPECT_TRUE(rootIn(bytes) < primerSize + 256 + 17) << rows;
    edited.fillSize = rootIn(bytes) - primerSize;
    EXPECT_TRUE(canFill(edited.fillSize)) << rows;
    EXPECT_NO_THROW(requireSoundDirectory(bytes, kPlace)) << rows;
  }
}

TEST(ObjectDirectory, PutsTheRootDirectlyBehindThePrimerPackWhereItWasThere) {
  ListedLayout layout = fourSets();
  layout.fillSize = 0;
  ListedLayout edited = layout;
  edited.primerRows = 7;
  EXPECT_EQ(placed(layout, edited, kPlace, 256), listedMetadata(edited, kPlace));
}

TEST(ObjectDirectory, HasTheInstanceUIDOfANewPrefaceInItsRoot) {
  ListedLayout edited = fourSets();
  edited.sets[1].octet = 0x22;
  edited.preface = 0x22;
  EXPECT_EQ(placed(fourSets(), edited), listedMetadata(edited, kPlace));
  edited.sets.push_back({0x23, 5, 0, kPreface});  // which of them is meant is unknown
  edited.preface = 2;
  EXPECT_EQ(placed(fourSets(), edited), listedMetadata(edited, kPlace));
}

void expectUnsound(const Bytes& metadata, const std::string& message) {
  EXPECT_THAT([&] { requireSoundDirectory(metadata, kPlace); }, ThrowsMessage<ParseError>(HasSubstr(message)));
}

TEST(ObjectDirectory, IsRefusedWhereAnEntryDoesNotLeadToItsSet) {
  const Bytes sound = listedMetadata(fourSets(), kPlace);
  EXPECT_NO_THROW(requireSoundDirectory(sound, kPlace));
  EXPECT_THROW(requireSoundDirectory(sound, kPlace + 1), ParseError);
  for (std::size_t entry = 0; entry < 5; ++entry) {
    for (const std::size_t octet : {0, 15, 16, 23}) {  // of the identifier, of the offset
      Bytes bytes = sound;
      bytes[bytes.size() - 25 * (5 - entry) + octet] ^= 0x01;
      expectUnsound(bytes, "the object directory has the set with identifier ");
    }
  }
}

TEST(ObjectDirectory, IsRefusedWhereItsRootHasAnotherPlaceForIt) {
  Bytes bytes = listedMetadata(fourSets(), kPlace);
  const std::size_t root = rootIn(bytes);
  bytes[root + 20 + 20 + 4 + 23] ^= 0x01;
  expectUnsound(bytes, "at byte offset " + std::to_string(kPlace + root) + ": the root has the object directory at ");
}

TEST(ObjectDirectory, IsRefusedWithAnotherNumberOrSizeOfEntries) {
  const Bytes sound = listedMetadata(fourSets(), kPlace);
  const std::size_t value = sound.size() - 5 * 25 - 9;
  for (const std::size_t octet : {0, 7, 8}) {
    Bytes bytes = sound;
    bytes[value + octet] ^= 0x01;
    expectUnsound(bytes, ": expected an object directory with entries of 25 bytes, found one of 134 bytes");
  }
}

TEST(ObjectDirectory, IsRefusedWithoutItsRootOrTwice) {
  const Bytes sound = listedMetadata(fourSets(), kPlace);
  const std::size_t root = rootIn(sound), directory = sound.size() - 5 * 25 - 9 - 20;
  expectUnsound(slice(sound, 0, directory), "one object directory and one root, found 0 and 1");
  expectUnsound(sound + slice(sound, directory, sound.size()), "one object directory and one root, found 2 and 1");
  expectUnsound(slice(sound, 0, root) + slice(sound, root + 20 + 96, sound.size()),
                "one object directory and one root, found 1 and 0");
  expectUnsound(sound + slice(sound, root, root + 20 + 96), "one object directory and one root, found 1 and 2");
}

TEST(ObjectDirectory, IsRefusedOrMadeSoundWhereverItIsDamaged) {
  const Bytes sound = listedMetadata(fourSets(), kPlace);
  int refusals = 0, made = 0;
  for (std::size_t i = rootIn(sound); i < sound.size(); ++i) {
    for (const uint8 damage : {0x01, 0x80, 0xff}) {
      Bytes bytes = sound;
      bytes[i] ^= damage;
      try {
        const Bytes placed = ListedMetadata(bytes, requireSoundDirectory(bytes, kPlace)).at(99);
        EXPECT_NO_THROW(requireSoundDirectory(placed, 99)) << i;
        ++made;
      } catch (const ParseError&) {
        ++refusals;
      }
    }
  }
  EXPECT_GT(refusals, 300);
  EXPECT_GT(made, 300);
}

/// A file with a directory in header and footer.
class ListedFileTest : public ReplacementTest {
 protected:
  /// @param sets  those of the metadata in both partitions.
  static FileLayout listedFile(const ListedLayout& sets, uint32 kag, uint64 spare = 0) {
    FileLayout layout = fivePartitions(kag, spare);
    layout.partitions[2].metadata.clear();
    for (int pass = 0; pass < 2; ++pass) {  // the second one knows the places
      uint64 offset = 0;
      for (std::size_t i = 0; i < 5; ++i) {
        auto& partition = layout.partitions[i];
        const std::size_t packSize = kPackSize + 16 * partition.essenceContainers.size();
        const std::size_t behindPack = packSize + padding(packSize, kag, partition.spareForPack).size();
        if (i == 0 || i == 4) partition.metadata = listedMetadata(sets, layout.runIn + offset + behindPack);
        offset += partitionBytes(partition, {}).size();
      }
    }
    return layout;
  }
};

ListedLayout longer(ListedLayout layout, std::size_t by) {
  layout.sets[2].more += by;
  return layout;
}

TEST_F(ListedFileTest, IsChangedInPlaceWhereNothingMoves) {
  for (const uint32 kag : {1, 256}) {
    const Path file = write(listedFile(fourSets(), kag, 300));
    const auto edited = editedMetadata(fourSets(), 0, longer(fourSets(), 40));
    ASSERT_TRUE(fits(file, {{0, edited}, {4, edited}}));
    replaceInPlace(file, {{0, edited}, {4, edited}});
    const FileLayout expected = listedFile(longer(fourSets(), 40), kag, 300 - 40);
    EXPECT_EQ(bytesOf(file), fileOf(expected));
    const auto reverted = editedMetadata(fourSets(), 0, fourSets());
    replaceInPlace(file, {{0, reverted}, {4, reverted}});
    EXPECT_EQ(bytesOf(file), fileOf(listedFile(fourSets(), kag, 300)));
  }
}

TEST_F(ListedFileTest, CountsTheNewEntriesAmongWhatHasToFit) {
  const Path file = write(listedFile(fourSets(), 1, 100));
  ListedLayout edited = fourSets();
  edited.sets.push_back({5, 20});  // 64 bytes, and an entry of 25
  EXPECT_FALSE(fits(file, {{0, editedMetadata(fourSets(), 0, edited)}}));
  edited.sets.back().more = 31;
  EXPECT_TRUE(fits(file, {{0, editedMetadata(fourSets(), 0, edited)}}));
  edited.sets.back().more = 32;
  EXPECT_THAT(
      [&] {
        replaceInPlace(file, {{0, editedMetadata(fourSets(), 0, edited)}});
      },
      ThrowsMessage<InvalidLength>(HasSubstr("the header metadata of partition 0 have room for")));
}

TEST_F(ListedFileTest, FollowsMetadataThatGrowInBothPartitions) {
  for (const auto& one : kRewriteCases) {
    FileLayout layout = listedFile(fourSets(), one.kag);
    layout.hasRandomIndexPack = one.hasRandomIndexPack;
    const Path file = write(layout);
    const auto grown = longer(fourSets(), 5000);
    const auto edited = editedMetadata(fourSets(), 0, grown);
    rewrite(file, {{0, edited}, {4, edited}}, folder_ / "b.mxf");
    FileLayout expected = listedFile(grown, one.kag);
    expected.hasRandomIndexPack = one.hasRandomIndexPack;
    EXPECT_EQ(bytesOf(folder_ / "b.mxf"), fileOf(expected));
  }
}

TEST_F(ListedFileTest, FollowsMetadataThatAreNotReplacedButMove) {
  FileLayout layout = listedFile(fourSets(), 256);
  const Path file = write(layout);
  rewrite(file, {{0, editedMetadata(fourSets(), 0, longer(fourSets(), 5000))}}, folder_ / "b.mxf");
  const FileStructure structure = readStructure(folder_ / "b.mxf");
  ASSERT_NE(structure.partitions[4].offset, readStructure(file).partitions[4].offset);
  for (const std::size_t i : {0, 4}) {
    const auto room = roomOf(folder_ / "b.mxf", i);
    EXPECT_NO_THROW(requireSoundDirectory(metadataIn(folder_ / "b.mxf", i), room.offset)) << i;
  }
  EXPECT_EQ(roomOf(folder_ / "b.mxf", 4).size, roomOf(file, 4).size);
}

TEST_F(ListedFileTest, FollowsAPackThatGrows) {
  const Path file = write(listedFile(fourSets(), 1));
  const std::vector<Types::UniversalLabel> labels(9);
  rewrite(file, PackLabels{{}, labels}, folder_ / "b.mxf");
  for (const std::size_t i : {0, 4}) {
    const auto room = roomOf(folder_ / "b.mxf", i);
    ASSERT_NE(room.offset, roomOf(file, i).offset);
    EXPECT_NO_THROW(requireSoundDirectory(metadataIn(folder_ / "b.mxf", i), room.offset)) << i;
  }
  if (hasPython()) {
    EXPECT_THAT(complaint(folder_ / "b.mxf", file, "--labels"), "");
  }
}

TEST_F(ListedFileTest, LeavesTheDirectoryAloneWherePacksChangeInPlace) {
  const Path file = write(listedFile(fourSets(), 512));
  Bytes expected = bytesOf(file);
  replaceInPlace(file, PackLabels{{}, std::vector<Types::UniversalLabel>(3)});
  for (const std::size_t i : {0, 4}) {
    const auto room = roomOf(file, i);
    EXPECT_EQ(slice(bytesOf(file), room.offset, room.end()), slice(expected, room.offset, room.end()));
  }
}

TEST_F(ListedFileTest, IsRefusedWithADirectoryThatIsWrong) {
  const Bytes edited = editedMetadata(fourSets(), 0, longer(fourSets(), 4));
  for (const std::size_t partition : {0, 4}) {
    FileLayout layout = listedFile(fourSets(), 1, 200);
    layout.partitions[partition].metadata[layout.partitions[partition].metadata.size() - 2] ^= 1;  // the last offset
    const Path file = write(layout);
    const auto refusal = ThrowsMessage<ParseError>(HasSubstr("the object directory has the set with identifier"));
    EXPECT_THAT([&] { replaceInPlace(file, {{partition, edited}}); }, refusal);
    EXPECT_THAT([&] { rewrite(file, {{partition, edited}}, folder_ / "b.mxf"); }, refusal);
    EXPECT_THAT([&] { rewrite(file, {{4 - partition, edited}}, folder_ / "b.mxf"); }, refusal);
    EXPECT_NO_THROW(replaceInPlace(file, {{4 - partition, edited}}));
    write(layout);
    EXPECT_NO_THROW(rewrite(file, {}, folder_ / "b.mxf"));
    EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
    std::filesystem::remove(folder_ / "b.mxf");
  }
}

TEST_F(ListedFileTest, IsRefusedForMetadataWithHalfADirectory) {
  const Path file = write(listedFile(fourSets(), 1));
  const Bytes whole = editedMetadata(fourSets(), 0, fourSets());
  const Bytes half = slice(whole, 0, whole.size() - 20 - 9 - 5 * 25);
  EXPECT_THAT(
      [&] {
        rewrite(file, {{0, half}}, folder_ / "b.mxf");
      },
      ThrowsMessage<InvalidFormat>(HasSubstr(
          "the header metadata of partition 0 cannot be replaced: the object directory of the new ones cannot "
          "be made anew: at byte offset 0: expected header metadata with one object directory and one root, "
          "found 0 and 1")));
}

TEST_F(ListedFileTest, MayLoseItsDirectory) {
  const Path file = write(listedFile(fourSets(), 1));
  rewrite(file, {replacement(0, 300)}, folder_ / "b.mxf");
  EXPECT_EQ(metadataIn(folder_ / "b.mxf", 0), *replacement(0, 300).bytes);
}

#ifdef __linux__

TEST_F(ListedFileTest, IsUndoneOrDoneWhenAChangeInPlaceIsKilled) {
  const Path file = write(listedFile(fourSets(), 256, 300));
  const auto edited = editedMetadata(fourSets(), 0, longer(fourSets(), 40));
  expectUndoneOrDone(file, {{0, edited}, {4, edited}}, 5);
}

#endif

class ListedSampleTest : public testing::TestWithParam<Path> {};

/// Header metadata of samples, by which the rules of the directory were found.
TEST_P(ListedSampleTest, HasTheDirectoryThatIsMadeAnew) {
  DataIO::File::FileDataSource source(GetParam());
  const auto room = findMetadataRoom(source, readStructure(source), 0);
  ASSERT_TRUE(room && room->hasObjectDirectory);
  const Bytes metadata = readRoom(source, withoutFill(source, *room));
  const DirectoryLayout layout = requireSoundDirectory(metadata, room->offset);
  EXPECT_TRUE(layout.rootOffset.has_value());
  EXPECT_TRUE(layout.isDirectoryLast);
  EXPECT_EQ(ListedMetadata(metadata, layout).at(room->offset), metadata);
  const Bytes moved = ListedMetadata(metadata, layout).at(room->offset + 512);
  EXPECT_NE(moved, metadata);
  EXPECT_NO_THROW(requireSoundDirectory(moved, room->offset + 512));
}

std::vector<Path> samplesWithDirectory() {
  std::vector<Path> samples;
  for (const auto& sample : sampleFiles()) {
    const std::string name = sample.filename().string();
    if (name.find("-avid-") != std::string::npos || name.find("writeavid") != std::string::npos)
      samples.push_back(sample);
  }
  return samples;
}

INSTANTIATE_TEST_SUITE_P(Samples, ListedSampleTest, testing::ValuesIn(samplesWithDirectory()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
