#include "Core/MXF/HeaderMetadataReader.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/ReceivedBytes.h"
#include "tests/Core/MXF/MXFBytes.h"

namespace Vantor::MXF {
namespace {

using KLV::PartitionKind;
using KLV::PartitionStatus;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;
using testing::Throws;
using testing::ThrowsMessage;

const KLV::Key kUnknownSet = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.7F.77");

const Bytes kPrimer = primer({{0x3c0a, keyOf("06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00")}});
const Bytes kSets = setWithUID(kIdentification, 1) + setWithUID(kPreface, 2);  // 80 bytes
const Bytes kMetadata = kPrimer + kSets;
const Bytes kDark = klv(kForeign, {1, 2, 3});
const Bytes kEssence = klv(kPictureElement, Bytes(50, 0x55));

Bytes packCounting(uint64 headerByteCount, PartitionStatus status = PartitionStatus::kClosedComplete) {
  PartitionPack pack;
  pack.status = status;
  pack.headerByteCount = headerByteCount;
  return partition(pack);
}

std::unique_ptr<PartitionMetadata> readFile(const TemporaryFile& file,
                                            const PartitionChoice& choice = PartitionChoice::header()) {
  return readHeaderMetadata(file.path(), builtInDictionary(), choice);
}

/// The KLVs that were read, each as "Symbol", "group" for an unknown local set, or "dark".
std::vector<std::string> namesIn(const PartitionMetadata& metadata) {
  std::vector<std::string> names;
  for (const auto& entry : metadata.entries()) {
    const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry);
    if (set == nullptr) {
      names.emplace_back("dark");
    } else {
      names.push_back((*set)->definition() == nullptr ? "group" : (*set)->definition()->symbol());
    }
  }
  return names;
}

/// From a file, from memory, and as they arrive: always the same.
std::vector<std::string> namesIn(const Bytes& bytes) {
  const auto names = namesIn(*readFile(TemporaryFile(bytes)));
  DataIO::Memory::MemoryFile inMemory(bytes);
  EXPECT_EQ(namesIn(*readHeaderMetadata(inMemory, builtInDictionary())), names);
  DataIO::ReceivedBytes received(bytes);
  EXPECT_EQ(namesIn(*readHeaderMetadata(received, builtInDictionary())), names);
  return names;
}

const auto kBothSets = ElementsAre("Identification", "Preface");

TEST(HeaderMetadata, HoldsTheSetsInFileOrder) {
  const auto metadata = readFile(TemporaryFile(packCounting(kMetadata.size()) + kMetadata));
  EXPECT_THAT(namesIn(*metadata), kBothSets);
  ASSERT_EQ(metadata->sets().size(), 2u);
  ASSERT_NE(metadata->sets()[1]->instanceUID(), nullptr);
  EXPECT_EQ(*metadata->sets()[1]->instanceUID(), Types::UUID(Bytes(16, 2).data()));
}

TEST(HeaderMetadata, ReadsThePrimerBeforeTheSets) {
  const KLV::Key instanceUID = keyOf("06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00");
  const Bytes metadata = primer({{0x8123, instanceUID}}) + klv(kPreface, item(0x8123, Bytes(16, 7)));
  const auto read = readFile(TemporaryFile(packCounting(metadata.size()) + metadata));
  EXPECT_EQ(read->findByInstanceUID(Types::UUID(Bytes(16, 7).data())).size(), 1u);
  ASSERT_EQ(read->partitionDictionary().primerEntries().size(), 1u);
  EXPECT_EQ(read->partitionDictionary().primerEntries()[0], (KLV::PrimerEntry{0x8123, instanceUID}));
}

TEST(HeaderMetadata, KeepsTheLengthOctetsOfEverySet) {
  for (const uint8 octets : {1, 2, 3, 4, 5, 6, 7, 8, 9}) {
    const Bytes metadata = kPrimer + klv(kPreface, item(0x3c0a, Bytes(16, 1)), octets) + klv(kForeign, {1}, octets);
    const auto read = readFile(TemporaryFile(packCounting(metadata.size()) + metadata));
    EXPECT_EQ(read->sets()[0]->berLength(), octets);
    EXPECT_EQ((*read->darkBegin())->berLength(), octets);
  }
}

TEST(HeaderMetadata, IsReadWhateverThePartitionsStatus) {
  for (const auto status : {PartitionStatus::kOpenIncomplete, PartitionStatus::kClosedIncomplete,
                            PartitionStatus::kOpenComplete, PartitionStatus::kClosedComplete}) {
    EXPECT_THAT(namesIn(packCounting(kMetadata.size(), status) + kMetadata), kBothSets);
  }
}

TEST(HeaderMetadata, MayHaveFillAnywhere) {
  Bytes oldFill = fill(30);
  oldFill[7] = 0x01;  // the key's first version
  const Bytes among =
      kPrimer + oldFill + setWithUID(kIdentification, 1) + fill(0) + fill(300) + setWithUID(kPreface, 2) + fill(100000);
  for (const uint64 count : {uint64{0}, uint64{among.size()}, uint64{among.size() - 7}}) {
    EXPECT_THAT(namesIn(packCounting(count) + fill(200) + oldFill + among + kEssence), kBothSets) << count;
  }
}

TEST(HeaderMetadata, EndsWhereTheCountSays) {
  const Bytes filled = kMetadata + fill(100);
  EXPECT_THAT(namesIn(packCounting(filled.size()) + fill(20) + filled + kDark), kBothSets);
  EXPECT_THAT(namesIn(packCounting(kMetadata.size()) + filled + kDark), kBothSets);
  EXPECT_THAT(namesIn(packCounting(kMetadata.size()) + kMetadata + Bytes(3, 0x06)), kBothSets);
}

TEST(HeaderMetadata, GoesOnBehindACountThatEndsBeforeASet) {
  const uint64 beforePreface = kMetadata.size() - 40;
  EXPECT_THAT(namesIn(packCounting(beforePreface) + kMetadata + kDark + kEssence),
              ElementsAre("Identification", "Preface", "dark"));
  EXPECT_THAT(namesIn(packCounting(kPrimer.size()) + kPrimer + fill(9) + kSets + kEssence), kBothSets);
}

TEST(HeaderMetadata, GoesOnBehindACountThatEndsWithinAKLV) {
  const Bytes metadata = kMetadata + kDark + setWithUID(kUnknownSet, 3);
  const auto all = ElementsAre("Identification", "Preface", "dark", "group");
  for (uint64 count = 1; count < kMetadata.size() + 22; ++count) {
    const bool betweenKLVs = count == kMetadata.size();
    EXPECT_THAT(namesIn(packCounting(count) + metadata + kEssence), testing::Conditional(betweenKLVs, kBothSets, all))
        << count;
  }
}

TEST(HeaderMetadata, NeedsNoCount) {
  EXPECT_THAT(namesIn(packCounting(0) + kMetadata), kBothSets);
  EXPECT_THAT(namesIn(packCounting(0) + fill(50) + kMetadata + kDark + fill(50) + kEssence),
              ElementsAre("Identification", "Preface", "dark"));
}

TEST(HeaderMetadata, EndsWithTheFileWhateverTheCount) {
  for (const uint64 count : {uint64{1000}, uint64{1} << 32, ~uint64{0}, ~uint64{0} - 100}) {
    EXPECT_THAT(namesIn(packCounting(count) + kMetadata), kBothSets) << count;
    EXPECT_THAT(namesIn(zeros(9) + packCounting(count) + kMetadata), kBothSets) << count;
  }
}

TEST(HeaderMetadata, EndsBeforeWhatCannotBePartOfIt) {
  for (const char* key : {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.04.00",     // body partition pack
                          "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.04.04.00",     // footer partition pack
                          "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.11.00",     // generic stream partition pack
                          "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.04.7F.00",     // no known status
                          "06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00",     // index table segment
                          "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.11.01.00",     // random index pack
                          "06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.00",     // picture element
                          "06.0E.2B.34.01.02.01.01.0E.04.03.01.00.00.00.00",     // an organisation's own element
                          "06.0E.2B.34.02.05.01.01.0D.01.03.01.04.01.01.00",     // system item, pack
                          "06.0E.2B.34.02.53.01.01.0D.01.03.01.14.02.01.00",     // system item, local set
                          "06.0E.2B.34.02.04.01.07.0D.01.03.01.02.7E.01.00",     // encrypted triplet
                          "06.0E.2B.34.01.01.01.0C.0D.01.05.09.01.00.00.00"}) {  // generic stream data
    const Bytes rest = klv(keyOf(key), Bytes(30, 0x11)) + setWithUID(kPreface, 9);
    for (const uint64 count : {uint64{0}, uint64{kMetadata.size()}, uint64{kMetadata.size() - 1},
                               uint64{kMetadata.size() + 60}, uint64{1} << 40}) {
      EXPECT_THAT(namesIn(packCounting(count) + kMetadata + rest), kBothSets) << key << " " << count;
    }
  }
}

TEST(HeaderMetadata, EndsAtZeros) {
  for (const uint64 count : {uint64{0}, uint64{kMetadata.size()}, uint64{kMetadata.size() + 100}}) {
    EXPECT_THAT(namesIn(packCounting(count) + kMetadata + zeros(100) + kEssence), kBothSets);
    EXPECT_THAT(namesIn(packCounting(count) + kMetadata + zeros(5)), kBothSets);
  }
}

TEST(HeaderMetadata, EndsWithFillThatIsCut) {
  EXPECT_THAT(namesIn(packCounting(0) + kMetadata + klvHeader(KLV::fillKey(), 1000) + zeros(10)), kBothSets);
  EXPECT_THAT(namesIn(packCounting(kMetadata.size() + 1020) + kMetadata + klvHeader(KLV::fillKey(), 1000)), kBothSets);
}

TEST(HeaderMetadata, CarriesKLVsOfAnyKey) {
  const Bytes universalSet = klv(keyOf("06.0E.2B.34.02.01.01.01.0D.01.04.01.01.01.00.00"), {1});
  const Bytes metadata = kPrimer + kDark + universalSet + setWithUID(kUnknownSet, 1) + setWithUID(kPreface, 2);
  const auto read = readFile(TemporaryFile(packCounting(metadata.size()) + metadata));
  EXPECT_THAT(namesIn(*read), ElementsAre("dark", "dark", "group", "Preface"));
  ASSERT_EQ(read->darkEnd() - read->darkBegin(), 2);
  EXPECT_EQ((*read->darkBegin())->key(), kForeign);
  EXPECT_EQ((*read->darkBegin())->value().bytes(), (Bytes{1, 2, 3}));
}

TEST(HeaderMetadata, AddsTheRowsOfAFurtherPrimerPack) {
  const KLV::Key first = keyOf("06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00");
  const KLV::Key other = keyOf("06.0E.2B.34.01.01.01.02.05.20.07.01.08.00.00.00");
  const Bytes metadata = primer({{0x8001, first}}) + primer({{0x8001, other}, {0x8002, other}}) + kSets;
  const auto read = readFile(TemporaryFile(packCounting(metadata.size()) + metadata));
  EXPECT_THAT(namesIn(*read), kBothSets);
  EXPECT_EQ(read->partitionDictionary().find(Types::LocalTag(0x8001)).key(), first);
  EXPECT_EQ(read->partitionDictionary().find(Types::LocalTag(0x8002)).key(), other);
}

TEST(HeaderMetadata, IsMissingWithoutPrimer) {
  const auto missing =
      ThrowsMessage<Exceptions::ParseError>(StrEq("at byte offset 0: the partition has no header metadata"));
  EXPECT_THAT([] { namesIn(packCounting(0)); }, missing);
  EXPECT_THAT([] { namesIn(packCounting(0) + fill(100)); }, missing);
  EXPECT_THAT([] { namesIn(packCounting(0) + kSets); }, missing);
  EXPECT_THAT([] { namesIn(packCounting(100) + kEssence + kMetadata); }, missing);
  EXPECT_THAT([] { namesIn(packCounting(100) + zeros(100)); }, missing);
  EXPECT_THAT([] { namesIn(packCounting(80) + kSets); },
              ThrowsMessage<Exceptions::ParseError>(StrEq("at byte offset 108: expected a primer pack, found key "
                                                          "06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00")));
}

TEST(HeaderMetadata, RefusesADamagedPrimer) {
  Bytes damaged = kPrimer;
  damaged[23] = 2;  // one row is there
  EXPECT_THAT([&] { namesIn(packCounting(0) + damaged + kSets); },
              ThrowsMessage<Exceptions::ParseError>(HasSubstr("at byte offset 136: ")));
}

TEST(HeaderMetadata, NamesTheSetThatRunsPastTheEndOfTheFile) {
  EXPECT_THAT([] { namesIn(packCounting(0) + kPrimer + klvHeader(kPreface, 1000, 9) + zeros(20)); },
              ThrowsMessage<Exceptions::ParseError>(
                  StrEq("at byte offset 179: expected 1000 bytes of set Preface, found 20 to the end of the file; no "
                        "whole set stands before it")));
  EXPECT_THAT([] { namesIn(packCounting(0) + kPrimer + klvHeader(kForeign, ~uint64{0}, 9)); },
              ThrowsMessage<Exceptions::ParseError>(
                  AllOf(HasSubstr("expected 18446744073709551615 bytes of the set with key 80.53.08.00."),
                        HasSubstr("found 0 to the end of the file"))));
}

TEST(HeaderMetadata, NamesTheOffsetOfAKLVWithoutLength) {
  EXPECT_THAT([] { namesIn(packCounting(0) + kPrimer + keyBytes(kPreface)); },
              ThrowsMessage<Exceptions::ParseError>(HasSubstr("at byte offset 170: ")));
  EXPECT_THAT(
      [] {
        namesIn(packCounting(0) + kPrimer + keyBytes(kPreface) + Bytes{0x80, 0, 0});
      },
      ThrowsMessage<Exceptions::ParseError>(HasSubstr("at byte offset 170: ")));
}

TEST(HeaderMetadata, RefusesAnImpossibleSetWithoutReadingIt) {
  TemporaryFile file(packCounting(0) + kPrimer + klvHeader(kPreface, uint64{90} << 30, 9));
  ASSERT_TRUE(file.growTo(uint64{100} << 30));
  EXPECT_THAT([&] { readFile(file); }, ThrowsMessage<Exceptions::LimitExceeded>(HasSubstr(
                                           "set Preface: a value of more than 1073741824 bytes (limit 'value')")));
}

TEST(HeaderMetadata, IsReadOrRefusedWhereverTheFileIsCut) {
  const Bytes bytes = packCounting(kMetadata.size() + kDark.size() + 30) + fill(10) + kMetadata + kDark + fill(10);
  const uint64 firstSet = kPackSize + 30 + kPrimer.size();
  const std::vector<uint64> whole = {firstSet, firstSet + 40, firstSet + 80, firstSet + 80 + kDark.size()};
  TemporaryFile file(bytes);
  for (uint64 size = bytes.size(); size-- > 0;) {
    file.resize(size);
    const bool betweenKLVs = std::find(whole.begin(), whole.end(), size) != whole.end();
    const bool inFill = size >= whole.back() + 20;
    if (betweenKLVs || inFill) {
      EXPECT_NO_THROW(readFile(file)) << size;
    } else {
      EXPECT_THROW(readFile(file), Exceptions::ParseError) << size;
    }
  }
}

TEST(HeaderMetadata, IsReadOrRefusedWhateverOctetIsDamaged) {
  const Bytes bytes = packCounting(kMetadata.size() + kDark.size()) + fill(4) + kMetadata + kDark + kEssence;
  int read = 0;
  int refused = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    for (const uint8 octet : {0x00, 0x7f, 0x80, 0x84, 0xff}) {
      Bytes damaged = bytes;
      damaged[i] = octet;
      const TemporaryFile file(damaged);
      for (const auto& choice : {PartitionChoice::header(), PartitionChoice::footer(), PartitionChoice::number(1)}) {
        try {
          readFile(file, choice);
          ++read;
        } catch (const Exceptions::ParseError&) {
          ++refused;
        }
      }
    }
  }
  // Most octets are those of labels and values that may be anything.
  EXPECT_GT(read, 500);
  EXPECT_GT(refused, 500);
}

