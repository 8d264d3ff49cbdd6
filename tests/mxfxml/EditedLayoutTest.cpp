#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "Core/KLV/Keys.h"
#include "Core/MXF/FileStructure.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "tests/Core/MXF/WholeFile.h"
#include "tests/Sanitized.h"

/// Edits of files whose parts are laid out in rarer ways.
namespace Vantor::Tool {
namespace {

using MXF::operator+;
using testing::HasSubstr;

const std::string kWithinRoom = "Identification.ApplicationName=Ed";
const std::string kBeyondRoom = "Identification.ApplicationName=" + std::string(12000, 'x');

Bytes sampleMetadata() { return MXF::metadataIn(sample("gst-audio-ac3.mxf"), 0); }

/// A header and a footer with the same metadata, and essence between them.
MXF::FileLayout threePartitions() {
  MXF::FileLayout layout;
  layout.partitions.resize(3);
  layout.partitions[0].kind = KLV::PartitionKind::kHeader;
  layout.partitions[1].essence = MXF::klv(MXF::kPictureElement, Bytes(3000, 0x55));
  layout.partitions[1].bodySID = 1;
  layout.partitions[2].kind = KLV::PartitionKind::kFooter;
  for (const std::size_t i : {0, 2}) {
    layout.partitions[i].metadata = sampleMetadata();
    layout.partitions[i].spare = 4096;
  }
  return layout;
}

class EditedLayout {
 public:
  explicit EditedLayout(const Bytes& bytes) { writeFile(original(), {bytes.begin(), bytes.end()}); }
  explicit EditedLayout(const MXF::FileLayout& layout) : EditedLayout(MXF::fileOf(layout)) {}

  std::string original() const { return folder_.path("a.mxf"); }
  std::string copy() const { return folder_.path("b.mxf"); }
  Result set(const std::string& assignment, std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"set", original(), assignment, "-o", copy()});
    return run(options);
  }
  Result setInPlace(const std::string& assignment) const { return run({"set", original(), assignment}); }

  /// Whether nothing but the header metadata, and what tells of their size, differs from the original.
  void expectSound() const {
    const MXF::FileStructure before = MXF::readStructure(original()), after = MXF::readStructure(copy());
    ASSERT_EQ(after.partitions.size(), before.partitions.size());
    EXPECT_EQ(after.source, MXF::StructureSource::kRandomIndexPack);
    EXPECT_EQ(after.runIn, before.runIn);
    EXPECT_EQ(bytes(copy(), 0, after.runIn), bytes(original(), 0, before.runIn));
    for (std::size_t i = 0; i < before.partitions.size(); ++i) {
      const auto &from = before.partitions[i], &to = after.partitions[i];
      EXPECT_EQ(to.packEnd - to.offset, from.packEnd - from.offset);
      if (from.pack.headerByteCount == 0) {
        EXPECT_TRUE(behindPack(after, copy(), i) == behindPack(before, original(), i)) << i;
      }
      EXPECT_EQ(to.pack.thisPartition, to.offset - after.runIn);
      EXPECT_EQ(to.pack.previousPartition, i == 0 ? 0 : after.partitions[i - 1].offset - after.runIn);
      EXPECT_EQ(to.pack.footerPartition, after.partitions.back().offset - after.runIn);
    }
  }

  /// How the second file differs by what `mxfxml diff` says.
  std::string difference(const std::string& partition = "header") const {
    return run({"diff", original(), copy(), "--partition", partition}).out;
  }

  std::vector<std::string> files() const { return folder_.files(); }

 private:
  static std::string bytes(const std::string& path, uint64 from, uint64 to) {
    return readFile(path).substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  }
  /// The rest of a partition that is not the last one.
  static std::string behindPack(const MXF::FileStructure& structure, const std::string& path, std::size_t i) {
    return bytes(path, structure.partitions[i].packEnd, structure.partitions[i + 1].offset);
  }

  ScratchFolder folder_;
};

constexpr const char* kOneDifference = "different 1; properties compared";

void expectEdits(const MXF::FileLayout& layout) {
  for (const auto& assignment : {kWithinRoom, kBeyondRoom}) {
    const EditedLayout file(layout);
    const Result result = file.set(assignment);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
    file.expectSound();
    EXPECT_THAT(file.difference(), HasSubstr(kOneDifference));
    EXPECT_THAT(file.difference("footer"), HasSubstr(kOneDifference));
    EXPECT_EQ(file.setInPlace(assignment).exitCode, 0);
    EXPECT_TRUE(readFile(file.original()) == readFile(file.copy()));
  }
}

TEST(EditedLayout, KeepsARunIn) {
  MXF::FileLayout layout = threePartitions();
  layout.runIn = 777;
  expectEdits(layout);
}

