#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

/// Key, length and items as they stand in a file.
Bytes klv(const KLV::Key& key, const Bytes& value, uint8 berOctets) {
  DataIO::Memory::MemoryDataSink sink;
  sink.write(key.rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(sink, value.size(), berOctets);
  sink.write(value.data(), value.size());
  return sink.take();
}

KLV::Key withBERLengths(const KLV::Key& key) {
  auto octets = hex(hexOf(key.rawBuffer(), KLV::Key::kSize));
  octets[5] = 0x13;
  return KLV::Key(octets.data());
}

class Serialization : public testing::Test {
 protected:
  PartitionMetadata partition_{testDictionary()};
};

TEST_F(Serialization, WritesWhatWasReadOctetForOctet) {
  partition_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  const auto items = Items()
                         .item(0x4003, "01")
                         .item(0x7f01, "ABCD")
                         .item(0x4002, "0041 0000 0000")
                         .instanceUID(1)
                         .item(0x8001, "09")
                         .item(0x4001, "00000001")
                         .item(0x5001, "0002")
                         .item(0x4001, "00000003")
                         .item(0x400b, "00000000 00000007")
                         .item(0x9999, "")
                         .item(0x5002, hexOf(uid(1)));
  for (const uint8 berOctets : {uint8{2}, uint8{4}, uint8{9}}) {
    const auto& set = readSet(partition_, "Thing", items, berOctets);
    EXPECT_EQ(hexOf(written(set, partition_)), hexOf(klv(keyOf("Thing"), items.bytes(), berOctets)));
  }
}

TEST_F(Serialization, WritesMixedBERLengthsOctetForOctet) {
  const auto key = withBERLengths(keyOf("Thing"));
  const auto items = Items(4)
                         .instanceUID(1)
                         .lengthOctets(9)
                         .item(0x4001, "00000001")
                         .lengthOctets(1)
                         .item(0x4003, "01")
                         .lengthOctets(3)
                         .item(0x7f01, "ABCD");
  const auto& set = readSet(partition_, key, items, 9);
  EXPECT_EQ(hexOf(written(set, partition_)), hexOf(klv(key, items.bytes(), 9)));
}

TEST_F(Serialization, CodesASetOtherwiseWhenAValueIsTooLongForTwoOctets) {
  auto& set = addSet(partition_, "Thing", 1);
  setValue(set, "Data", Types::DataStream(Bytes(0xffff, 0x11)));
  const auto shorter = written(set, partition_);
  EXPECT_EQ(hexOf(shorter).substr(0, 32), hexOf(keyOf("Thing").rawBuffer(), KLV::Key::kSize));

  setValue(set, "Data", Types::DataStream(Bytes(0x10000, 0x11)));
  const auto octets = written(set, partition_);
  const std::string start = hexOf(withBERLengths(keyOf("Thing")).rawBuffer(), KLV::Key::kSize) +
                            "83010019"  // 2 + 1 + 16 and 2 + 4 + 65536 octets
                            "3C0A"
                            "10" +
                            hexOf(uid(1)) +
                            "400E"
                            "83010000"
                            "11";
  EXPECT_EQ(hexOf(octets).substr(0, start.size()), start);
  EXPECT_EQ(octets.size(), 16u + 4 + 0x10019);

  const auto& again = readSet(partition_, withBERLengths(keyOf("Thing")), [&] {
    Items items(1);
    items.instanceUID(1).lengthOctets(4).item(0x400e, Bytes(0x10000, 0x11));
    return items;
  }());
  EXPECT_EQ(hexOf(written(again, partition_)), hexOf(octets));
}

TEST_F(Serialization, WritesASetThatWasReadWithAValueMadeLongerInTheOrderOfTheFile) {
  auto& set = readSet(partition_, "Thing", Items().item(0x400e, "01").item(0x4001, "00000001"));
  setValue(set, "Data", Types::DataStream(hex("0203")));
  setValue(set, "Flag", Types::Boolean(true));
  EXPECT_EQ(hexOf(written(set, partition_)),
            hexOf(klv(keyOf("Thing"), hex("400E 0002 0203  4001 0004 00000001  4003 0001 01"), 4)));
}

TEST_F(Serialization, PassesOverUnsetPropertiesAndWritesPresentOnesWithoutValue) {
  auto& set = addSet(partition_, "Thing", 1);
  property(set, "Child");
  property(set, "Numbers");
  property<CollectionElement>(set, "Needed").append(nullptr);
  EXPECT_EQ(hexOf(written(set, partition_)),
            hexOf(klv(keyOf("Thing"),
                      hex("3C0A 0010" + hexOf(uid(1)) + "4006 0000  400B 0000  400C 0008 00000000 00000002"), 4)));
}

TEST_F(Serialization, EntersTheTagsOfNewPropertiesIntoThePrimer) {
  auto& tags = partition_.partitionDictionary();
  tags.addPrimerEntry({0x8765, labelOf("Flag").key()});
  tags.addPrimerEntry({0x4001, darkSetKey()});
  auto& set = readSet(partition_, "Thing", Items());
  setValue(set, "Flag", Types::Boolean(true));
  setValue(set, "Dynamic", Types::UInt8(7));
  setValue(set, "Number", Types::UInt32(1));
  setValue(set, "Data", Types::DataStream());
  EXPECT_EQ(hexOf(written(set, partition_)),
            hexOf(klv(keyOf("Thing"), hex("FFFF 0004 00000001  8765 0001 01  400E 0000  FFFE 0001 07"), 4)));
  EXPECT_EQ(tags.find(Types::LocalTag(0xffff)), labelOf("Number")) << "the static tag means something else here";
  EXPECT_EQ(tags.find(Types::LocalTag(0xfffe)), labelOf("Dynamic"));
  EXPECT_EQ(tags.find(Types::LocalTag(0x400e)), labelOf("Data"));
  const auto entries = tags.primerEntries().size();
  written(set, partition_);
  EXPECT_EQ(tags.primerEntries().size(), entries) << "a second time needs no new ones";
}

TEST_F(Serialization, GivesNewPropertiesNoTagOfAnUnknownOne) {
  auto& read = readSet(partition_, "Thing", Items().item(0xffff, "AB"));
  read.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(0xfffe)));
  auto& set = readSet(partition_, "Thing", Items());
  setValue(set, "Dynamic", Types::UInt8(7));
  EXPECT_EQ(hexOf(written(set, partition_)), hexOf(klv(keyOf("Thing"), hex("FFFD 0001 07"), 4)));
  EXPECT_EQ(hexOf(written(read, partition_)), hexOf(klv(keyOf("Thing"), hex("FFFF 0001 AB  FFFE 0000"), 4)));
}