TEST(HeaderMetadata, IsThatOfTheChosenPartition) {
  PartitionPack header;
  header.headerByteCount = kMetadata.size();
  header.footerPartition = kPackSize + kMetadata.size() + kEssence.size();
  PartitionPack footer = header;
  footer.kind = PartitionKind::kFooter;
  footer.thisPartition = header.footerPartition;
  const Bytes footersSets = kPrimer + setWithUID(kPreface, 9);
  footer.headerByteCount = footersSets.size();
  const TemporaryFile file(partition(header) + kMetadata + kEssence + partition(footer) + footersSets);
  EXPECT_THAT(namesIn(*readFile(file)), kBothSets);
  EXPECT_THAT(namesIn(*readFile(file, PartitionChoice::footer())), ElementsAre("Preface"));
  EXPECT_THAT(namesIn(*readFile(file, PartitionChoice::number(1))), ElementsAre("Preface"));
}

TEST(HeaderMetadata, TellsThatAChosenPartitionHasNone) {
  PartitionPack footer;
  footer.kind = PartitionKind::kFooter;
  const TemporaryFile file(packCounting(0) + kMetadata + kEssence + partition(footer));
  EXPECT_THAT([&] { readFile(file, PartitionChoice::footer()); },
              ThrowsMessage<Exceptions::ParseError>(StrEq("at byte offset 304: the partition has no header metadata")));
  EXPECT_THAT([&] { readFile(file, PartitionChoice::number(2)); }, Throws<Exceptions::ParseError>());
}

