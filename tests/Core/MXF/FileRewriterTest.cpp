#include "Core/MXF/HeaderMetadataReplacement.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>
#include <utility>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/StoppedProcess.h"
#include "tests/Core/MXF/ReplacementTest.h"
#include "tests/Core/Platform/ThisSystem.h"
#include "tests/Sanitized.h"

namespace Vantor::MXF {
namespace {

namespace fs = std::filesystem;
using DataIO::File::FileDataSource;
using Exceptions::InvalidLength;
using Exceptions::IOError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

class RewriteTest : public ReplacementTest {};

class RewriteCaseTest : public ReplacementTest, public testing::WithParamInterface<RewriteCase> {
 protected:
  FileLayout layout() const { return layoutOf(GetParam()); }
};

TEST_P(RewriteCaseTest, IsTheFileThatHadBeenWrittenWithTheNewMetadata) {
  const Path file = write(layout());
  const std::size_t room = roomOf(file, 0).size;
  for (const std::size_t size : {room + 1, room + 512, room + 10000, room - 1, room - 16}) {
    for (const std::vector<std::size_t>& where : {std::vector<std::size_t>{0}, {0, 2, 4}}) {
      FileLayout expected = layout();
      MetadataReplacements replacements;
      for (const std::size_t partition : where) {
        replacements.push_back(replacement(partition, size));
        expected.partitions[partition].metadata = *replacements.back().bytes;
      }
      DataIO::Memory::MemoryDataSink sink;
      rewrite(file, replacements, sink);
      EXPECT_EQ(sink.take(), fileOf(expected)) << size << " bytes for " << where.size() << " from " << where[0];
    }
  }
}

TEST_P(RewriteCaseTest, IsInOrderForAWitness) {
  if (!hasPython()) GTEST_SKIP() << "there is no Python";
  const Path file = write(layout());
  const Path copy = folder_ / "b.mxf";
  ASSERT_EQ(complaint(file, file), "");
  rewrite(file, {replacement(0, 5000), replacement(2, kOldSize - 3), replacement(4, 3001)}, copy);
  EXPECT_EQ(complaint(copy, file), "");
  EXPECT_EQ(metadataIn(copy, 0), *replacement(0, 5000).bytes);
  EXPECT_EQ(metadataIn(copy, 2), *replacement(2, kOldSize - 3).bytes);
  EXPECT_EQ(metadataIn(copy, 4), *replacement(4, 3001).bytes);
}

INSTANTIATE_TEST_SUITE_P(Layouts, RewriteCaseTest, testing::ValuesIn(kRewriteCases));

TEST_F(RewriteTest, IsWhatReplacingInPlaceWritesWhereThatIsPossible) {
  const MetadataReplacements replacements = {replacement(0, 300), replacement(4, 620)};
  for (const uint32 kag : {1, 512}) {
    const Path file = write(fivePartitions(kag, 200));
    rewrite(file, replacements, folder_ / "b.mxf");
    replaceInPlace(file, replacements);
    EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
  }
}

TEST_F(RewriteTest, WritesTheSameOfAFileInMemory) {
  for (const std::size_t size : {std::size_t{5000}, std::size_t{kOldSize}}) {
    const MetadataReplacements replacements = {replacement(0, size), replacement(4, 620)};
    const Path path = write(fivePartitions(512, 200));
    rewrite(path, replacements, folder_ / "b.mxf");
    DataIO::Memory::MemoryFile file(bytesOf(path));
    DataIO::Memory::MemoryDataSink sink;
    uint64 done = 0;
    rewrite(file, replacements, sink, [&](uint64 bytes, uint64) { done = bytes; });
    EXPECT_EQ(done, sink.position());
    EXPECT_EQ(sink.take(), bytesOf(folder_ / "b.mxf"));
    EXPECT_EQ(fits(file, replacements), fits(path, replacements));
    EXPECT_EQ(fits(file, replacements), size == kOldSize);
  }
}

TEST_F(RewriteTest, CopiesAFileInMemoryWithoutReplacements) {
  DataIO::Memory::MemoryFile file(Bytes(3 << 20, 0x55));
  DataIO::Memory::MemoryDataSink sink;
  rewrite(file, {}, sink);
  EXPECT_EQ(sink.take(), Bytes(3 << 20, 0x55));
}

TEST_F(RewriteTest, NamesAFileInMemoryThatMustNotBeChanged) {
  FileLayout layout = fivePartitions();
  layout.partitions.pop_back();
  DataIO::Memory::MemoryFile file(fileOf(layout), "take 1");
  DataIO::Memory::MemoryDataSink sink;
  EXPECT_THAT(
      [&] { rewrite(file, {replacement(0, 5000)}, sink); },
      ThrowsMessage<IOError>(HasSubstr("cannot replace header metadata in 'take 1': its header partition is open")));
}

TEST_F(RewriteTest, KeepsTheItemSizeOfAnEmptyListOfEssenceContainers) {
  Bytes bytes = fileOf(fivePartitions());
  bytes[20 + 84 + 3] = 0;  // 16 before
  DataIO::Memory::MemoryFile file(bytes);
  DataIO::Memory::MemoryDataSink sink;
  rewrite(file, {{0, metadataOfSize(kOldSize, 1)}}, sink);
  EXPECT_EQ(sink.take(), bytes);
}

TEST_F(RewriteTest, CopiesTheFileWithoutReplacements) {
  const Path file = write(fivePartitions(512));
  rewrite(file, {}, folder_ / "b.mxf");
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
}

TEST_F(RewriteTest, CopiesAnyBytesWithoutReplacements) {
  Bytes wrongLinks = fileOf(fivePartitions());
  wrongLinks[kPackSize + kOldSize + 5] ^= 0x55;
  for (const std::size_t field : {8, 16, 24}) wrongLinks[20 + field + 7] ^= 0x55;
  FileLayout withDirectory = fivePartitions();
  withDirectory.partitions[0].metadata = withDirectory.partitions[0].metadata + klv(kForeign, Bytes(50, 1));
  for (const Bytes& bytes :
       {wrongLinks, fileOf(withDirectory), slice(fileOf(fivePartitions()), 0, 3000), Bytes(3 << 20, 0x55), Bytes()}) {
    const Path file = write(bytes);
    std::vector<uint64> done;
    rewrite(file, {}, folder_ / "b.mxf", [&](uint64 size, uint64) { done.push_back(size); });
    EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytes);
    EXPECT_EQ(done.back(), bytes.size());
  }
}

TEST_F(RewriteTest, MayHaveTheOriginalAsItsTarget) {
  const Path file = write(fivePartitions(512));
  rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf");
  rewrite(file, {replacement(0, 5000)}, file);
  EXPECT_EQ(bytesOf(file), bytesOf(folder_ / "b.mxf"));
  EXPECT_THAT(names(), testing::UnorderedElementsAre("a.mxf", "b.mxf"));
}

TEST_F(RewriteTest, RefusesAnOriginalAsItsTargetThatIsReadOnlyOrHasFurtherNames) {
  const Path file = write(fivePartitions());
  fs::create_hard_link(file, folder_ / "b.mxf");
  std::vector<std::string> targets = {"a.mxf", "b.mxf"};
  if (ThisSystem::hasSymbolicLinks(folder_)) {
    fs::create_symlink("a.mxf", folder_ / "link.mxf");
    targets.push_back("link.mxf");
  }
  bool isBegun = false;
  for (const auto& name : targets) {
    EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, folder_ / name, [&](uint64, uint64) { isBegun = true; }); },
                ThrowsMessage<IOError>(HasSubstr("it has 2 hard links")));
  }
  EXPECT_FALSE(isBegun);
  EXPECT_NO_THROW(rewrite(file, {replacement(0, 5000)}, folder_ / "c.mxf"));
  fs::remove(folder_ / "b.mxf");
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, folder_ / (targets.size() == 2 ? "a.mxf" : "link.mxf")); },
              ThrowsMessage<IOError>(HasSubstr("it is read-only")));
  EXPECT_EQ(bytesOf(file), fileOf(fivePartitions()));
}

