#include "Core/MXF/HeaderMetadataReplacement.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"
#include "tests/Core/MXF/WholeFile.h"
#include "tests/SampleFiles.h"

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

constexpr uint64 kOldSize = 600;

Bytes essence(uint8 octet) { return klv(kPictureElement, Bytes(3000, octet)); }

/// A header with metadata and an index table, two bodies, the second with metadata that repeat, a generic stream, and a
/// footer with metadata and an index table.
FileSpec fivePartitions(uint32 kag = 1, uint64 spare = 0) {
  FileSpec spec;
  spec.partitions.resize(5);
  for (auto& partition : spec.partitions) partition.kag = kag;
  spec.partitions[0].kind = KLV::PartitionKind::kHeader;
  spec.partitions[0].status = KLV::PartitionStatus::kOpenComplete;
  spec.partitions[0].indexTable = indexTable();
  spec.partitions[1].essence = essence(1);
  spec.partitions[1].bodySID = 1;
  spec.partitions[2].essence = essence(2);
  spec.partitions[2].bodySID = 2;
  spec.partitions[3].status = KLV::PartitionStatus::kGenericStream;
  spec.partitions[3].essence = klv(keyOf("06.0E.2B.34.01.01.01.0C.0D.01.05.09.01.00.00.00"), Bytes(77, 3));
  spec.partitions[3].bodySID = 3;
  spec.partitions[4].kind = KLV::PartitionKind::kFooter;
  spec.partitions[4].indexTable = indexTable();
  for (const std::size_t i : {0, 2, 4}) {
    spec.partitions[i].metadata = metadataOfSize(kOldSize, 1);
    spec.partitions[i].spare = spare;
  }
  return spec;
}

MetadataReplacement replacement(std::size_t partition, std::size_t size) {
  return {partition, metadataOfSize(size, static_cast<uint8>(0x20 + partition))};
}

/// From where to where the header metadata of a partition go, with the fill behind them.
MetadataRoom roomOf(const Path& path, std::size_t number) {
  FileDataSource source(path);
  return *findMetadataRoom(source, readStructure(source), number);
}

class ReplacementTest : public FolderTest {
 protected:
  Path write(const FileSpec& spec, const char* name = "a.mxf") { return write(fileOf(spec), name); }
  Path write(const Bytes& bytes, const char* name = "a.mxf") {
    create(folder_ / name, std::string(bytes.begin(), bytes.end()));
    return folder_ / name;
  }
};

class InPlaceTest : public ReplacementTest {};
class RewriteTest : public ReplacementTest {};

TEST_F(InPlaceTest, WritesMetadataAndFillAndNothingElse) {
  for (const uint64 spare : {0, 17, 18, 19, 20, 21, 300, 70000}) {
    const Path file = write(fivePartitions(1, spare));
    const Bytes old = bytesOf(file);
    const MetadataRoom room = roomOf(file, 2);
    ASSERT_EQ(room.size, kOldSize + spare);
    ASSERT_TRUE(fits(file, {replacement(2, kOldSize)}));
    replaceInPlace(file, {replacement(2, kOldSize)});
    EXPECT_EQ(bytesOf(file), slice(old, 0, room.offset) + replacement(2, kOldSize).bytes + fillOf(spare) +
                                 slice(old, room.end(), old.size()));
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
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
    EXPECT_EQ(metadataIn(file, 0), replacement(0, room - remainder).bytes);
    EXPECT_EQ(roomOf(file, 0).size, room);
  }
}

