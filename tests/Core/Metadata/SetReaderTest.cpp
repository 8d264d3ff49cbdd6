#include "Core/Metadata/SetReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::SizeIs;

std::vector<const Element*> invalidOf(const MetadataSet& set) {
  std::vector<const Element*> elements;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) elements.push_back(&*at);
  return elements;
}

/// What an unknown property keeps: its tag and its octets. Anything else gives "not unknown".
std::string unknownText(const Element& element) {
  const auto* attribute = dynamic_cast<const MetaMetadata::UnknownAttribute*>(&element.metaAttribute());
  const auto* simple = dynamic_cast<const SimpleElement*>(&element);
  if (attribute == nullptr || simple == nullptr || simple->value() == nullptr) return "not unknown";
  if (simple->value()->identifier() != Types::Identifiers::kUnknown) return "not unknown";
  return hexOf(attribute->localTag().rawBuffer(), 2) + " " +
         hexOf(simple->value()->rawBuffer(), simple->value()->encodedSize());
}

class SetReaderTest : public testing::Test {
 protected:
  MetadataSet& read(const Items& items) { return readSet(partition_, "Thing", items); }

  PartitionMetadata partition_{testDictionary()};
};

TEST_F(SetReaderTest, ReadsEveryKindOfProperty) {
  MetadataSet& set = read(Items()
                              .instanceUID(1)
                              .item(0x4001, "00000102")
                              .item(0x4006, hexOf(uid(2)))
                              .item(0x4007, "00000002 00000010" + hexOf(uid(3)) + hexOf(uid(4)))
                              .item(0x400b, "00000002 00000002 0001 FFFF"));
  EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
  EXPECT_EQ(*set.instanceUID(), uid(1));
  EXPECT_TRUE(property<SimpleElement>(set, "Number").value()->equals(Types::UInt32(258)));
  EXPECT_TRUE(property<ReferenceElement>(set, "Child").value()->equals(Types::StrongReference(uid(2))));
  const auto& children = property<ReferenceBatchElement>(set, "Children");
  ASSERT_EQ(children.size(), 2u);
  EXPECT_TRUE(children.value()->at(1).equals(Types::StrongReference(uid(4))));
  const auto& numbers = property<ArrayElement>(set, "Numbers");
  ASSERT_EQ(numbers.size(), 2u);
  EXPECT_TRUE(numbers.value()->at(1).equals(Types::UInt16(0xffff)));
}

TEST_F(SetReaderTest, KeepsTagAndLengthOctetsOfEachItem) {
  KLV::Key key = keyOf("Thing");
  auto octets = hex(hexOf(key.rawBuffer(), KLV::Key::kSize));
  octets[5] = 0x13;
  MetadataSet& set = readSet(partition_, KLV::Key(octets.data()),
                             Items(1).item(0x4001, "00000102").lengthOctets(9).item(0x4003, "01"));
  EXPECT_EQ(property(set, "Number").localTag(), 0x4001);
  EXPECT_EQ(property(set, "Number").lengthOctets(), 1);
  EXPECT_EQ(property(set, "Flag").lengthOctets(), 9);
}

struct Undecodable {
  const char* name;
  uint16 tag;
  const char* octets;
};

class UndecodableValue : public testing::TestWithParam<Undecodable> {};