TEST_F(RewriteTest, LeavesLinksToAFooterOutThatWereNotThere) {
  FileLayout layout = fivePartitions();
  Bytes bytes = fileOf(layout);
  const auto forget = [&](uint64 pack) { std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(pack) + 44, 8, 0); };
  FileDataSource source(write(layout));
  const FileStructure structure = readStructure(source);
  for (std::size_t i = 0; i < 4; ++i) forget(structure.partitions[i].offset);
  const Path file = write(bytes);
  rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf");
  const FileStructure copied = readStructure(folder_ / "b.mxf");
  ASSERT_EQ(copied.partitions.size(), 5u);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(copied.partitions[i].pack.footerPartition, 0u);
  EXPECT_EQ(copied.partitions[4].pack.footerPartition, copied.partitions[4].offset);
}

TEST_F(RewriteTest, RepairsLinksBetweenPartitions) {
  Bytes bytes = fileOf(fivePartitions());
  const FileStructure structure = readStructure(write(bytes));
  for (std::size_t i = 1; i < 5; ++i) bytes[structure.partitions[i].offset + 20 + 16 + 7] ^= 0x55;  // PreviousPartition
  const Path file = write(bytes);
  ASSERT_EQ(readStructure(file).source, StructureSource::kWalk);
  rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf");
  EXPECT_EQ(readStructure(folder_ / "b.mxf").source, StructureSource::kRandomIndexPack);
}