TEST_F(Serialization, WritesDarkParsedGroupsOctetForOctet) {
  const auto items = Items().item(0x1234, "AB").instanceUID(7);
  const auto& group = readSet(partition_, darkGroupKey(), items, 9);
  EXPECT_EQ(hexOf(written(group, partition_)), hexOf(klv(darkGroupKey(), items.bytes(), 9)));
  EXPECT_TRUE(partition_.partitionDictionary().primerEntries().empty());
}

std::string writtenDark(uint8 berOctets) {
  DataIO::Memory::MemoryDataSink sink;
  DarkMetadataSet(darkSetKey(), berOctets, KLV::Value(hex("0102"))).serialize(sink);
  return hexOf(sink.take()).substr(32);
}

TEST_F(Serialization, WritesDarkSetsOctetForOctet) {
  EXPECT_EQ(writtenDark(1), "020102");
  EXPECT_EQ(writtenDark(4), "830000020102");
  EXPECT_EQ(writtenDark(9), "8800000000000000020102");
}

TEST_F(Serialization, ChoosesTheLengthOfADarkSetThatTellsNoneThatThereIs) {
  EXPECT_EQ(writtenDark(0), "020102");
  EXPECT_EQ(writtenDark(10), "020102");
  EXPECT_EQ(writtenDark(255), "020102");
}

}  // namespace
}  // namespace Vantor