TEST(HeaderMetadata, NamesAFileThatIsNotThere) {
  EXPECT_THAT([] { readHeaderMetadata("no-such-file.mxf", builtInDictionary()); },
              ThrowsMessage<Exceptions::IOError>(HasSubstr("no-such-file.mxf")));
}

/// Bytes that this process has read by system calls so far; none where the system does not count them.
std::optional<uint64> bytesRead() {
  std::ifstream counters("/proc/self/io");
  std::string name;
  uint64 count = 0;
  while (counters >> name >> count) {
    if (name == "rchar:") return count;
  }
  return std::nullopt;
}

class LargeFile : public testing::Test {
 protected:
  static constexpr uint64 kGiB = uint64{1} << 30;

  /// A file of 100 GiB: fill before and behind the metadata, essence, and a footer partition with metadata at the end.
  LargeFile() {
    PartitionPack header;
    header.footerPartition = 90 * kGiB;
    header.headerByteCount = kMetadata.size() + 30 * kGiB;
    place(0, partition(header) + klvHeader(KLV::fillKey(), 20 * kGiB - kPackSize - 25, 9));
    place(20 * kGiB, kMetadata + klvHeader(KLV::fillKey(), 30 * kGiB - kMetadata.size() - 25, 9));
    place(50 * kGiB, klvHeader(kPictureElement, 40 * kGiB - 25, 9));
    PartitionPack footer;
    footer.kind = PartitionKind::kFooter;
    footer.thisPartition = header.footerPartition;
    footer.footerPartition = header.footerPartition;
    place(90 * kGiB, partition(footer) + klvHeader(KLV::fillKey(), 10 * kGiB - kPackSize - 25 - kMetadata.size(), 9));
    place(100 * kGiB - kMetadata.size(), kMetadata);
  }