TEST_F(RewriteTest, FindsARandomIndexPackWithZerosBehindIt) {
  const Path file = write(fileOf(fivePartitions()) + zeros(100));
  rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf");
  FileLayout expected = fivePartitions();
  expected.partitions[0].metadata = *replacement(0, 5000).bytes;
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), fileOf(expected) + zeros(100));
}

/// The bytes that locate the others: partition packs, fill behind them, primer packs and the random index pack.
std::vector<std::size_t> structuralBytes(const Path& path) {
  std::vector<std::size_t> bytes;
  const FileStructure structure = readStructure(path);
  const auto add = [&](uint64 from, uint64 to) {
    for (; from < to; ++from) bytes.push_back(static_cast<std::size_t>(from));
  };
  for (const auto& partition : structure.partitions) add(partition.offset, partition.packEnd + 24);
  add(structure.fileSize - 100, structure.fileSize);
  return bytes;
}

TEST_F(RewriteTest, RefusesADamagedFileOrMakesOneThatCanBeRead) {
  const Bytes sound = fileOf(fivePartitions());
  const auto places = structuralBytes(write(sound));
  int copies = 0;
  int refusals = 0;
  for (std::size_t i = 0; i < places.size(); i += 3) {
    Bytes bytes = sound;
    bytes[places[i]] ^= i % 2 == 0 ? 0x01 : 0xff;
    const Path file = write(bytes);
    DataIO::Memory::MemoryDataSink sink;
    try {
      rewrite(file, {replacement(0, 5000), replacement(4, 700)}, sink);
    } catch (const Exceptions::BaseException&) {
      ++refusals;
      continue;
    }
    ++copies;
    const FileStructure copied = readStructure(write(sink.take(), "b.mxf"));
    EXPECT_EQ(copied.partitions.size(), readStructure(file).partitions.size()) << "damage at " << places[i];
    EXPECT_NE(copied.source, StructureSource::kWalk) << "damage at " << places[i];
    EXPECT_EQ(metadataIn(folder_ / "b.mxf", 0), *replacement(0, 5000).bytes) << "damage at " << places[i];
  }
  EXPECT_GT(copies, 20);
  EXPECT_GT(refusals, 20);
}

TEST_F(RewriteTest, RefusesAKAGThatIsNone) {
  Bytes bytes = fileOf(fivePartitions());
  bytes[20 + 4] = 0xff;
  const Path file = write(bytes);
  EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf"); },
              ThrowsMessage<InvalidLength>(HasSubstr("partition 0 cannot be padded to a KAG of 4278190081 bytes")));
  EXPECT_NO_THROW(rewrite(file, {replacement(0, kOldSize)}, folder_ / "b.mxf"));
}

TEST_F(RewriteTest, TellsHowFarItIs) {
  const Path file = write(fivePartitions(512));
  std::vector<uint64> done;
  uint64 all = 0;
  rewrite(file, {replacement(0, 500000)}, folder_ / "b.mxf", [&](uint64 bytes, uint64 total) {
    done.push_back(bytes);
    all = total;
  });
  EXPECT_EQ(all, fs::file_size(folder_ / "b.mxf"));
  EXPECT_EQ(done.back(), all);
  EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
  EXPECT_EQ(std::count(done.begin(), done.end(), all), 1);
  EXPECT_GT(done.size(), 2u);
  EXPECT_LE(done.size(), 102u);
}

