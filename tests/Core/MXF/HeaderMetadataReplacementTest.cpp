#include "Core/MXF/HeaderMetadataReplacement.h"

#include <gmock/gmock.h>

#ifdef __linux__
#include <sys/resource.h>
#endif

#include <chrono>
#include <functional>

#include "Core/MXF/ObjectDirectory.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/ReplacementTest.h"
#include "tests/SampleFiles.h"
#include "tests/Sanitized.h"

namespace Vantor::MXF {
namespace {

namespace fs = std::filesystem;
using DataIO::File::FileDataSource;
using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using Exceptions::IOError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

class InPlaceTest : public ReplacementTest {};

TEST_F(InPlaceTest, WritesMetadataAndFillAndNothingElse) {
  for (const uint64 spare : {0, 17, 18, 19, 20, 21, 300, 70000}) {
    const Path file = write(fivePartitions(1, spare));
    const Bytes old = bytesOf(file);
    const MetadataRoom room = roomOf(file, 2);
    ASSERT_EQ(room.size, kOldSize + spare);
    ASSERT_TRUE(fits(file, {replacement(2, kOldSize)}));
    replaceInPlace(file, {replacement(2, kOldSize)});
    EXPECT_EQ(bytesOf(file), slice(old, 0, room.offset) + *replacement(2, kOldSize).bytes + fillOf(spare) +
                                 slice(old, room.end(), old.size()));
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
}

TEST_F(InPlaceTest, KeepsTheOldBytesOfEveryPartitionOnRequest) {
  const Path file = write(fivePartitions(1, 300));
  const Bytes old = bytesOf(file);
  using namespace DataIO::File;
  replaceInPlace(file, stateOf(file), {replacement(0, kOldSize), replacement(2, 400), replacement(4, 500)},
                 OldBytes::kKeep);
  EXPECT_NE(bytesOf(file), old);
  EXPECT_EQ(undo(file), Undoing::kUndone);
  EXPECT_EQ(bytesOf(file), old);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(InPlaceTest, FitsByAnyRemainderThatFillCanTake) {
  const Path file = write(fivePartitions(1, 100));
  const Bytes old = bytesOf(file);
  const std::size_t room = kOldSize + 100;
  for (std::size_t remainder = 1; remainder <= 16; ++remainder) {
    EXPECT_FALSE(fits(file, {replacement(0, room - remainder)}));
    EXPECT_THAT([&] { replaceInPlace(file, {replacement(0, room - remainder)}); },
                ThrowsMessage<InvalidLength>(HasSubstr("partition 0 have room for 700 bytes")));
  }
  EXPECT_FALSE(fits(file, {replacement(0, room + 1)}));
  EXPECT_THROW(replaceInPlace(file, {replacement(0, room + 1)}), InvalidLength);
  EXPECT_EQ(bytesOf(file), old);
  for (const std::size_t remainder : {0, 17, 18, 19, 20, 21, 145, 146, 400}) {
    EXPECT_TRUE(fits(file, {replacement(0, room - remainder)}));
    replaceInPlace(file, {replacement(0, room - remainder)});
    EXPECT_EQ(metadataIn(file, 0), *replacement(0, room - remainder).bytes);
    EXPECT_EQ(roomOf(file, 0).size, room);
  }
}

TEST_F(InPlaceTest, ReplacesInSeveralPartitionsWhateverTheOrderGiven) {
  const Path file = write(fivePartitions(512));
  const MetadataReplacements replacements = {replacement(4, 650), replacement(0, 500), replacement(2, 112)};
  EXPECT_TRUE(fits(file, replacements));
  replaceInPlace(file, replacements);
  for (const auto& one : replacements) EXPECT_EQ(metadataIn(file, one.partition), *one.bytes);
}

TEST_F(InPlaceTest, TakesBytesThatSeveralPartitionsShare) {
  const Path file = write(fivePartitions(512));
  const auto shared = std::make_shared<const Bytes>(metadataOfSize(500, 7));
  const MetadataReplacements replacements = {{0, shared}, {2, shared}, {4, shared}};
  rewrite(file, replacements, folder_ / "b.mxf");
  replaceInPlace(file, replacements);
  for (const std::size_t partition : {0, 2, 4}) EXPECT_EQ(metadataIn(file, partition), *shared);
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
  EXPECT_EQ(shared.use_count(), 4);
}

TEST_F(InPlaceTest, ReplacesNothingWhenOneOfThemDoesNotFit) {
  const Path file = write(fivePartitions(512));
  const Bytes old = bytesOf(file);
  EXPECT_FALSE(fits(file, {replacement(0, 500), replacement(4, 5000)}));
  EXPECT_THROW(replaceInPlace(file, {replacement(0, 500), replacement(4, 5000)}), InvalidLength);
  EXPECT_EQ(bytesOf(file), old);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(InPlaceTest, RefusesReplacementsThatAreNoHeaderMetadata) {
  const Path file = write(fivePartitions());
  const Bytes good = metadataOfSize(kOldSize, 1);
  const auto refused = [&](const MetadataReplacements& replacements, const char* text) {
    EXPECT_THAT([&] { fits(file, replacements); }, ThrowsMessage<InvalidFormat>(HasSubstr(text)));
    EXPECT_THROW(replaceInPlace(file, replacements), InvalidFormat);
    EXPECT_THROW(rewrite(file, replacements, folder_ / "b.mxf"), InvalidFormat);
  };
  refused({{5, good}}, "partition 5 cannot be replaced: the file has 5 partitions");
  refused({{1, good}}, "partition 1 cannot be replaced: it has none");
  refused({{0, good}, {4, good}, {0, good}}, "partition 0 cannot be replaced: twice");
  refused({{0, Bytes()}}, "expected 16 more bytes, found 0");
  refused({{0, setWithUID(kPreface, 1)}}, "the new ones have no primer pack");
  refused({{0, slice(good, 0, good.size() - 1)}}, "the new ones are no KLVs: at byte offset");
  refused({{0, good + indexTable()}}, "byte 600 of the new ones has a key of another part of MXF");
  refused({{0, good + zeros(20)}}, "byte 600 of the new ones has a key of another part of MXF");
  EXPECT_EQ(bytesOf(file), fileOf(fivePartitions()));
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(InPlaceTest, RefusesFilesThatMustNotBeWritten) {
  const Path file = write(fivePartitions());
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_THAT([&] { replaceInPlace(file, {replacement(0, kOldSize)}); },
              ThrowsMessage<IOError>(HasSubstr("it is read-only")));
  fs::permissions(file, fs::perms::owner_all);
  fs::create_hard_link(file, folder_ / "b.mxf");
  EXPECT_THAT([&] { replaceInPlace(file, {replacement(0, kOldSize)}); },
              ThrowsMessage<IOError>(HasSubstr("2 hard links")));
  EXPECT_EQ(bytesOf(file), fileOf(fivePartitions()));
}

TEST_F(InPlaceTest, RefusesAFileThatWasChangedSinceItsMetadataWereRead) {
  const Path file = write(fivePartitions(512));
  const auto state = DataIO::File::stateOf(file);
  replaceInPlace(file, {replacement(4, 500)});
  fs::last_write_time(file, state.modified + std::chrono::seconds(1));  // however coarse the clock is
  const Bytes changed = bytesOf(file);
  EXPECT_THAT([&] { replaceInPlace(file, state, {replacement(0, 500)}); },
              ThrowsMessage<IOError>(HasSubstr("another program has changed it meanwhile; begin anew")));
  EXPECT_EQ(bytesOf(file), changed);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

/// What some work takes.
struct Cost {
  double seconds;
  uint64 memory;  ///< growth of the process's peak memory, in bytes; 0 where it is not known
};

uint64 mostMemory() {
#ifdef __linux__
  struct rusage usage {};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<uint64>(usage.ru_maxrss) << 10;
#else
  return 0;
#endif
}

Cost costOf(const std::function<void()>& work) {
  const uint64 memory = mostMemory();
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  return {taken.count(), mostMemory() - memory};
}

TEST_F(InPlaceTest, TakesNoTimeOrMemoryForEssence) {
  FileLayout layout = fivePartitions();
  Bytes start = fileOf(layout);
  const Path file = write(start);
  // The last KLV becomes one of 60 GiB, most of it a hole.
  const uint64 length = uint64{60} << 30;
  layout.hasRandomIndexPack = false;
  layout.partitions.pop_back();
  layout.partitions[0].status = KLV::PartitionStatus::kClosedComplete;
  start = fileOf(layout) + klvHeader(kForeign, length, 9);
  write(start);
  if (!ThisSystem::growTo(file, start.size() + length))
    GTEST_SKIP() << "this file system has no large files with holes";
  const Cost cost = costOf([&] { replaceInPlace(file, {replacement(0, kOldSize)}); });
  EXPECT_LT(cost.seconds, 10);  // to read 60 GiB takes more
  if (!isSanitized()) {
    EXPECT_LT(cost.memory, uint64{64} << 20);
  }
  EXPECT_EQ(fs::file_size(file), start.size() + length);
  EXPECT_EQ(roomOf(file, 0).size, kOldSize);
}

#ifdef __linux__

TEST_F(InPlaceTest, IsUndoneOrDoneWhenItIsKilledAtAnyOfManySystemCalls) {
  const Path file = write(fivePartitions(512));
  expectUndoneOrDone(file, {replacement(0, 500), replacement(2, 600), replacement(4, 112)}, 5);
}

#endif

/// Those that are not only the start of a file.
std::vector<Path> wholeSamples() {
  std::vector<Path> samples;
  for (const auto& sample : sampleFiles()) {
    if (sample.stem().extension() != ".header") samples.push_back(sample);
  }
  return samples;
}

class ReplacedSampleTest : public ReplacementTest, public testing::WithParamInterface<Path> {
 protected:
  void SetUp() override {
    ReplacementTest::SetUp();
    fs::copy_file(GetParam(), folder_ / "a.mxf");
    fs::permissions(folder_ / "a.mxf", fs::perms::owner_all);
  }

  /// The metadata of each partition that has some, with more bytes than there is room for.
  MetadataReplacements largerMetadata() const {
    MetadataReplacements larger;
    FileDataSource source(GetParam());
    const auto structure = readStructure(source);
    for (std::size_t i = 0; i < structure.partitions.size(); ++i) {
      if (structure.partitions[i].pack.headerByteCount == 0) continue;
      const KLV::Key set = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.7F.00");
      const Bytes dark = klv(set, item(0x8001, Bytes(20000, 1)));
      Bytes bytes = metadataIn(GetParam(), i);
      while (bytes.size() <= structure.partitions[i].pack.headerByteCount) {
        bytes.insert(bytes.end(), dark.begin(), dark.end());
      }
      larger.push_back({i, std::move(bytes)});
    }
    return larger;
  }

  /// Metadata whose offsets depend on their place without these offsets.
  static Bytes withoutDirectory(const Bytes& metadata) {
    Bytes rest;
    DataIO::Memory::MemoryFile source(metadata);
    while (source.remaining() != 0) {
      const KLVHeader klv = readKLVHeader(source);
      skipValue(klv, source);
      const auto at = [&](uint64 offset) { return metadata.begin() + static_cast<std::ptrdiff_t>(offset); };
      if (!KLV::isOfObjectDirectory(klv.key)) rest.insert(rest.end(), at(klv.offset), at(source.position()));
    }
    return rest;
  }

  Path file() const { return folder_ / "a.mxf"; }
};

TEST_P(ReplacedSampleTest, StaysAsItIsWithTheMetadataThatItHas) {
  FileDataSource source(GetParam());
  const auto room = *findMetadataRoom(source, readStructure(source), 0);
  replaceInPlace(file(), {{0, metadataIn(GetParam(), 0)}});
  const Bytes old = bytesOf(GetParam());
  const Bytes now = bytesOf(file());
  EXPECT_EQ(slice(now, 0, room.offset), slice(old, 0, room.offset));
  EXPECT_EQ(slice(now, room.end(), now.size()), slice(old, room.end(), old.size()));
  EXPECT_EQ(metadataIn(file(), 0), metadataIn(GetParam(), 0));
}

TEST_P(ReplacedSampleTest, HasRoomForLargerMetadataAfterARewrite) {
  const auto larger = largerMetadata();
  EXPECT_FALSE(fits(file(), larger));
  rewrite(GetParam(), larger, file());
  for (const auto& one : larger) {
    const auto room = roomOf(file(), one.partition);
    const Bytes now = metadataIn(file(), one.partition);
    if (room.hasObjectDirectory) {
      EXPECT_EQ(withoutDirectory(now), withoutDirectory(*one.bytes));
      EXPECT_NO_THROW(requireSoundDirectory(now, room.offset));
    } else {
      EXPECT_EQ(now, *one.bytes);
    }
  }
  const FileStructure structure = readStructure(file());
  EXPECT_EQ(structure.source, StructureSource::kRandomIndexPack);
  EXPECT_EQ(structure.partitions.size(), readStructure(GetParam()).partitions.size());
}

INSTANTIATE_TEST_SUITE_P(Samples, ReplacedSampleTest, testing::ValuesIn(wholeSamples()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