  void place(uint64 offset, const Bytes& bytes) { file_.writeAt(offset, bytes); }

  TemporaryFile file_;
};

TEST_F(LargeFile, IsReadWithoutReadingFillAndEssence) {
  const auto before = bytesRead();
  if (!before) GTEST_SKIP() << "this system does not tell how much is read";
  EXPECT_THAT(namesIn(*readFile(file_)), kBothSets);
  EXPECT_THAT(namesIn(*readFile(file_, PartitionChoice::footer())), kBothSets);
  EXPECT_THAT(namesIn(*readFile(file_, PartitionChoice::number(1))), kBothSets);
  EXPECT_LT(*bytesRead() - *before, 256u * 1024);
}

TEST_F(LargeFile, IsWalkedWithoutReadingFillAndEssence) {
  PartitionPack header;  // does not know the footer
  place(0, partition(header));
  const auto before = bytesRead();
  if (!before) GTEST_SKIP() << "this system does not tell how much is read";
  EXPECT_THAT(namesIn(*readFile(file_, PartitionChoice::footer())), kBothSets);
  EXPECT_LT(*bytesRead() - *before, 256u * 1024);
}

TEST(HeaderMetadataReader, ReadsEveryPartitionOfAFileInMemory) {
  const Path path = Path(VANTOR_TEST_DATA_DIR) / "gst-audio-ac3.mxf";
  std::ifstream stream(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(stream)), {});
  DataIO::Memory::MemoryFile file(Bytes(bytes.begin(), bytes.end()));
  for (const auto& choice : {PartitionChoice::header(), PartitionChoice::footer(), PartitionChoice::number(2)}) {
    const auto expected = namesIn(*readHeaderMetadata(path, builtInDictionary(), choice));
    EXPECT_GT(expected.size(), 10u);
    EXPECT_EQ(namesIn(*readHeaderMetadata(file, builtInDictionary(), choice)), expected);
  }
  const auto footer = findPartition(file, PartitionChoice::footer());
  EXPECT_EQ(namesIn(*readHeaderMetadata(file, builtInDictionary(), footer)),
            namesIn(*readHeaderMetadata(path, builtInDictionary(), PartitionChoice::footer())));
}