TEST_F(RewriteTest, LeavesNoOutputWhenTheOriginalIsChangedMeanwhile) {
  const Path file = write(fivePartitions());
  const auto time = fs::last_write_time(file);
  const auto refused = [&](const std::function<void()>& change) {
    bool isDone = false;
    const auto changeOnce = [&](uint64, uint64) {
      if (!std::exchange(isDone, true)) change();
    };
    EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf", changeOnce); },
                ThrowsMessage<IOError>(HasSubstr("another program has changed it meanwhile")));
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  };
  refused([&] { fs::last_write_time(file, time + std::chrono::seconds(5)); });
  refused([&] {
    fs::resize_file(file, fs::file_size(file) + 1);
    fs::last_write_time(file, time + std::chrono::seconds(5));
  });
}

TEST_F(RewriteTest, RefusesAnOriginalThatWasChangedSinceItsMetadataWereRead) {
  const Path file = write(fivePartitions());
  const auto state = DataIO::File::stateOf(file);
  write(fivePartitions(), "b.mxf");
  fs::last_write_time(folder_ / "b.mxf", state.modified);
  fs::rename(folder_ / "b.mxf", file);
  for (const auto& replacements : {MetadataReplacements(), MetadataReplacements{replacement(0, 5000)}}) {
    const auto refusal = ThrowsMessage<IOError>(HasSubstr("another program has changed it meanwhile; begin anew"));
    EXPECT_THAT([&] { rewrite(file, state, replacements, folder_ / "c.mxf"); }, refusal);
    EXPECT_THAT([&] { rewrite(file, state, replacements, file); }, refusal);
    DataIO::Memory::MemoryDataSink sink;
    EXPECT_THAT([&] { rewrite(file, state, replacements, sink); }, refusal);
  }
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(RewriteTest, RefusesAnOriginalThatIsChangedWhileTheLastBytesGoToTheMedium) {
  const Path file = write(fivePartitions());
  const auto changeAtLast = [&](uint64 done, uint64 total) {
    if (done == total) create(file, "more");
  };
  EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, file, changeAtLast); },
              ThrowsMessage<IOError>(HasSubstr("another program has changed it meanwhile")));
  EXPECT_EQ(contents(file), "more");
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(RewriteTest, ReplacesNoOriginalThatAnotherOneIsReplacing) {
  const Path file = write(fivePartitions());
  const Bytes old = bytesOf(file);
  DataIO::File::FileUpdate other(file);
  other.lock();
  EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, file); },
              ThrowsMessage<IOError>(HasSubstr("another program is changing it at the moment; try again later")));
  EXPECT_EQ(bytesOf(file), old);
  EXPECT_NO_THROW(rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf"));
  EXPECT_THAT(names(), testing::UnorderedElementsAre("a.mxf", "b.mxf"));
}

TEST_F(RewriteTest, HoldsTheLockFromTheLastLookOnUntilTheOriginalIsReplaced) {
  const Path file = write(fivePartitions());
  DataIO::File::FileUpdate other(file);
  bool isLocked = false;
  const auto tryAtLast = [&](uint64 done, uint64 total) {
    if (done < total) return;
    EXPECT_THROW(other.lock(), IOError);
    isLocked = true;
  };
  if (!DataIO::File::kReplacesOpenFiles) {  // which this one is
    EXPECT_THAT([&] { rewrite(file, {replacement(0, 5000)}, file, tryAtLast); },
                ThrowsMessage<IOError>(HasSubstr("cannot replace '")));
    EXPECT_TRUE(isLocked);
    EXPECT_EQ(bytesOf(file), fileOf(fivePartitions()));
    return;
  }
  rewrite(file, {replacement(0, 5000)}, file, tryAtLast);
  EXPECT_TRUE(isLocked);
  EXPECT_THAT([&] { other.lock(); }, ThrowsMessage<IOError>(HasSubstr("another program has replaced it meanwhile")));
}