TEST_F(InPlaceTest, ReplacesInSeveralPartitionsWhateverTheOrderGiven) {
  const Path file = write(fivePartitions(512));
  const MetadataReplacements replacements = {replacement(4, 650), replacement(0, 500), replacement(2, 112)};
  EXPECT_TRUE(fits(file, replacements));
  replaceInPlace(file, replacements);
  for (const auto& one : replacements) EXPECT_EQ(metadataIn(file, one.partition), one.bytes);
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
  refused({{0, {}}}, "expected 16 more bytes, found 0");
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

TEST_F(InPlaceTest, TakesNoTimeOrMemoryForEssence) {
  FileSpec spec = fivePartitions();
  Bytes start = fileOf(spec);
  const Path file = write(start);
  // The last KLV becomes one of 60 GiB, most of it a hole.
  const uint64 length = uint64{60} << 30;
  spec.hasRandomIndexPack = false;
  spec.partitions.pop_back();
  spec.partitions[0].status = KLV::PartitionStatus::kClosedComplete;
  start = fileOf(spec) + klvHeader(kForeign, length, 9);
  write(start);
  std::error_code error;
  fs::resize_file(file, start.size() + length, error);
  if (error) GTEST_SKIP() << "this file system has no large files with holes";
  replaceInPlace(file, {replacement(0, kOldSize)});
  EXPECT_EQ(fs::file_size(file), start.size() + length);
  EXPECT_EQ(roomOf(file, 0).size, kOldSize);
}

/// Layouts and sizes of new metadata, all in all.
struct RewriteCase {
  uint32 kag;
  std::size_t runIn;
  bool hasRandomIndexPack;
};

void PrintTo(const RewriteCase& one, std::ostream* out) {
  *out << "KAG " << one.kag << ", run-in " << one.runIn << ", random index pack " << one.hasRandomIndexPack;
}

class RewriteCaseTest : public ReplacementTest, public testing::WithParamInterface<RewriteCase> {
 protected:
  FileSpec spec() const {
    FileSpec spec = fivePartitions(GetParam().kag);
    spec.runIn = GetParam().runIn;
    spec.hasRandomIndexPack = GetParam().hasRandomIndexPack;
    return spec;
  }

  /// What `scripts/check-partitions` has to say, nothing when all is well.
  std::string complaint(const Path& file, const Path& original) const {
    const Path script = Path(VANTOR_TEST_DATA_DIR) / ".." / ".." / "scripts" / "check-partitions";
    const std::string output = (folder_ / "output").string();
    const std::string command = "python3 '" + script.string() + "' '" + file.string() + "' --original '" +
                                original.string() + "' > '" + output + "' 2>&1";
    return std::system(command.c_str()) == 0 ? "" : contents(output);
  }
};

TEST_P(RewriteCaseTest, IsTheFileThatHadBeenWrittenWithTheNewMetadata) {
  const Path file = write(spec());
  const std::size_t room = roomOf(file, 0).size;
  for (const std::size_t size : {room + 1, room + 512, room + 10000, room - 1, room - 16}) {
    for (const std::vector<std::size_t>& where : {std::vector<std::size_t>{0}, {0, 2, 4}}) {
      FileSpec expected = spec();
      MetadataReplacements replacements;
      for (const std::size_t partition : where) {
        replacements.push_back(replacement(partition, size));
        expected.partitions[partition].metadata = replacements.back().bytes;
      }
      DataIO::Memory::MemoryDataSink sink;
      rewrite(file, replacements, sink);
      EXPECT_EQ(sink.take(), fileOf(expected)) << size << " bytes for " << where.size() << " from " << where[0];
    }
  }
}

TEST_P(RewriteCaseTest, IsInOrderForAWitness) {
  if (std::system("python3 --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "there is no Python";
  const Path file = write(spec());
  const Path copy = folder_ / "b.mxf";
  ASSERT_EQ(complaint(file, file), "");
  rewrite(file, {replacement(0, 5000), replacement(2, kOldSize - 3), replacement(4, 3001)}, copy);
  EXPECT_EQ(complaint(copy, file), "");
  EXPECT_EQ(metadataIn(copy, 0), replacement(0, 5000).bytes);
  EXPECT_EQ(metadataIn(copy, 2), replacement(2, kOldSize - 3).bytes);
  EXPECT_EQ(metadataIn(copy, 4), replacement(4, 3001).bytes);
}

INSTANTIATE_TEST_SUITE_P(Layouts, RewriteCaseTest,
                         testing::Values(RewriteCase{0, 0, true}, RewriteCase{1, 0, true}, RewriteCase{1, 11, false},
                                         RewriteCase{256, 0, false}, RewriteCase{256, 4096, true},
                                         RewriteCase{512, 0, true}, RewriteCase{512, 77, true},
                                         RewriteCase{4096, 65535, false}));

TEST_F(RewriteTest, IsWhatReplacingInPlaceWritesWhereThatIsPossible) {
  const MetadataReplacements replacements = {replacement(0, 300), replacement(4, 620)};
  for (const uint32 kag : {1, 512}) {
    const Path file = write(fivePartitions(kag, 200));
    rewrite(file, replacements, folder_ / "b.mxf");
    replaceInPlace(file, replacements);
    EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
  }
}

TEST_F(RewriteTest, CopiesTheFileWithoutReplacements) {
  const Path file = write(fivePartitions(512));
  rewrite(file, {}, folder_ / "b.mxf");
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), bytesOf(file));
}

TEST_F(RewriteTest, MayHaveTheOriginalAsItsTarget) {
  const Path file = write(fivePartitions(512));
  rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf");
  rewrite(file, {replacement(0, 5000)}, file);
  EXPECT_EQ(bytesOf(file), bytesOf(folder_ / "b.mxf"));
  EXPECT_THAT(names(), testing::UnorderedElementsAre("a.mxf", "b.mxf"));
}

TEST_F(RewriteTest, LeavesLinksToAFooterOutThatWereNotThere) {
  FileSpec spec = fivePartitions();
  Bytes bytes = fileOf(spec);
  const auto forget = [&](uint64 pack) { std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(pack) + 44, 8, 0); };
  FileDataSource source(write(spec));
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
  FileSpec expected = fivePartitions();
  expected.partitions[0].metadata = replacement(0, 5000).bytes;
  EXPECT_EQ(bytesOf(folder_ / "b.mxf"), fileOf(expected) + zeros(100));
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

TEST_F(RewriteTest, IsStoppedByAnExceptionOfTheProgress) {
  const Path file = write(fivePartitions());
  const auto stop = [](uint64, uint64) { throw std::runtime_error("stop"); };
  EXPECT_THROW(rewrite(file, {}, folder_ / "b.mxf", stop), std::runtime_error);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(RewriteTest, RefusesFilesWithTheJournalOfAStoppedChange) {
  const Path file = write(fivePartitions());
  const Path other = write(fivePartitions(), "b.mxf");
  create(DataIO::File::journalPath(other), "mxfxml-j");
  const auto refusal = ThrowsMessage<IOError>(HasSubstr("b.mxf': an earlier change of it was stopped"));
  EXPECT_THAT([&] { rewrite(other, {}, folder_ / "c.mxf"); }, refusal);
  EXPECT_THAT([&] { rewrite(file, {}, other); }, refusal);
}

#ifdef __linux__

TEST_F(InPlaceTest, IsUndoneOrDoneWhenItIsKilledAtAnyOfManySystemCalls) {
  const Path file = write(fivePartitions(512));
  const Bytes old = bytesOf(file);
  const MetadataReplacements replacements = {replacement(0, 500), replacement(2, 600), replacement(4, 112)};
  replaceInPlace(file, replacements);
  const Bytes expected = bytesOf(file);
  int kills = 0;
  int restored = 0;
  for (int n = 1;; n += 5, ++kills) {
    write(old);
    const Ending ending = runUntilSystemCall(n, [&] { replaceInPlace(file, replacements); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    ASSERT_NE(ending, Ending::kFailed);
    if (DataIO::File::recover(file) == DataIO::File::Recovery::kRestored) ++restored;
    EXPECT_TRUE(bytesOf(file) == old || (bytesOf(file) == expected && n > 1)) << n;
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
    if (ending == Ending::kFinished) break;
  }
  EXPECT_EQ(bytesOf(file), expected);
  EXPECT_GT(kills, 30);
  EXPECT_GT(restored, 2);
}

TEST_F(RewriteTest, LeavesNoOutputOnAFullDisk) {
  const Path file = write(fivePartitions());
  EXPECT_EQ(runWithFileSizeLimit(4000, [&] { rewrite(file, {replacement(0, 5000)}, folder_ / "b.mxf"); }),
            Ending::kFailed);
  EXPECT_EQ(runWithFileSizeLimit(4000, [&] { rewrite(file, {replacement(0, 5000)}, file); }), Ending::kFailed);
  EXPECT_EQ(bytesOf(file), fileOf(fivePartitions()));
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

/// Takes all bytes and counts them.
class CountingSink : public DataIO::DataSink {
 public:
  void write(const uint8*, std::size_t size) override { size_ += size; }
  uint64 position() const override { return size_; }

 private:
  uint64 size_ = 0;
};

TEST_F(RewriteTest, TakesMemoryForBuffersButNotForTheFile) {
  FileSpec spec = fivePartitions(512);
  spec.partitions.pop_back();
  spec.partitions[0].status = KLV::PartitionStatus::kClosedComplete;
  spec.hasRandomIndexPack = false;
  const uint64 length = uint64{64} << 20;
  const Bytes start = fileOf(spec) + klvHeader(kPictureElement, length);
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
    if (sink.position() < length || usedMemory() - before > 8 << 10) throw std::runtime_error("too much");
  };
  EXPECT_EQ(runWithFileSizeLimit(RLIM_INFINITY, rewriteInLittleMemory), Ending::kFinished);
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

  /// The metadata of each partition that has some, with more bytes.
  MetadataReplacements largerMetadata(std::size_t by) const {
    MetadataReplacements larger;
    FileDataSource source(GetParam());
    const auto structure = readStructure(source);
    for (std::size_t i = 0; i < structure.partitions.size(); ++i) {
      if (structure.partitions[i].pack.headerByteCount == 0) continue;
      const KLV::Key set = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.7F.00");
      larger.push_back({i, metadataIn(GetParam(), i) + klv(set, item(0x8001, Bytes(by - 24, 1)))});
    }
    return larger;
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
  const auto larger = largerMetadata(20000);
  EXPECT_FALSE(fits(file(), larger));
  rewrite(GetParam(), larger, file());
  for (const auto& one : larger) EXPECT_EQ(metadataIn(file(), one.partition), one.bytes);
  const FileStructure structure = readStructure(file());
  EXPECT_EQ(structure.source, StructureSource::kRandomIndexPack);
  EXPECT_EQ(structure.partitions.size(), readStructure(GetParam()).partitions.size());
}

INSTANTIATE_TEST_SUITE_P(Samples, ReplacedSampleTest, testing::ValuesIn(wholeSamples()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