/// How many bytes are read of a file that arrives bit by bit.
uint64 bytesTaken(const Bytes& bytes) {
  DataIO::ReceivedBytes received(bytes);
  EXPECT_THAT(namesIn(*readHeaderMetadata(received, builtInDictionary())), kBothSets);
  return received.position();
}

TEST(ReceivedMetadata, IsReadUpToTheKeyBehindIt) {
  for (const uint64 runIn : {0, 1, 7, 65535}) {
    const Bytes start = Bytes(runIn, 0x41) + packCounting(kMetadata.size() + 120) + fill(30) + kMetadata + fill(100);
    EXPECT_EQ(bytesTaken(start + kEssence + kEssence), start.size() + 16);
    EXPECT_EQ(bytesTaken(start + zeros(100)), start.size() + 16);
    EXPECT_EQ(bytesTaken(start), start.size());
  }
}

TEST(ReceivedMetadata, MayFollowARunInThatLooksLikeItsEnd) {
  Bytes runIn;
  for (std::size_t size = 1; size < 11; ++size) {
    const Bytes key = keyBytes(KLV::partitionPackKey(PartitionKind::kHeader, PartitionStatus::kClosedComplete));
    runIn.insert(runIn.end(), key.begin(), key.begin() + static_cast<std::ptrdiff_t>(size));
  }
  EXPECT_THAT(namesIn(runIn + packCounting(0) + kMetadata), kBothSets);
}