TEST_F(RewriteTest, IsStoppedByAnExceptionOfTheProgress) {
  const Path file = write(fivePartitions());
  const auto stop = [](uint64, uint64) { throw std::runtime_error("stop"); };
  EXPECT_THROW(rewrite(file, {}, folder_ / "b.mxf", stop), std::runtime_error);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(RewriteTest, RefusesFilesWithTheJournalOfAStoppedChange) {
  const Path file = write(fivePartitions());
  const Path other = write(fivePartitions(), "b.mxf");
  create(DataIO::File::journalPath(other), "vantor-j");
  const auto refusal = ThrowsMessage<IOError>(HasSubstr("b.mxf': an earlier change of it was stopped"));
  EXPECT_THAT([&] { rewrite(other, {}, folder_ / "c.mxf"); }, refusal);
  EXPECT_THAT([&] { rewrite(file, {}, other); }, refusal);
}

#ifdef __linux__

TEST_F(RewriteTest, LeavesNoOutputOnAFullDisk) {
  const Path file = write(fivePartitions());
  EXPECT_EQ(runWithFileSizeLimit(4000, [&] { rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf"); }),
            Ending::kFailed);
  EXPECT_EQ(runWithFileSizeLimit(4000, [&] { rewrite(file, {replacement(0, 5000)}, file); }), Ending::kFailed);
  EXPECT_EQ(bytesOf(file), fileOf(fivePartitions()));
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(RewriteTest, LosesNoneOfTwoEditsWhereverTheSecondMeetsTheFirst) {
  std::map<bool, int> times;  // by whether the second was done
  bool isHeld = true;
  for (int n = 1; isHeld; n += 2) {
    const Path file = write(fivePartitions());
    isHeld = false;
    bool isSecondDone = true;
    const auto editSecond = [&] {
      isHeld = true;
      try {
        rewrite(file, {replacement(4, 5000)}, file);
      } catch (const IOError&) {
        isSecondDone = false;
      }
    };
    const auto state = DataIO::File::stateOf(file);
    const auto editFirst = [&] { rewrite(file, state, {replacement(0, 5000)}, file, {}); };
    const Ending ending = runHeldAtSystemCall(n, editFirst, editSecond);
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    if (!isHeld) break;
    EXPECT_EQ(roomOf(file, 0).size >= 5000, ending == Ending::kFinished) << n;
    EXPECT_EQ(roomOf(file, 4).size >= 5000, isSecondDone) << n;
    EXPECT_THAT(names(), ElementsAre("a.mxf")) << n;
    ++times[isSecondDone];
  }
  EXPECT_GT(times[true], 0);
  EXPECT_GT(times[false], 0);
}

/// Takes all bytes and counts them.
class CountingSink : public DataIO::DataSink {
 public:
  void write(const uint8*, std::size_t size) override { size_ += size; }
  uint64 position() const override { return size_; }

 private:
  uint64 size_ = 0;
};

/// The start of a file that ends with an essence element of this length.
Bytes startOfLargeFile(uint64 length) {
  FileLayout layout = fivePartitions(512);
  layout.partitions.pop_back();
  layout.partitions[0].status = KLV::PartitionStatus::kClosedComplete;
  layout.hasRandomIndexPack = false;
  return fileOf(layout) + klvHeader(kPictureElement, length, 9);
}

TEST_F(RewriteTest, TellsHowFarItIsEveryFewMebibytes) {
  const uint64 length = uint64{300} << 20;
  const Bytes start = startOfLargeFile(length);
  const Path file = write(start);
  fs::resize_file(file, start.size() + length);
  for (const auto& replacements : {MetadataReplacements(), MetadataReplacements{replacement(0, 5000)}}) {
    uint64 last = 0;
    CountingSink sink;
    rewrite(file, replacements, sink, [&](uint64 done, uint64) {
      EXPECT_LE(done - last, uint64{3} << 20);
      last = done;
    });
    EXPECT_EQ(last, sink.position());
  }
}

TEST_F(RewriteTest, TakesMemoryForBuffersButNotForTheFile) {
  const uint64 length = uint64{64} << 20;
  const Bytes start = startOfLargeFile(length);
  const Path file = write(start);
  fs::resize_file(file, start.size() + length);
  const auto usedMemory = [] {
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;  // in KiB
  };
  const auto rewriteInLittleMemory = [&] {
    const auto before = usedMemory();
    CountingSink sink;
    rewrite(file, {replacement(0, 5000)}, sink);
    const bool isTooMuch = !isSanitized() && usedMemory() - before > 8 << 10;
    if (sink.position() < length || isTooMuch) throw std::runtime_error("too much");
  };
  EXPECT_EQ(runWithFileSizeLimit(RLIM_INFINITY, rewriteInLittleMemory), Ending::kFinished);
}

#endif

}  // namespace
}  // namespace Vantor::MXF
