#include "Core/KLV/Key.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <type_traits>
#include <unordered_set>

#include "Core/DataIO/BigEndian.h"
#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using Exceptions::InvalidFormat;
using testing::StrEq;
using testing::ThrowsMessage;

/// The key of the Preface set (ST 377-1).
constexpr uint8 kPreface[] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                              0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00};
const char16_t* const kDotted = u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00";
const char16_t* const kUrn = u"urn:smpte:ul:060e2b34.02530101.0d010101.01012f00";

Key changed(std::size_t octet, uint8 value) {
  std::array<uint8, Key::kSize> octets{};
  std::copy_n(kPreface, Key::kSize, octets.begin());
  octets[octet - 1] = value;
  return Key(octets);
}

TEST(Key, IsSixteenZeroOctetsByDefault) {
  EXPECT_EQ(Key().toString(), u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
  EXPECT_EQ(Key().serializedSize(), 16u);
}

TEST(Key, CopiesItsBytes) {
  uint8 bytes[Key::kSize];
  std::copy_n(kPreface, Key::kSize, bytes);
  const Key key(bytes);
  bytes[0] = 0xFF;
  EXPECT_TRUE(std::equal(kPreface, kPreface + Key::kSize, key.rawBuffer()));
}

TEST(Key, CountsItsOctetsFromOne) {
  const Key key(kPreface);
  EXPECT_EQ(key.octet(1), 0x06);
  EXPECT_EQ(key.octet(6), 0x53);
  EXPECT_EQ(key.octet(15), 0x2F);
  EXPECT_EQ(key.octet(16), 0x00);
}

TEST(Key, WritesEitherTextForm) {
  EXPECT_EQ(Key(kPreface).toString(), kDotted);
  EXPECT_EQ(Key(kPreface).toString(kDottedForm), kDotted);
  EXPECT_EQ(Key(kPreface).toString(kUrnForm), kUrn);
}

TEST(Key, ReadsEitherTextFormWhicheverIsNamed) {
  for (const auto form : {kDottedForm, kUrnForm}) {
    EXPECT_EQ(Key(wstring(kDotted), form), Key(kPreface));
    EXPECT_EQ(Key(wstring(kUrn), form), Key(kPreface));
    EXPECT_EQ(Key(wstring(u"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00"), form), Key(kPreface));
    EXPECT_EQ(Key(wstring(u"URN:SMPTE:UL:060E2B34.02530101.0D010101.01012F00"), form), Key(kPreface));
  }
}

TEST(Key, ReadsNulTerminatedText) {
  uint16 text[48] = {};
  std::copy_n(kDotted, 47, text);
  EXPECT_EQ(Key(text, kDottedForm), Key(kPreface));
}

TEST(Key, NamesTheTextThatIsNoKey) {
  EXPECT_THAT([] { Key(wstring(u"06.0E"), kDottedForm); },
              ThrowsMessage<InvalidFormat>(StrEq("'06.0E' is not the text of a KLV key")));
  EXPECT_THROW(Key(wstring(u"060E2B34025301010D01010101012F00"), kDottedForm), InvalidFormat);
  EXPECT_THROW(Key(wstring(u"urn:uuid:060e2b34-0253-0101-0d01-010101012f00"), kUrnForm), InvalidFormat);
  EXPECT_THROW(Key(wstring(), kDottedForm), InvalidFormat);
  EXPECT_THROW(Key(static_cast<const uint16*>(nullptr), kDottedForm), InvalidFormat);
}

TEST(Key, RefusesTextWithANulInside) {
  wstring text(kDotted);
  text.push_back(u'\0');
  EXPECT_THROW(Key(text, kDottedForm), InvalidFormat);
}

TEST(Key, MatchesKeysThatDifferOnlyInCodingAndVersion) {
  const Key key(kPreface);
  EXPECT_TRUE(key.matches(changed(6, 0x13)));
  EXPECT_TRUE(key.matches(changed(8, 0x05)));
  for (const std::size_t octet : {1, 2, 3, 4, 5, 7, 9, 10, 11, 12, 13, 14, 15, 16}) {
    EXPECT_FALSE(key.matches(changed(octet, 0xEE))) << octet;
  }
}

TEST(Key, HasZeroForCodingAndVersionWhenNormalised) {
  EXPECT_EQ(Key(kPreface).normalised().toString(), u"06.0E.2B.34.02.00.01.00.0D.01.01.01.01.01.2F.00");
}

TEST(Key, EqualsOnlyAKeyWithTheSameOctets) {
  const Key key(kPreface);
  EXPECT_TRUE(key == Key(kPreface));
  EXPECT_FALSE(key != Key(kPreface));
  for (std::size_t octet = 1; octet <= Key::kSize; ++octet) {
    EXPECT_FALSE(key == changed(octet, 0xEE)) << octet;
    EXPECT_TRUE(key != changed(octet, 0xEE)) << octet;
  }
}

TEST(Key, IsOrderedOctetByOctetAsUnsignedNumbers) {
  EXPECT_TRUE(Key(kPreface) < changed(16, 0x80));
  EXPECT_TRUE(changed(2, 0x0F) < changed(1, 0x07));
  EXPECT_FALSE(Key(kPreface) < Key(kPreface));
}

TEST(Key, HashesToFewerCollisionsThanAWeakHashWouldGive) {
  std::unordered_set<std::size_t> hashes;
  std::unordered_set<Key> keys;
  for (std::size_t octet = 9; octet <= Key::kSize; ++octet) {
    for (int value = 0; value < 256; ++value) {
      const Key key = changed(octet, static_cast<uint8>(value));
      keys.insert(key);
      hashes.insert(std::hash<Key>()(key));
    }
  }
  // Eight octets with 256 values each, of which one in each octet gives the unchanged key.
  EXPECT_EQ(keys.size(), 8u * 255 + 1);
  EXPECT_EQ(hashes.size(), keys.size());
}

TEST(Key, MeetsNoOtherInABucketBecauseAFileWantsItTo) {
  // Under the multiplicative hash that was here before, all of these were one number.
  constexpr uint64 kOdd = 0x9E3779B97F4A7C15;
  std::unordered_set<Key> keys;
  for (uint64 first = 1; first <= 4096; ++first) {
    uint8 octets[Key::kSize];
    DataIO::writeBigEndian<uint64>(octets, first);
    DataIO::writeBigEndian<uint64>(octets + 8, 0x1234 ^ first * kOdd);
    keys.insert(Key(octets));
  }
  std::size_t fullest = 0;
  for (std::size_t i = 0; i < keys.bucket_count(); ++i) fullest = std::max(fullest, keys.bucket_size(i));
  EXPECT_EQ(keys.size(), 4096u);
  EXPECT_LT(fullest, 32u);
}

TEST(Key, ChangesOneOctetCountedFromOne) {
  const Key key(kPreface);
  for (std::size_t octet = 1; octet <= Key::kSize; ++octet) EXPECT_EQ(key.withOctet(octet, 0xA5), changed(octet, 0xA5));
  EXPECT_EQ(key.withOctet(Key::kCodingOctet, 0x13).octet(6), 0x13);
  EXPECT_EQ(key.withOctet(Key::kVersionOctet, 0x02).octet(8), 0x02);
  EXPECT_EQ(key, Key(kPreface));
}

TEST(Key, IsReadFromASource) {
  DataIO::Memory::MemoryDataSource source(kPreface, sizeof kPreface);
  EXPECT_EQ(Key::read(source), Key(kPreface));
  EXPECT_THROW(Key::read(source), Exceptions::ParseError);
}

TEST(Key, NeedsNoHeapMemory) {
  static_assert(std::is_trivially_copyable_v<Key>);
  static_assert(sizeof(Key) == 16);
}

}  // namespace
}  // namespace Vantor::KLV