TEST(ReceivedMetadata, IsRefusedWhereAFileWouldBe) {
  const Bytes sound = packCounting(kMetadata.size()) + kMetadata;
  for (std::size_t size = 0; size < sound.size(); ++size) {
    const Bytes cut(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
    std::optional<std::vector<std::string>> names;
    try {
      names = namesIn(*readFile(TemporaryFile(cut)));
    } catch (const Exceptions::ParseError&) {
    }
    DataIO::ReceivedBytes received(cut);
    if (names) {
      EXPECT_EQ(namesIn(*readHeaderMetadata(received, builtInDictionary())), *names) << size;
    } else {
      EXPECT_THROW(readHeaderMetadata(received, builtInDictionary()), Exceptions::ParseError) << size;
    }
  }
  for (const Bytes& bytes : {Bytes(65536, 0x41) + sound, partition({}) + kEssence, Bytes(100000, 0x06)}) {
    DataIO::ReceivedBytes received(bytes);
    EXPECT_THROW(readHeaderMetadata(received, builtInDictionary()), Exceptions::ParseError);
  }
}

TEST(ReceivedMetadata, EndsWithASetThatDoesNotArrive) {
  DataIO::ReceivedBytes received(packCounting(0) + kMetadata + klvHeader(kPreface, Limits().valueSize, 9) + zeros(10));
  EXPECT_THAT([&] { readHeaderMetadata(received, builtInDictionary()); },
              ThrowsMessage<Exceptions::ParseError>(HasSubstr("more bytes, found 10; 2 whole sets stand before it")));
  DataIO::ReceivedBytes tooLong(packCounting(0) + kMetadata + klvHeader(kPreface, Limits().valueSize + 1, 9));
  EXPECT_THAT([&] { readHeaderMetadata(tooLong, builtInDictionary()); },
              ThrowsMessage<Exceptions::LimitExceeded>(
                  HasSubstr(", set Preface: a value of more than 1073741824 bytes (limit 'value')")));
}

TEST(HeaderMetadataReader, ReadsAPartitionThatWasFoundBefore) {
  DataIO::File::FileDataSource file(VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf");
  const auto dictionary = builtInDictionary();
  const auto partitions = readStructure(file).partitions;
  ASSERT_GT(partitions.size(), 1u);
  for (std::size_t i = 0; i < partitions.size(); ++i) {
    if (partitions[i].pack.headerByteCount == 0) {
      EXPECT_THROW(readHeaderMetadata(file, dictionary, partitions[i]), Exceptions::ParseError);
    } else {
      const auto choice = PartitionChoice::number(static_cast<uint32>(i));
      EXPECT_EQ(readHeaderMetadata(file, dictionary, partitions[i])->entries().size(),
                readHeaderMetadata(file, dictionary, choice)->entries().size());
    }
  }
}

}  // namespace
}  // namespace Vantor::MXF