TEST_P(UndecodableValue, IsKeptAsUnknownUnderItsTag) {
  PartitionMetadata partition(testDictionary());
  const auto& [name, tag, octets] = GetParam();
  const MetadataSet& set = readSet(partition, "Thing", Items().item(tag, octets));
  EXPECT_EQ(set.begin(), set.end());
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  const Bytes tagOctets = {static_cast<uint8>(tag >> 8), static_cast<uint8>(tag)};
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), hexOf(tagOctets) + " " + hexOf(hex(octets)));
  EXPECT_EQ(invalidOf(set)[0]->localTag(), tag);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachKind, UndecodableValue,
    testing::Values(Undecodable{"NumberOfThreeOctets", 0x4001, "000001"}, Undecodable{"NumberOfNoOctets", 0x4001, ""},
                    Undecodable{"Utf16OfThreeOctets", 0x4002, "0041 00"},
                    Undecodable{"HighSurrogateAlone", 0x4002, "0041 D800 0042"},
                    Undecodable{"LowSurrogateAlone", 0x4002, "DC00"},
                    Undecodable{"Utf16AfterANul", 0x4002, "0041 0000 0042"}, Undecodable{"BooleanOfTwo", 0x4003, "02"},
                    Undecodable{"BooleanOf255", 0x4003, "FF"},
                    Undecodable{"ProductVersionOfNineOctets", 0x4004, "0001 0002 0003 0004 05"},
                    Undecodable{"UuidOf15Octets", 0x3c0a, "00 01020304 05060708 090A0B0C 0D0E"},
                    Undecodable{"ReferenceOf15Octets", 0x4006, "00 01020304 05060708 090A0B0C 0D0E"},
                    Undecodable{"ArrayWithoutHeader", 0x400b, "00000001"},
                    Undecodable{"ArrayThatCountsTooMany", 0x400b, "00000003 00000002 0001 0002"},
                    Undecodable{"ArrayThatCountsTooFew", 0x400b, "00000001 00000002 0001 0002"},
                    Undecodable{"ArrayOfItemsOfAnotherSize", 0x400b, "00000001 00000004 00000001"},
                    Undecodable{"ArrayOfItemsOfNoOctets", 0x400d, "FFFFFFFF 00000000"},
                    Undecodable{"ArrayWhoseSizeOverflows32Bits", 0x400b, "80000001 00000002 0001"},
                    Undecodable{"ReferencesOf15Octets", 0x4007, "00000001 0000000F 00 01020304 05060708 090A0B0C 0D0E"},
                    Undecodable{"ArrayOfTextsThatAreNone", 0x400d, "00000001 00000002 D800"},
                    Undecodable{"AsciiAbove7F", 0x400f, "41 80"}, Undecodable{"AsciiAfterANul", 0x400f, "41 00 42"},
                    Undecodable{"Utf8CutShort", 0x4010, "41 C3"}, Undecodable{"Utf8Overlong", 0x4010, "C080"},
                    Undecodable{"Utf8OfASurrogate", 0x4010, "EDA080"},
                    Undecodable{"Utf8AfterANul", 0x4010, "41 00 42"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(SetReaderTest, KeepsASecondItemOfAPropertyAsUnknown) {
  MetadataSet& set = read(Items().item(0x4001, "00000001").item(0x4001, "00000002").item(0x4001, "03"));
  EXPECT_TRUE(property<SimpleElement>(set, "Number").value()->equals(Types::UInt32(1)));
  ASSERT_THAT(invalidOf(set), SizeIs(2));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "4001 00000002");
  EXPECT_EQ(unknownText(*invalidOf(set)[1]), "4001 03");
}

TEST_F(SetReaderTest, TakesALaterItemWhereAnEarlierOneDoesNotDecode) {
  MetadataSet& set = read(Items().item(0x4001, "03").item(0x4001, "00000002"));
  EXPECT_TRUE(property<SimpleElement>(set, "Number").value()->equals(Types::UInt32(2)));
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "4001 03");
}

TEST_F(SetReaderTest, ReadsASecondItemUnderAnotherTagAsASecondOne) {
  partition_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Number").key()});
  MetadataSet& set = read(Items().item(0x8001, "00000001").item(0x4001, "00000002"));
  EXPECT_TRUE(property<SimpleElement>(set, "Number").value()->equals(Types::UInt32(1)));
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "4001 00000002");
}

TEST_F(SetReaderTest, ReadsASimplePropertyOfAnotherSetAsMisplaced) {
  const MetadataSet& set = read(Items().item(0x5001, "0102"));
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  const Element& element = *invalidOf(set)[0];
  ASSERT_NE(dynamic_cast<const MetaMetadata::MisplacedAttribute*>(&element.metaAttribute()), nullptr);
  EXPECT_EQ(element.metaAttribute().metaElement(), &definitionOf("Foreign"));
  EXPECT_TRUE(element.wireValue()->equals(Types::UInt16(258)));
}

