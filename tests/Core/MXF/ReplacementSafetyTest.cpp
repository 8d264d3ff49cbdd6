#include "Core/MXF/ReplacementSafety.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/WholeFile.h"
#include "tests/SampleFiles.h"

namespace Vantor::MXF {
namespace {

using Exceptions::IOError;
using Exceptions::ParseError;
using KLV::PartitionKind;
using KLV::PartitionStatus;
using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

const Bytes kEssence = klv(kPictureElement, Bytes(50, 0x55));  // 70 bytes

void refuse(const Path& path) {
  DataIO::File::FileDataSource source(path);
  refuseUnsafe(source, readStructure(source));
}

void refuse(const Bytes& bytes) { refuse(TemporaryFile(bytes).path()); }

FileLayout threePartitions() {
  FileLayout layout;
  layout.partitions.resize(3);
  layout.partitions[0].kind = PartitionKind::kHeader;
  layout.partitions[0].metadata = metadataOfSize(200, 1);
  layout.partitions[1].essence = kEssence;
  layout.partitions[1].bodySID = 1;
  layout.partitions[2].kind = PartitionKind::kFooter;
  layout.partitions[2].metadata = metadataOfSize(300, 1);
  return layout;
}

// Where the partitions of `threePartitions()` start.
constexpr uint64 kBody = kPackSize + 200;
constexpr uint64 kFooter = kBody + kPackSize + 70;

TEST(ReplacementSafety, HasNothingAgainstSoundFiles) {
  FileLayout layout = threePartitions();
  for (const bool hasRandomIndexPack : {true, false}) {
    layout.hasRandomIndexPack = hasRandomIndexPack;
    EXPECT_NO_THROW(refuse(fileOf(layout)));
    layout.runIn = 30;
    EXPECT_NO_THROW(refuse(fileOf(layout)));
  }
}

TEST(ReplacementSafety, HasNothingAgainstAClosedFileWithoutFooter) {
  FileLayout layout = threePartitions();
  layout.partitions.pop_back();
  EXPECT_NO_THROW(refuse(fileOf(layout)));
}

TEST(ReplacementSafety, RefusesAnOpenHeaderOnlyWithoutAFooter) {
  for (const auto status : {PartitionStatus::kOpenIncomplete, PartitionStatus::kOpenComplete}) {
    FileLayout layout = threePartitions();
    layout.partitions[0].status = status;
    EXPECT_NO_THROW(refuse(fileOf(layout)));
    layout.partitions.pop_back();
    EXPECT_THAT([&] { refuse(fileOf(layout)); },
                ThrowsMessage<IOError>(HasSubstr("its header partition is open and it has no footer partition")));
  }
}

TEST(ReplacementSafety, RefusesAFileThatIsCutOffAnywhere) {
  FileLayout layout = threePartitions();
  layout.hasRandomIndexPack = false;
  const Bytes whole = fileOf(layout);
  for (std::size_t size = kPackSize; size < whole.size(); ++size) {
    EXPECT_THROW(refuse(slice(whole, 0, size)), ParseError) << size;
  }
  EXPECT_THAT(
      [&] { refuse(slice(whole, 0, kFooter)); },
      ThrowsMessage<ParseError>(HasSubstr("names a footer partition at 486, where the file, which has 486 bytes")));
}

TEST(ReplacementSafety, RefusesDamagedPartitionPacks) {
  Bytes bytes = fileOf(threePartitions());
  bytes[kBody + kPackSize - 1] ^= 0xff;  // the essence containers' item size, and below their count
  bytes[kBody + kPackSize - 5] ^= 0xff;
  EXPECT_THAT([&] { refuse(bytes); },
              ThrowsMessage<ParseError>(HasSubstr("at byte offset 308: the pack of partition 1 cannot be read")));
}

TEST(ReplacementSafety, RefusesBytesThatCannotBeFollowed) {
  FileLayout layout = threePartitions();
  layout.hasRandomIndexPack = false;
  layout.partitions[1].essence = kEssence + Bytes(40, 0xff);
  Bytes bytes = fileOf(layout);
  bytes[20 + 24 + 7] ^= 0xff;  // the header's link to the footer, so that only a walk could lead there
  EXPECT_THAT([&] { refuse(bytes); }, ThrowsMessage<ParseError>(HasSubstr("cannot be followed to its end")));
}

TEST(ReplacementSafety, LetsZerosStandBehindTheFileButNothingElse) {
  FileLayout layout = threePartitions();
  const Bytes whole = fileOf(layout);
  EXPECT_NO_THROW(refuse(whole + zeros(100)));
  EXPECT_THROW(refuse(whole + Bytes(100, 0x20)), ParseError);
}

TEST(ReplacementSafety, RefusesARandomIndexPackThatListsWhatIsNotThere) {
  FileLayout layout = threePartitions();
  layout.hasRandomIndexPack = false;
  EXPECT_NO_THROW(refuse(fileOf(layout) + randomIndexPack({0, kFooter})));
  EXPECT_THAT(
      [&] {
        refuse(fileOf(layout) + randomIndexPack({0, kBody + 1, kFooter}));
      },
      ThrowsMessage<ParseError>(HasSubstr("the random index pack lists a partition at 309, where none is")));
  EXPECT_THROW(refuse(fileOf(layout) + klv(KLV::randomIndexPackKey(), Bytes(17, 0))), ParseError);
}

TEST(ReplacementSafety, LooksAtTheHeaderMetadataOfEveryPartition) {
  FileLayout layout = threePartitions();
  layout.partitions[2].indexTable = klv(kForeign, {1});
  EXPECT_THAT([&] { refuse(fileOf(layout)); },
              ThrowsMessage<IOError>(HasSubstr("in partition 2 holds offsets of sets")));
}

void refuseUnlistedIn(const Path& path) {
  DataIO::File::FileDataSource source(path);
  const FileStructure structure = readStructure(source);
  refuseUnlisted(source, structure, refuseUnsafe(source, structure));
}

/// refuseUnsafe() accepts the file; refuseUnlisted() refuses it with such a message.
template <class Exception>
void expectUnlisted(const Bytes& bytes, const std::string& message) {
  const TemporaryFile file(bytes);
  EXPECT_NO_THROW(refuse(file.path()));
  EXPECT_THAT([&] { refuseUnlistedIn(file.path()); }, ThrowsMessage<Exception>(HasSubstr(message)));
}

/// `threePartitions()` with further bytes behind the essence, which the structure does not mention.
FileLayout layoutWith(const Bytes& further) {
  FileLayout layout = threePartitions();
  layout.partitions[1].essence = kEssence + further;
  return layout;
}

Bytes bodyPack() {
  PartitionPack pack;
  pack.kind = PartitionKind::kBody;
  return partition(pack);
}

TEST(UnlistedPartitions, AreNoneInSoundFiles) {
  FileLayout layout = threePartitions();
  layout.runIn = 30;
  for (const bool hasRandomIndexPack : {true, false}) {
    layout.hasRandomIndexPack = hasRandomIndexPack;
    for (const std::size_t behind : {0, 5, 100}) {
      EXPECT_NO_THROW(refuseUnlistedIn(TemporaryFile(fileOf(layout) + zeros(behind)).path()));
    }
  }
}

TEST(UnlistedPartitions, AreRefusedWhereListAndLinksSkipThem) {
  FileLayout layout = layoutWith(bodyPack());
  for (const bool hasRandomIndexPack : {true, false}) {
    layout.hasRandomIndexPack = hasRandomIndexPack;
    expectUnlisted<ParseError>(fileOf(layout), "at byte offset " + std::to_string(kFooter) +
                                                   ": a partition pack stands in partition 1 that the file does not");
  }
}

TEST(UnlistedPartitions, AreRefusedBehindTheLastOneThatIsListed) {
  FileLayout layout = threePartitions();
  const Bytes footer = slice(fileOf(layout), kFooter, kFooter + kPackSize + 300);
  layout.partitions.pop_back();
  layout.hasRandomIndexPack = false;
  expectUnlisted<ParseError>(fileOf(layout) + footer + randomIndexPack({0, kBody}),
                             "at byte offset " + std::to_string(kFooter) + ": a partition pack stands in partition 1");
}

TEST(UnlistedPartitions, AreThoseOfASecondFileBehindTheFirst) {
  const Bytes one = fileOf(threePartitions());
  expectUnlisted<ParseError>(one + one, "at byte offset " + std::to_string(kFooter + kPackSize + 300) +
                                            ": a random index pack stands in partition 2, and another one behind it");
}

TEST(UnlistedPartitions, MayBeWhereKLVsCannotBeFollowed) {
  for (const Bytes& bytes : {zeros(40), klvHeader(kPictureElement, 5000), Bytes(30, 0x55)}) {
    const TemporaryFile file(fileOf(layoutWith(bytes)));
    EXPECT_NO_THROW(refuse(file.path()));
    EXPECT_THROW(refuseUnlistedIn(file.path()), ParseError);
  }
  expectUnlisted<ParseError>(fileOf(layoutWith(zeros(40))), "at byte offset " + std::to_string(kFooter) +
                                                                ": expected a KLV in partition 1, which ends at " +
                                                                std::to_string(kFooter + 40));
}

TEST(UnlistedPartitions, AreRefusedAsAreListsOfSetsAmongTheEssence) {
  expectUnlisted<IOError>(fileOf(layoutWith(klv(kForeign, {1}))), "in partition 1 holds offsets of sets");
}

std::vector<Unchecked> uncheckedIn(const Bytes& bytes, std::size_t rooms) {
  const TemporaryFile file(bytes);
  DataIO::File::FileDataSource source(file.path());
  std::vector<Unchecked> unchecked;
  const auto found = refuseUnsafe(source, readStructure(source), &unchecked);
  EXPECT_TRUE(found.front().has_value());
  EXPECT_EQ(static_cast<std::size_t>(
                std::count_if(found.begin(), found.end(), [](const auto& room) { return room.has_value(); })),
            rooms);
  return unchecked;
}

std::vector<std::string> textsOf(const std::vector<Unchecked>& unchecked) {
  std::vector<std::string> texts;
  for (const auto& one : unchecked) texts.push_back(describe(one));
  return texts;
}

TEST(ForcedReplacement, NeedsNoForceInASoundFile) {
  EXPECT_THAT(uncheckedIn(fileOf(threePartitions()), 2), testing::IsEmpty());
}

TEST(ForcedReplacement, TellsWhatIsNotChecked) {
  FileLayout layout = threePartitions();
  layout.hasRandomIndexPack = false;
  const Bytes whole = fileOf(layout);
  EXPECT_THAT(
      textsOf(uncheckedIn(slice(whole, 0, kBody + kPackSize + 5), 1)),
      testing::ElementsAre("the file cannot be followed behind byte offset 416, where further partitions may be",
                           "the footer partition that the header partition names is not at byte offset 486"));
  EXPECT_THAT(textsOf(uncheckedIn(slice(whole, 0, kFooter + kPackSize + 250), 1)),
              testing::ElementsAre("the header metadata of partition 2 at byte offset 486 stay as they are",
                                   "the random index pack cannot be read, or lists partitions that are not there"));
  Bytes damaged = fileOf(threePartitions());
  damaged[kBody + kPackSize - 1] ^= 0xff;
  damaged[kBody + kPackSize - 5] ^= 0xff;
  EXPECT_THAT(textsOf(uncheckedIn(damaged, 2)),
              testing::Contains("the pack of partition 1 at byte offset 308 cannot be read"));
  layout.partitions[0].status = PartitionStatus::kOpenComplete;
  layout.partitions.pop_back();
  EXPECT_THAT(textsOf(uncheckedIn(fileOf(layout), 1)),
              testing::ElementsAre("the header partition is open and there is no footer partition: a writer that is "
                                   "still at work may write over the edit"));
}

TEST(ForcedReplacement, NeedsSoundMetadataInTheHeaderPartition) {
  const Bytes whole = fileOf(threePartitions());
  for (const std::size_t size : {kPackSize + 20, kPackSize + 199}) {
    const TemporaryFile file(slice(whole, 0, size));
    DataIO::File::FileDataSource source(file.path());
    std::vector<Unchecked> unchecked;
    EXPECT_THROW(refuseUnsafe(source, readStructure(source), &unchecked), ParseError);
  }
}

class SafetyOfSamplesTest : public testing::TestWithParam<Path> {};

TEST_P(SafetyOfSamplesTest, IsThatOfWholeFiles) {
  if (GetParam().stem().extension() == ".header") {
    EXPECT_THROW(refuse(GetParam()), ParseError);
  } else {
    EXPECT_NO_THROW(refuse(GetParam()));
    EXPECT_NO_THROW(refuseUnlistedIn(GetParam()));
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, SafetyOfSamplesTest, testing::ValuesIn(sampleFiles()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