TEST(EditedLayout, MayHaveFillInFrontOfThePrimerPack) {
  MXF::FileLayout layout = threePartitions();
  for (auto& partition : layout.partitions) partition.kag = 512;
  const Bytes bytes = MXF::fileOf(layout);
  ASSERT_EQ(Bytes(bytes.begin() + MXF::kPackSize, bytes.begin() + MXF::kPackSize + KLV::Key::kSize),
            MXF::keyBytes(KLV::fillKey()));
  expectEdits(layout);
}

TEST(EditedLayout, KeepsLongLengthFieldsOfPacks) {
  MXF::FileLayout layout = threePartitions();
  for (auto& partition : layout.partitions) {
    partition.berOctets = 9;
    partition.kag = 512;
  }
  layout.runIn = 5;
  const Bytes bytes = MXF::fileOf(layout);
  ASSERT_EQ(bytes[5 + KLV::Key::kSize], 0x88);
  expectEdits(layout);
}

TEST(EditedLayout, MayHaveMetadataInTheFooterOnly) {
  MXF::FileLayout layout = threePartitions();
  layout.partitions[0].metadata.clear();
  layout.partitions[0].status = KLV::PartitionStatus::kOpenIncomplete;
  for (const auto& assignment : {kWithinRoom, kBeyondRoom}) {
    const EditedLayout file(layout);
    EXPECT_THAT(file.set(assignment).err, HasSubstr("the partition has no header metadata"));
    const Result result = file.set(assignment, {"--partition", "footer"});
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n") << result.err;
    file.expectSound();
    EXPECT_THAT(file.difference("footer"), HasSubstr(kOneDifference));
  }
}

TEST(EditedLayout, IsCheckedWithMetadataInTheFooterOnly) {
  MXF::FileLayout layout = threePartitions();
  layout.partitions[0].metadata.clear();
  layout.partitions[0].status = KLV::PartitionStatus::kOpenIncomplete;
  const EditedLayout file(layout);
  const Result result = run({"check", file.original()});
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("note: header-status: partition 0: the header partition is open or incomplete; the "
                                    "final metadata are in a later one\n"));
}

/// A body partition names a wrong partition before it and a wrong footer.
Bytes fileWithWrongLinks() {
  const Bytes sound = MXF::fileOf(threePartitions());
  const MXF::TemporaryFile file(sound);
  const auto partitions = MXF::readStructure(file.path()).partitions;
  Bytes bytes = sound;
  constexpr std::size_t kPreviousPartition = 20 + 16, kFooterPartition = 20 + 24, kSize = 8;
  for (const std::size_t field : {kPreviousPartition, kFooterPartition}) {
    bytes[static_cast<std::size_t>(partitions[1].offset) + field + kSize - 1] ^= 0x55;
  }
  return bytes;
}

TEST(EditedLayout, HasRightLinksBetweenPartitionsWhenItIsWrittenWithAnEdit) {
  const EditedLayout file(fileWithWrongLinks());
  ASSERT_EQ(MXF::readStructure(file.original()).source, MXF::StructureSource::kWalk);
  const Result result = file.set(kBeyondRoom);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  file.expectSound();
}

/// A header, and many body partitions that repeat its metadata with other fill behind them.
MXF::FileLayout manyPartitions(std::size_t count) {
  MXF::FileLayout layout = threePartitions();
  MXF::PartitionLayout body = layout.partitions[0];
  body.kind = KLV::PartitionKind::kBody;
  body.spare = 1000;
  layout.partitions.insert(layout.partitions.begin() + 1, count, body);
  return layout;
}

TEST(EditedLayout, TakesNoLongTimeForManyPartitionsThatRepeatTheMetadata) {
  const std::size_t partitions = isSanitized() ? 500 : 2000;
  const std::string seconds = isSanitized() ? "15" : "5";
  const EditedLayout file(manyPartitions(partitions));
  const std::string number = std::to_string(partitions), all = std::to_string(partitions + 2);
  for (const auto& assignment : {kWithinRoom, kBeyondRoom}) {
    const Result result = runLimited("ulimit -t " + seconds, {"set", file.original(), assignment, "-o", file.copy()});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1 set changed (1 property); written to " + all + " partitions, which repeat each other\n");
    for (const auto& partition : {std::string("0"), std::string("1"), number})
      EXPECT_THAT(file.difference(partition), HasSubstr(kOneDifference));
  }
}

TEST(EditedLayout, KeepsOtherMetadataOfPartitionsAmongThoseThatRepeat) {
  MXF::FileLayout layout = manyPartitions(6);
  const EditedLayout other(layout);
  ASSERT_EQ(other.set(kBeyondRoom).exitCode, 0);
  for (const std::size_t i : {3, 4, 6}) layout.partitions[i].metadata = MXF::metadataIn(other.copy(), 0);
  const EditedLayout file(layout);
  const Result result = file.set(kWithinRoom);
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 5 partitions, which repeat each other\n");
  for (std::size_t i = 0; i < layout.partitions.size(); ++i) {
    const bool isOther = i == 3 || i == 4 || i == 6;
    EXPECT_EQ(result.err.find("partition " + std::to_string(i) + " has other metadata") != std::string::npos, isOther);
    if (layout.partitions[i].metadata.empty()) continue;
    const Bytes found = MXF::metadataIn(file.copy(), i);
    EXPECT_TRUE(isOther ? found == layout.partitions[i].metadata : found == MXF::metadataIn(file.copy(), 0)) << i;
  }
}