TEST_F(SetReaderTest, ReadsReferencesAndCollectionsOfAnotherSetAsMisplaced) {
  const MetadataSet& set = read(Items().item(0x5002, hexOf(uid(1))).item(0x5003, "00000001 00000002 0001"));
  ASSERT_THAT(invalidOf(set), SizeIs(2));
  EXPECT_EQ(invalidOf(set)[0]->metaAttribute().metaElement(), &definitionOf("ForeignChild"));
  EXPECT_TRUE(
      dynamic_cast<const ReferenceElement&>(*invalidOf(set)[0]).value()->equals(Types::StrongReference(uid(1))));
  EXPECT_EQ(invalidOf(set)[1]->metaAttribute().metaElement(), &definitionOf("ForeignNumbers"));
  EXPECT_TRUE(dynamic_cast<const ArrayElement&>(*invalidOf(set)[1]).value()->at(0).equals(Types::UInt16(1)));
}

TEST_F(SetReaderTest, KeepsMisplacedValuesThatDoNotDecodeAsUnknown) {
  const MetadataSet& set = read(Items().item(0x5001, "01").item(0x5002, "01").item(0x5003, "00000002 00000002 0001"));
  ASSERT_THAT(invalidOf(set), SizeIs(3));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "5001 01");
  EXPECT_EQ(unknownText(*invalidOf(set)[1]), "5002 01");
  EXPECT_EQ(unknownText(*invalidOf(set)[2]), "5003 00000002000000020001");
}

TEST_F(SetReaderTest, KeepsTwoMisplacedItemsOfAProperty) {
  const MetadataSet& set = read(Items().item(0x5001, "0001").item(0x5001, "0002"));
  ASSERT_THAT(invalidOf(set), SizeIs(2));
  EXPECT_TRUE(invalidOf(set)[0]->wireValue()->equals(Types::UInt16(1)));
  EXPECT_TRUE(invalidOf(set)[1]->wireValue()->equals(Types::UInt16(2)));
}

TEST_F(SetReaderTest, KeepsAStaticTagThatTheDictionaryDoesNotKnow) {
  const MetadataSet& set = read(Items().item(0x7f01, "ABCD"));
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "7F01 ABCD");
}

TEST_F(SetReaderTest, ReadsADynamicTagAsThePrimerNamesIt) {
  partition_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  partition_.partitionDictionary().addPrimerEntry({0x8002, labelOf("ForeignDynamic").key()});
  MetadataSet& set = read(Items().item(0x8001, "07").item(0x8002, "08"));
  EXPECT_TRUE(property<SimpleElement>(set, "Dynamic").value()->equals(Types::UInt8(7)));
  EXPECT_EQ(property(set, "Dynamic").localTag(), 0x8001);
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  EXPECT_EQ(invalidOf(set)[0]->metaAttribute().metaElement(), &definitionOf("ForeignDynamic"));
}

TEST_F(SetReaderTest, KeepsADynamicTagWhoseLabelTheDictionaryDoesNotKnow) {
  partition_.partitionDictionary().addPrimerEntry({0x8001, darkSetKey()});
  const MetadataSet& set = read(Items().item(0x8001, "07"));
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "8001 07");
}

TEST_F(SetReaderTest, KeepsADynamicTagThatThePrimerDoesNotList) {
  const MetadataSet& set = read(Items().item(0x8001, ""));
  ASSERT_THAT(invalidOf(set), SizeIs(1));
  EXPECT_EQ(unknownText(*invalidOf(set)[0]), "8001 ");
}

TEST_F(SetReaderTest, BelievesThePrimerRatherThanAStaticTag) {
  partition_.partitionDictionary().addPrimerEntry({0x4003, labelOf("Number").key()});
  MetadataSet& set = read(Items().item(0x4003, "00000005"));
  EXPECT_TRUE(property<SimpleElement>(set, "Number").value()->equals(Types::UInt32(5)));
}

TEST_F(SetReaderTest, LooksUpALabelOfAnotherVersion) {
  auto octets = hex(hexOf(labelOf("Dynamic").rawBuffer(), KLV::Key::kSize));
  octets[7] = 0x0e;
  partition_.partitionDictionary().addPrimerEntry({0x8001, KLV::Key(octets.data())});
  MetadataSet& set = read(Items().item(0x8001, "07"));
  EXPECT_TRUE(property<SimpleElement>(set, "Dynamic").value()->equals(Types::UInt8(7)));
}

}  // namespace
}  // namespace Vantor
