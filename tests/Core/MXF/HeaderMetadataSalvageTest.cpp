#include "Core/MXF/HeaderMetadataSalvage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/ReceivedBytes.h"
#include "tests/Core/MXF/WholeFile.h"

namespace Vantor::MXF {
namespace {

using Kind = MetadataDamage::Kind;
using Names = std::vector<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StrEq;

const KLV::Key kUnknownSet = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.7F.77");
const KLV::Key kTimecode = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.14.00");
const KLV::Key kInstanceUID = keyOf("06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00");

const Bytes kPrimer = primer({{0x3c0a, kInstanceUID}});  // 46 bytes
const Bytes kFirst = setWithUID(kIdentification, 1);     // 40 bytes
const Bytes kSecond = setWithUID(kPreface, 2);
const Bytes kThird = setWithUID(kTimecode, 3);
const Bytes kEssence = klv(kPictureElement, Bytes(50, 0x55));
/// Where the primer pack stands, and what follows it.
constexpr uint64 kStart = kPackSize;
constexpr uint64 kSets = kStart + 46;

Bytes fileWith(const Bytes& metadata, std::optional<uint64> count = {}) {
  PartitionPack pack;
  pack.headerByteCount = count.value_or(metadata.size());
  return partition(pack) + metadata + kEssence;
}

Bytes octetsOf(const EntryView& entry) {
  if (entry.set == nullptr || entry.isDark()) return Bytes(entry.octets.begin(), entry.octets.end());
  return Bytes();
}

Names namesOf(const PartitionMetadata& metadata) {
  Names names;
  for (const auto& entry : metadata.entries()) names.push_back(EntryView(entry).name());
  return names;
}

/// "KIND OFFSET+SIZE SET".
Names placesOf(const SalvagedMetadata& salvaged) {
  Names places;
  for (const auto& damage : salvaged.missing) {
    places.push_back(nameOf(damage.kind) + (" " + std::to_string(damage.offset)) + "+" + std::to_string(damage.size) +
                     (damage.set.empty() ? "" : " " + damage.set));
  }
  return places;
}

std::string place(const char* kind, uint64 offset, uint64 size, const char* set = "") {
  return kind + (" " + std::to_string(offset)) + "+" + std::to_string(size) + (*set == 0 ? "" : " ") + set;
}

/// From memory and as they arrive: always the same.
SalvagedMetadata salvage(const Bytes& bytes, const Limits& limits = {}) {
  DataIO::Memory::MemoryFile file(bytes);
  auto salvaged = salvageHeaderMetadata(file, builtInDictionary(), PartitionChoice::header(), limits);
  DataIO::ReceivedBytes received(bytes, 999);
  const auto arrived = salvageHeaderMetadata(received, builtInDictionary(), limits);
  EXPECT_EQ(digestOf(*arrived.metadata), digestOf(*salvaged.metadata));
  EXPECT_EQ(placesOf(arrived), placesOf(salvaged));
  return salvaged;
}

DamagedMetadata damageIn(const Bytes& bytes) {
  DataIO::Memory::MemoryFile file(bytes);
  try {
    readHeaderMetadata(file, builtInDictionary());
  } catch (const DamagedMetadata& damage) {
    return damage;
  }
  throw std::logic_error("there is no damage");
}

TEST(DamagedMetadata, TellsHowManyWholeSetsStandBeforeTheDamage) {
  const Bytes dark = klv(kForeign, {1, 2, 3});
  const Bytes whole = kPrimer + kFirst + dark + kSecond + klvHeader(kTimecode, 1000);
  const auto damage = damageIn(fileWith(whole, 0));
  EXPECT_EQ(damage.wholeSets(), 3u);
  EXPECT_EQ(damage.offset(), kStart + whole.size() - 20);
  EXPECT_THAT(damage.what(),
              StrEq("at byte offset 277: expected 1000 bytes of set Timecode, found 70 to the end of the "
                    "file; 3 whole sets stand before it"));
}

TEST(DamagedMetadata, CountsOneSetAndNone) {
  const auto one = damageIn(fileWith(kPrimer + kFirst + klvHeader(kTimecode, 1000), 0));
  EXPECT_THAT(one.what(), HasSubstr("; 1 whole set stands before it"));
  const auto none = damageIn(fileWith(kPrimer + klvHeader(kTimecode, 1000), 0));
  EXPECT_THAT(none.what(), HasSubstr("; no whole set stands before it"));
  EXPECT_EQ(none.wholeSets(), 0u);
}

TEST(DamagedMetadata, AreThoseWithWrongItemsAndRowsToo) {
  Bytes items = kSecond;
  items[23] = 0x20;  // the length of the item
  EXPECT_THAT(
      damageIn(fileWith(kPrimer + kFirst + items)).what(),
      HasSubstr("set Preface: at byte offset 218: expected 32 bytes for the local set item with tag 3C.0A, found "
                "16; 1 whole set stands before it"));
  Bytes rows = kPrimer;
  rows[23] = 9;  // their number
  EXPECT_EQ(damageIn(fileWith(rows + kFirst)).offset(), kStart);
}

TEST(SalvagedMetadata, AreTheSameWithoutDamage) {
  const Bytes dark = klv(kForeign, {1, 2, 3});
  const Bytes sound[] = {fileWith(kPrimer + kFirst + kSecond),
                         fileWith(fill(9) + kPrimer + fill(30) + dark + kSecond + fill(70), 0),
                         fileWith(kPrimer + kFirst + kSecond + zeros(300)),
                         fileWith(kPrimer + kFirst + klvHeader(KLV::fillKey(), 9000), 0),
                         fileWith(kPrimer + kFirst, 46) + kSecond,
                         fileWith(kPrimer + klv(kUnknownSet, {1, 2, 3}) + kSecond)};
  for (const auto& bytes : sound) {
    DataIO::Memory::MemoryFile file(bytes);
    const auto whole = readHeaderMetadata(file, builtInDictionary());
    const auto end = file.position();
    const auto salvaged = salvage(bytes);
    EXPECT_EQ(digestOf(*salvaged.metadata), digestOf(*whole));
    EXPECT_THAT(placesOf(salvaged), IsEmpty());
    salvageHeaderMetadata(file, builtInDictionary());
    EXPECT_EQ(file.position(), end);
  }
}

TEST(SalvagedMetadata, EndWhereTheFileIsCut) {
  const Bytes dark = klv(kForeign, {1, 2, 3});
  const Bytes bytes = fileWith(kPrimer + kFirst + dark + kSecond + kThird);
  const std::vector<uint64> ends = {kSets, kSets + 40, kSets + 63, kSets + 103, kSets + 143};
  for (uint64 size = kSets; size < ends.back(); ++size) {
    const auto salvaged = salvage(slice(bytes, 0, size));
    const auto behind = std::upper_bound(ends.begin(), ends.end(), size);
    const auto whole = static_cast<std::size_t>(behind - ends.begin()) - 1;
    EXPECT_THAT(salvaged.metadata->entries(), SizeIs(whole)) << size;
    const uint64 start = *(behind - 1);
    if (start == size) {
      EXPECT_THAT(placesOf(salvaged), IsEmpty()) << size;
      continue;
    }
    ASSERT_THAT(salvaged.missing, SizeIs(1)) << size;
    EXPECT_EQ(salvaged.missing[0].kind, Kind::kCutOff) << size;
    EXPECT_EQ(salvaged.missing[0].offset, start);
    EXPECT_EQ(salvaged.missing[0].size, size - start);
  }
}

TEST(SalvagedMetadata, NameWhatIsCutOff) {
  const Bytes bytes = fileWith(kPrimer + kFirst + kSecond);
  const auto salvaged = salvage(slice(bytes, 0, kSets + 75));
  EXPECT_THAT(placesOf(salvaged), ElementsAre(place("cut-off", kSets + 40, 35, "Preface")));
  EXPECT_THAT(salvaged.missing[0].arguments, ElementsAre("15", "20"));
  EXPECT_EQ(describe(salvaged.missing[0]),
            "at byte offset 194: the file ends within set Preface: 15 of its 20 bytes are there");
  EXPECT_EQ(describe(salvage(slice(bytes, 0, kSets + 50)).missing[0]),
            "at byte offset 194: the file ends within a key or length");
}

TEST(SalvagedMetadata, LeaveOutASetThatItsItemsDoNotFill) {
  for (const uint8 length : {0x00, 0x0f, 0x11, 0xff}) {
    Bytes damaged = kSecond;
    damaged[23] = length;
    const auto salvaged = salvage(fileWith(kPrimer + kFirst + damaged + kThird));
    EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Identification", "Timecode"));
    EXPECT_THAT(placesOf(salvaged), ElementsAre(place("items", kSets + 40, 40, "Preface")));
    EXPECT_EQ(describe(salvaged.missing[0]), "at byte offset 194: the items of set Preface do not fill its 20 bytes");
  }
}

TEST(SalvagedMetadata, FindTheNextSetBehindAWrongLength) {
  for (const uint8 length : {0x01, 0x13, 0x15, 0x2f, 0x50, 0x7f}) {  // too short, too long, up to the essence
    Bytes damaged = kSecond;
    damaged[19] = length;
    const auto salvaged = salvage(fileWith(kPrimer + kFirst + damaged + kThird + kFirst + kThird));
    EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Identification", "Timecode", "Identification", "Timecode"));
    EXPECT_THAT(placesOf(salvaged), ElementsAre(place("items", kSets + 40, 40, "Preface"))) << int{length};
  }
}

TEST(SalvagedMetadata, FindTheNextSetBehindALengthBeyondTheFile) {
  Bytes damaged = kSecond;
  damaged[17] = 0x7f;
  const auto salvaged = salvage(fileWith(kPrimer + kFirst + damaged + kThird));
  EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Identification", "Timecode"));
  EXPECT_THAT(placesOf(salvaged), ElementsAre(place("length", kSets + 40, 40, "Preface")));
  EXPECT_EQ(describe(salvaged.missing[0]), "at byte offset 194: set Preface cannot have 8323092 bytes");
}

TEST(SalvagedMetadata, FindTheNextSetBehindALengthThatIsNone) {
  for (const uint8 octet : {0x80, 0x89, 0xff}) {
    Bytes damaged = kSecond;
    damaged[16] = octet;
    const auto salvaged = salvage(fileWith(kPrimer + damaged + kThird));
    EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Timecode"));
    EXPECT_THAT(placesOf(salvaged), ElementsAre(place("length", kSets, 40, "Preface")));
    EXPECT_EQ(describe(salvaged.missing[0]), "at byte offset 154: set Preface has no length");
  }
}

TEST(SalvagedMetadata, NameEachDamagedSet) {
  Bytes damaged = kSecond;
  damaged[19] = 0x15;
  Bytes other = kFirst;
  other[23] = 0x44;
  const auto salvaged = salvage(fileWith(kPrimer + damaged + other + kThird));
  EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Timecode"));
  EXPECT_THAT(placesOf(salvaged),
              ElementsAre(place("items", kSets, 40, "Preface"), place("items", kSets + 40, 40, "Identification")));
}

TEST(SalvagedMetadata, GoPastBytesThatAreNoKLV) {
  Bytes damaged = kFirst;
  damaged[19] = 0x15;
  const auto salvaged = salvage(fileWith(kPrimer + damaged + kSecond + Bytes(70, 0xee) + kThird + Bytes(9, 0xee)));
  EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Preface", "Timecode"));
  EXPECT_THAT(placesOf(salvaged), ElementsAre(place("items", kSets, 40, "Identification"),
                                              place("no-klv", kSets + 80, 70), place("no-klv", kSets + 190, 9)));
  EXPECT_EQ(describe(salvaged.missing[1]), "at byte offset 234: what stands there is no KLV of header metadata");
}

TEST(SalvagedMetadata, GoPastALostBlockOfZeros) {
  const Bytes lost = kPrimer + kFirst + zeros(512) + kThird;
  const auto salvaged = salvage(fileWith(lost));
  EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Identification", "Timecode"));
  EXPECT_THAT(placesOf(salvaged), ElementsAre(place("no-klv", kSets + 40, 512)));
  EXPECT_THAT(namesOf(*salvage(fileWith(lost, 0)).metadata), ElementsAre("Identification"));  // they end there
}

TEST(SalvagedMetadata, KeepDarkSetsBehindDamageWhereAKnownKeyFollows) {
  Bytes damaged = kFirst;
  damaged[23] = 0x44;
  const Bytes dark = klv(kForeign, {1, 2, 3});
  const auto salvaged = salvage(fileWith(kPrimer + damaged + dark + kThird + dark));
  EXPECT_THAT(namesOf(*salvaged.metadata), SizeIs(3));
  EXPECT_EQ(octetsOf(EntryView(salvaged.metadata->entries()[0])), (Bytes{1, 2, 3}));
  EXPECT_THAT(placesOf(salvaged), ElementsAre(place("items", kSets, 40, "Identification")));
  const auto unclear =
      salvage(fileWith(kPrimer + damaged + kThird +
                       klv(keyOf("80.53.08.00.36.21.08.04.B3.B3.98.A5.1C.90.11.00"), {1, 2, 3}) + Bytes(5, 7)));
  EXPECT_THAT(namesOf(*unclear.metadata), ElementsAre("Timecode"));
}

TEST(SalvagedMetadata, KeepSetsOfUnknownKeys) {
  Bytes damaged = kFirst;
  damaged[19] = 0x15;
  const auto salvaged = salvage(fileWith(kPrimer + damaged + setWithUID(kUnknownSet, 7) + kThird));
  EXPECT_THAT(salvaged.metadata->entries(), SizeIs(2));
  EXPECT_NE(salvaged.metadata->sets()[0]->instanceUID(), nullptr);
}

TEST(SalvagedMetadata, HaveStaticTagsWithoutAPrimerPack) {
  const Bytes sets = klv(kPreface, item(0x3c0a, Bytes(16, 2)) + item(0x8001, {1, 2})) + kThird;
  Bytes rows = primer({{0x3c0a, kInstanceUID}, {0x8001, kInstanceUID}});
  const auto size = rows.size();
  rows[23] = 9;
  const auto damaged = salvage(fileWith(rows + sets));
  EXPECT_THAT(placesOf(damaged), ElementsAre(place("primer-pack", kStart, size)));
  EXPECT_EQ(describe(damaged.missing[0]),
            "at byte offset 108: the rows of the primer pack do not fill its 44 bytes; without them, dynamic tags mean "
            "nothing");
  const auto missing = salvage(fileWith(sets));
  EXPECT_THAT(placesOf(missing), ElementsAre(place("no-primer-pack", kStart, 0)));
  const auto lost = salvage(fileWith(zeros(64) + sets));
  EXPECT_THAT(placesOf(lost), ElementsAre(place("no-primer-pack", kStart, 64)));
  for (const auto* salvaged : {&damaged, &missing, &lost}) {
    EXPECT_THAT(namesOf(*salvaged->metadata), ElementsAre("Preface", "Timecode"));
    EXPECT_EQ(*salvaged->metadata->sets()[0]->instanceUID(), Types::UUID(Bytes(16, 2).data()));
    EXPECT_THAT(salvaged->metadata->partitionDictionary().primerEntries(), IsEmpty());
  }
}

TEST(SalvagedMetadata, FindALatePrimerPack) {
  const auto salvaged = salvage(fileWith(Bytes(33, 0x99) + kPrimer + kFirst));
  EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Identification"));
  EXPECT_THAT(placesOf(salvaged), ElementsAre(place("no-klv", kStart, 33)));
  EXPECT_THAT(salvaged.metadata->partitionDictionary().primerEntries(), SizeIs(1));
}

TEST(SalvagedMetadata, AreRefusedWhereThereAreNone) {
  PartitionPack pack;
  const Bytes none[] = {partition(pack) + kFirst, partition(pack) + fill(9) + kEssence, fileWith(Bytes(), 100),
                        fileWith(Bytes(60, 0x99)), slice(fileWith(kPrimer), 0, kStart)};
  for (const auto& bytes : none) {
    DataIO::Memory::MemoryFile file(bytes);
    EXPECT_THROW(salvageHeaderMetadata(file, builtInDictionary()), Exceptions::ParseError);
  }
  EXPECT_THAT(salvage(fileWith(kPrimer + klvHeader(kPreface, 9999), 0)).metadata->entries(), IsEmpty());
}

TEST(SalvagedMetadata, EndAtEssence) {
  for (const char* key : {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.04.00",     // body partition pack
                          "06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00",     // index table segment
                          "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.11.01.00",     // random index pack
                          "06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.00",     // picture element
                          "06.0E.2B.34.02.05.01.01.0D.01.03.01.04.01.01.00"}) {  // system item
    Bytes damaged = kFirst;
    damaged[17] = 0x7f;
    const Bytes bytes = fileWith(kPrimer + damaged + Bytes(7, 0x12) + klv(keyOf(key), Bytes(30, 0x11)) + kThird, 0);
    const auto salvaged = salvage(bytes);
    EXPECT_THAT(namesOf(*salvaged.metadata), IsEmpty());
    EXPECT_THAT(placesOf(salvaged), ElementsAre(place("length", kSets, 47, "Identification"))) << key;
  }
}

TEST(SalvagedMetadata, AreNotSearchedForInValues) {
  // As class definitions have them: keys of sets, with what may be a length behind.
  const Bytes keys = item(0x0009, keyBytes(kTimecode)) + item(0x0008, keyBytes(kPreface)) + item(0x0001, Bytes(9, 0));
  const Bytes set = klv(kUnknownSet, item(0x3c0a, Bytes(16, 3)) + keys);
  const Bytes bytes = fileWith(kPrimer + kFirst + set);
  for (std::size_t size = kSets + 41; size < kSets + 40 + set.size(); ++size) {
    const auto salvaged = salvage(slice(bytes, 0, size));
    EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Identification")) << size;
    EXPECT_THAT(placesOf(salvaged), ElementsAre(place("cut-off", kSets + 40, size - kSets - 40))) << size;
  }
}

TEST(SalvagedMetadata, AreNotSearchedForInLabels) {
  // An essence container's label has octets of an essence element's key.
  const Bytes labels = item(0x3b0a, bigEndian(uint32{1}) + bigEndian(uint32{16}) +
                                        keyBytes(keyOf("06.0E.2B.34.04.01.01.01.0D.01.03.01.02.04.60.01")));
  Bytes damaged = klv(kPreface, labels + item(0x3c0a, Bytes(16, 3)));
  damaged[17] = 0x7f;
  const auto salvaged = salvage(fileWith(kPrimer + damaged + kThird));
  EXPECT_THAT(namesOf(*salvaged.metadata), ElementsAre("Timecode"));
}

TEST(SalvagedMetadata, KeepTheLimits) {
  Bytes damaged = kFirst;
  damaged[23] = 0x44;
  const Bytes bytes = fileWith(kPrimer + damaged + kSecond + kThird);
  const auto refused = [&](uint64 Limits::*limit, uint64 value) {
    Limits limits;
    limits.*limit = value;
    DataIO::Memory::MemoryFile file(bytes);
    EXPECT_THROW(salvageHeaderMetadata(file, builtInDictionary(), PartitionChoice::header(), limits),
                 Exceptions::LimitExceeded);
  };
  refused(&Limits::sets, 1);
  refused(&Limits::properties, 1);
  refused(&Limits::memory, 100);
}

TEST(SalvagedMetadata, LeaveOutValuesBeyondTheLimit) {
  Limits limits;
  limits.valueSize = 30;
  const Bytes longSet = klv(kPreface, item(0x3c0a, Bytes(16, 2)) + item(0x3b03, Bytes(100, 1)));
  for (const bool isCareful : {false, true}) {
    Bytes before = kFirst;
    if (isCareful) before[23] = 0x44;
    const auto salvaged = salvage(fileWith(kPrimer + before + longSet + kThird), limits);
    EXPECT_EQ(namesOf(*salvaged.metadata).back(), "Timecode");
    EXPECT_EQ(placesOf(salvaged).back(), place("too-long", kSets + 40, longSet.size(), "Preface"));
    EXPECT_EQ(describe(salvaged.missing.back()),
              "at byte offset 194: set Preface has 124 bytes, more than the limit 'value' allows");
  }
}

TEST(SalvagedMetadata, EndBehindAThousandDamagedPlaces) {
  Bytes damaged = kFirst;
  damaged[23] = 0x44;
  Bytes metadata = kPrimer;
  for (int i = 0; i < 1100; ++i) metadata.insert(metadata.end(), damaged.begin(), damaged.end());
  const auto salvaged = salvage(fileWith(metadata + kThird));
  EXPECT_THAT(salvaged.missing, SizeIs(1001));
  EXPECT_EQ(placesOf(salvaged).back(), place("search-ended", kSets + 1000 * 40, 0));
  EXPECT_THAT(salvaged.metadata->entries(), IsEmpty());
}

/// "NAME OCTET", by an octet of its InstanceUID.
Names identitiesIn(const PartitionMetadata& metadata) {
  Names identities;
  for (const auto* set : metadata.sets()) {
    const auto* uid = set->instanceUID();
    identities.push_back(set->name() + " " + (uid == nullptr ? "" : std::to_string(uid->rawBuffer()[7])));
  }
  return identities;
}

TEST(SalvagedMetadata, AreNeverInventedWhateverOctetIsDamaged) {
  const Bytes bytes = fileWith(kPrimer + kFirst + fill(5) + kSecond + kThird + kFirst);
  const Names all = identitiesIn(*salvage(bytes).metadata);
  std::size_t found = 0, tried = 0;
  for (uint64 i = kSets; i < bytes.size() - kEssence.size(); ++i) {
    for (const uint8 octet : {0x00, 0x06, 0x14, 0x7f, 0x80, 0x84, 0xff}) {
      Bytes damaged = bytes;
      damaged[static_cast<std::size_t>(i)] = octet;
      Names identities = identitiesIn(*salvage(damaged).metadata);
      ++tried;
      std::size_t unknown = 0, known = 0;
      for (const auto& identity : identities) {
        const bool isKnown = std::find(all.begin(), all.end(), identity) != all.end();
        ++(isKnown ? known : unknown);
      }
      EXPECT_LE(unknown, 1u) << i << " " << int{octet};  // the one that was damaged
      if (known + 1 >= all.size()) ++found;
    }
  }
  // A damaged key or length of fill may look like the end.
  EXPECT_GT(100 * found, 97 * tried);
}

/// Counts how often it is read.
class CountingFile : public DataIO::Memory::MemoryFile {
 public:
  using MemoryFile::MemoryFile;
  uint64 reads() const { return reads_; }