/// A partition pack behind the essence, which neither a link nor the random index pack leads to.
MXF::FileLayout withUnlistedPartition() {
  MXF::FileLayout layout = threePartitions();
  MXF::PartitionPack pack;
  pack.kind = KLV::PartitionKind::kBody;
  layout.partitions[1].essence = layout.partitions[1].essence + MXF::partition(pack);
  return layout;
}

TEST(EditedLayout, IsWrittenAnewOnlyWhereAllPartitionsAreListed) {
  const EditedLayout file(withUnlistedPartition());
  const std::string before = readFile(file.original());
  for (const auto& result : {file.set(kBeyondRoom), file.set(kWithinRoom), file.setInPlace(kBeyondRoom)}) {
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("a partition pack stands in partition 1 that the file does not list"));
    EXPECT_TRUE(readFile(file.original()) == before);
    EXPECT_EQ(file.files().size(), 1u);
  }
}

TEST(EditedLayout, KeepsUnlistedPartitionsWhereTheyAreInAnEditInPlace) {
  const EditedLayout file(withUnlistedPartition());
  const std::string before = readFile(file.original());
  EXPECT_EQ(file.setInPlace(kWithinRoom).exitCode, 0);
  const std::string after = readFile(file.original());
  ASSERT_EQ(after.size(), before.size());
  const auto partitions = MXF::readStructure(file.original()).partitions;
  const auto from = partitions[1].offset, size = partitions[2].packEnd - from;
  EXPECT_TRUE(after.substr(from, size) == before.substr(from, size));
}

TEST(EditedLayout, HasItsOwnBytesWithoutAnEditWhateverTheyAre) {
  MXF::FileLayout withDirectory = threePartitions();
  withDirectory.partitions[0].metadata = withDirectory.partitions[0].metadata + MXF::klv(MXF::kForeign, Bytes(50, 1));
  const Bytes whole = MXF::fileOf(threePartitions());
  for (const Bytes& bytes : {fileWithWrongLinks(), MXF::fileOf(withDirectory), MXF::slice(whole, 0, 9000)}) {
    const EditedLayout file(bytes);
    const std::string document = file.original() + ".xml";
    ASSERT_EQ(run({"export", file.original(), "-o", document}).exitCode, 0);
    const Result result = run({"import", document, "--into", file.original(), "-o", file.copy()});
    EXPECT_EQ(result.out, "nothing is edited\n") << result.err;
    EXPECT_TRUE(readFile(file.copy()) == std::string(bytes.begin(), bytes.end()));
  }
  EXPECT_EQ(EditedLayout(withDirectory).set(kWithinRoom).exitCode, 1);
}

/// The KLVs one behind the other.
std::vector<Bytes> klvsIn(const Bytes& metadata) {
  const MXF::TemporaryFile file(metadata);
  DataIO::File::FileDataSource source(file.path());
  std::vector<Bytes> klvs;
  while (source.remaining() != 0) {
    const auto header = MXF::readKLVHeader(source);
    MXF::skipValue(header, source);
    klvs.push_back(MXF::slice(metadata, header.offset, source.position()));
  }
  return klvs;
}

TEST(EditedLayout, HasOnePrimerPackAndNoFillBetweenSetsWhenItIsWrittenWithAnEdit) {
  const auto klvs = klvsIn(sampleMetadata());
  const Bytes secondPrimer = MXF::primer({{0xfffe, MXF::kForeign}});
  MXF::FileLayout layout = threePartitions();
  Bytes scattered;
  for (std::size_t i = 0; i < klvs.size(); ++i) {
    scattered = scattered + klvs[i];
    if (i % 2 != 0) scattered = scattered + MXF::fill(50);
    if (i == 5) scattered = scattered + secondPrimer;
  }
  for (const std::size_t i : {0, 2}) layout.partitions[i].metadata = scattered;
  const EditedLayout file(layout);
  const Result result = file.set(kWithinRoom);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(std::filesystem::file_size(file.copy()), std::filesystem::file_size(file.original()));
  for (const std::size_t partition : {0, 2}) {
    const auto found = klvsIn(MXF::metadataIn(file.copy(), partition));
    ASSERT_EQ(found.size(), klvs.size());
    constexpr std::size_t kRow = 18;
    EXPECT_EQ(found[0].size(), klvs[0].size() + kRow);
    EXPECT_TRUE(std::equal(found[0].end() - kRow, found[0].end(), secondPrimer.end() - kRow));
    std::size_t different = 0;
    for (std::size_t i = 1; i < klvs.size(); ++i) different += found[i] == klvs[i] ? 0 : 1;
    EXPECT_EQ(different, 1u);
  }
}

}  // namespace
}  // namespace Vantor::Tool
