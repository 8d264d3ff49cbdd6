#include "Core/Metadata/PartitionDigest.h"

#include <gtest/gtest.h>

#include "Core/DataIO/Crc64.h"
#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

Items thingItems() { return Items().instanceUID(1).item(0x4001, "00000102").item(0x9abc, "55"); }

/// A partition with a primer row, a known set, a dark group and a dark set.
struct Sample {
  explicit Sample(SharedPtr<const MetaMetadata::Dictionary> dictionary = testDictionary(),
                  const Items& items = thingItems())
      : partition(std::move(dictionary)) {
    partition.partitionDictionary().addPrimerEntry({0x8001, darkSetKey()});
    readSet(partition, keyOf("Thing"), items);
    readSet(partition, darkGroupKey(), Items().instanceUID(2));
    partition.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(darkSetKey(), 4, KLV::Value(hex("0102"))));
  }
  uint64 digest() const { return digestOf(partition); }

  PartitionMetadata partition;
};

uint64 checkOf(const std::string& digits) {
  const Bytes octets = hex(digits);
  DataIO::Crc64 check;
  check.write(octets.data(), octets.size());
  return check.value();
}

std::string digitsOf(const KLV::Key& key) { return hexOf(key.rawBuffer(), KLV::Key::kSize); }

TEST(PartitionDigest, IsTheCheckOfEveryKLVAndThenOfThePrimersRows) {
  EXPECT_EQ(Sample().digest(), checkOf(digitsOf(keyOf("Thing")) + "83000021" + "3C0A0010" + hexOf(uid(1)) +
                                       "4001000400000102" + "9ABC000155" + digitsOf(darkGroupKey()) + "83000014" +
                                       "3C0A0010" + hexOf(uid(2)) + digitsOf(darkSetKey()) + "830000020102" +
                                       "00000001" + "00000012" + "8001" + digitsOf(darkSetKey())));
}

TEST(PartitionDigest, IsTheSameWhateverDictionaryTheSetsAreReadWith) {
  EXPECT_EQ(Sample(MetaMetadata::DictionaryBuilder().build()).digest(), Sample().digest());
}

TEST(PartitionDigest, ChangesWithAnyValueAndWithAnyRowOfThePrimer) {
  Sample edited;
  setValue(*edited.partition.sets().front(), "Number", Types::UInt32(259));
  EXPECT_NE(edited.digest(), Sample().digest());

  Sample extended;
  extended.partition.partitionDictionary().addPrimerEntry({0x8002, darkSetKey()});
  EXPECT_NE(extended.digest(), Sample().digest());
}

TEST(PartitionDigest, OnlyReadsThePartition) {
  Sample sample;
  setValue(*sample.partition.sets().front(), "Dynamic", Types::UInt8(1));
  const auto rows = sample.partition.partitionDictionary().primerEntries().size();
  const auto digest = sample.digest();
  EXPECT_EQ(sample.digest(), digest);
  EXPECT_EQ(sample.partition.partitionDictionary().primerEntries().size(), rows);
}

}  // namespace
}  // namespace Vantor