 protected:
  void readAt(uint64 offset, uint8* to, std::size_t size) override {
    ++reads_;
    MemoryFile::readAt(offset, to, size);
  }

 private:
  uint64 reads_ = 0;
};

/// Keys a few bytes apart, each of a set that would take all of the rest, whose items all lead to the same end.
Bytes manySetsWithinEachOther(std::size_t size) {
  Bytes bytes;
  while (bytes.size() < size) {
    const Bytes set = klvHeader(kUnknownSet, size - bytes.size() - 21, 4) + item(0x0001, Bytes(3, 7)) + Bytes{0, 1, 0};
    bytes.insert(bytes.end(), set.begin(), set.end());
    bytes.insert(bytes.end(), {20});  // the length of an item with the next key and length
  }
  return bytes;
}

TEST(SalvagedMetadata, TakeTimeInProportion) {
  Bytes damaged = kFirst;
  damaged[17] = 0x7f;
  const auto readsOf = [&](std::size_t size) {
    CountingFile file(fileWith(kPrimer + damaged + manySetsWithinEachOther(size), 0));
    salvageHeaderMetadata(file, builtInDictionary());
    return file.reads();
  };
  const auto once = readsOf(200'000);
  EXPECT_LT(readsOf(800'000), 5 * once);
  EXPECT_LT(once, 500'000u);
}

TEST(SalvagedMetadata, AreSearchedForInALargeFileOnlyNearby) {
  TemporaryFile file(fileWith(kPrimer + klvHeader(kPreface, uint64{90} << 30, 9), 0));
  ASSERT_TRUE(file.growTo(uint64{80} << 30));
  const auto salvaged = salvageHeaderMetadata(file.path(), builtInDictionary());
  ASSERT_THAT(salvaged.missing, SizeIs(1));
  EXPECT_EQ(salvaged.missing[0].kind, Kind::kLength);  // the essence ends the metadata
  TemporaryFile other(slice(fileWith(kPrimer + klvHeader(kPreface, uint64{90} << 30, 9), 0), 0, kSets + 25));
  ASSERT_TRUE(other.growTo(uint64{80} << 30));
  const auto lost = salvageHeaderMetadata(other.path(), builtInDictionary());
  ASSERT_THAT(lost.missing, SizeIs(2));
  EXPECT_EQ(lost.missing[1].kind, Kind::kSearchEnded);
  EXPECT_EQ(lost.missing[0].size, (uint64{1} << 26) + 1);
}

}  // namespace
}  // namespace Vantor::MXF
