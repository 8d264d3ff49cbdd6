#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <ostream>

#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"
#include "tests/Core/MXF/WholeFile.h"
#include "tests/Core/Platform/ThisSystem.h"
#include "tests/Installed.h"

/// Shared by the tests of replaced header metadata.
namespace Vantor::MXF {

/// Of the header metadata in `fivePartitions()`.
constexpr uint64 kOldSize = 600;

inline Bytes essence(uint8 octet) { return klv(kPictureElement, Bytes(3000, octet)); }

/// A header with metadata and an index table, two bodies, the second with metadata that repeat, a generic stream, and a
/// footer with metadata and an index table.
inline FileLayout fivePartitions(uint32 kag = 1, uint64 spare = 0) {
  FileLayout layout;
  layout.partitions.resize(5);
  for (auto& partition : layout.partitions) partition.kag = kag;
  layout.partitions[0].kind = KLV::PartitionKind::kHeader;
  layout.partitions[0].status = KLV::PartitionStatus::kOpenComplete;
  layout.partitions[0].indexTable = indexTable();
  layout.partitions[1].essence = essence(1);
  layout.partitions[1].bodySID = 1;
  layout.partitions[2].essence = essence(2);
  layout.partitions[2].bodySID = 2;
  layout.partitions[3].status = KLV::PartitionStatus::kGenericStream;
  layout.partitions[3].essence = klv(keyOf("06.0E.2B.34.01.01.01.0C.0D.01.05.09.01.00.00.00"), Bytes(77, 3));
  layout.partitions[3].bodySID = 3;
  layout.partitions[4].kind = KLV::PartitionKind::kFooter;
  layout.partitions[4].indexTable = indexTable();
  for (const std::size_t i : {0, 2, 4}) {
    layout.partitions[i].metadata = metadataOfSize(kOldSize, 1);
    layout.partitions[i].spare = spare;
  }
  return layout;
}

/// Layouts of files that are written anew.
struct RewriteCase {
  uint32 kag;
  std::size_t runIn;
  bool hasRandomIndexPack;
};

inline void PrintTo(const RewriteCase& one, std::ostream* out) {
  *out << "KAG " << one.kag << ", run-in " << one.runIn << ", random index pack " << one.hasRandomIndexPack;
}

inline const std::vector<RewriteCase> kRewriteCases = {{0, 0, true},    {1, 0, true},        {1, 11, false},
                                                       {256, 0, false}, {256, 4096, true},   {512, 0, true},
                                                       {512, 77, true}, {4096, 65535, false}};

inline FileLayout layoutOf(const RewriteCase& one) {
  FileLayout layout = fivePartitions(one.kag);
  layout.runIn = one.runIn;
  layout.hasRandomIndexPack = one.hasRandomIndexPack;
  return layout;
}

/// Some shells report success for a program that they do not find.
inline bool hasPython() {
  constexpr int kExitCode = 7;
  const int status = std::system("python3 -c \"raise SystemExit(7)\"");
  return isInstalled("Python", status == kExitCode || status == kExitCode << 8);  // as Windows and POSIX have it
}

/// For files that no other program changes.
inline bool fits(const Path& file, const Replacements& replacements) {
  DataIO::File::FileDataSource source(file);
  return fits(source, replacements);
}
inline void replaceInPlace(const Path& file, const Replacements& replacements) {
  replaceInPlace(file, DataIO::File::stateOf(file), replacements);
}
template <class Output>
void rewrite(const Path& original, const Replacements& replacements, Output&& output, const Progress& progress = {}) {
  rewrite(original, DataIO::File::stateOf(original), replacements, output, progress);
}

inline MetadataReplacement replacement(std::size_t partition, std::size_t size) {
  return {partition, metadataOfSize(size, static_cast<uint8>(0x20 + partition))};
}

/// The extent of the header metadata of a partition, with the fill behind them.
inline MetadataRoom roomOf(const Path& path, std::size_t number) {
  DataIO::File::FileDataSource source(path);
  return *findMetadataRoom(source, readStructure(source), number);
}

class ReplacementTest : public FolderTest {
 protected:
  Path write(const FileLayout& layout, const char* name = "a.mxf") { return write(fileOf(layout), name); }
  Path write(const Bytes& bytes, const char* name = "a.mxf") {
    create(folder_ / name, std::string(bytes.begin(), bytes.end()));
    return folder_ / name;
  }

#ifdef __linux__
  /// Kills a change in place at every so many system calls. Each time, the file is the old or the new one in the end.
  void expectUndoneOrDone(const Path& file, const Replacements& replacements, int step) {
    const Bytes old = bytesOf(file);
    replaceInPlace(file, replacements);
    const Bytes expected = bytesOf(file);
    int kills = 0, restored = 0;
    for (int n = 1;; n += step, ++kills) {
      write(old);
      const Ending ending = runUntilSystemCall(n, [&] { replaceInPlace(file, replacements); });
      if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
      ASSERT_NE(ending, Ending::kFailed);
      if (DataIO::File::recover(file) == DataIO::File::Recovery::kRestored) ++restored;
      EXPECT_TRUE(bytesOf(file) == old || (bytesOf(file) == expected && n > 1)) << n;
      EXPECT_THAT(names(), testing::ElementsAre("a.mxf"));
      if (ending == Ending::kFinished) break;
    }
    EXPECT_EQ(bytesOf(file), expected);
    EXPECT_GT(kills, 30);
    EXPECT_GT(restored, 2);
  }
#endif

  /// The findings of `scripts/check-partitions`; empty when all is well.
  std::string complaint(const Path& file, const Path& original, const char* option = "") const {
    const Path script = Path(VANTOR_TEST_DATA_DIR) / ".." / ".." / "scripts" / "check-partitions";
    const std::string output = (folder_ / "output").string();
    const std::string command = "python3 \"" + script.string() + "\" \"" + file.string() + "\" --original \"" +
                                original.string() + "\" " + option + " > \"" + output + "\" 2>&1";
    return std::system(command.c_str()) == 0 ? "" : contents(output);
  }
};

}  // namespace Vantor::MXF
