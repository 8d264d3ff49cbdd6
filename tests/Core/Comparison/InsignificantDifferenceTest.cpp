#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Core/Comparison/ComparisonFixture.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using InsignificantDifferences = ThingComparison;

TEST_F(InsignificantDifferences, CountTrailingNULsOfEachString) {
  const auto& left =
      readSet(left_, "Thing", Items().item(0x4002, "0041 0000").item(0x400f, "41").item(0x4010, "42 00"));
  const auto& right =
      readSet(right_, "Thing", Items().item(0x4002, "0041").item(0x400f, "41 0000").item(0x4010, "42 00"));
  ASSERT_EQ(left.invalidBegin(), left.invalidEnd());
  ASSERT_EQ(right.invalidBegin(), right.invalidEnd());
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("trailing NULs of strings 2"));
}

TEST_F(InsignificantDifferences, CountTrailingNULsOfItemsAlsoWhereTheyChangeTheItemSize) {
  readSet(left_, "Thing", Items().item(0x400d, "00000002 00000004 0041 0000 0042 0000"));
  readSet(right_, "Thing", Items().item(0x400d, "00000002 00000002 0041 0042"));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("trailing NULs of strings 2"));
}

TEST_F(InsignificantDifferences, CountLengthFieldsOfSets) {
  leftThing_->setBerLength(9);
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("BER octet counts 1"));
}

TEST_F(InsignificantDifferences, CountLengthFieldsOfItems) {
  auto octets = hex(hexOf(keyOf("Thing").rawBuffer(), KLV::Key::kSize));
  octets[5] = 0x13;
  const KLV::Key key(octets.data());
  readSet(
      left_, key,
      Items(4).item(0x4001, "00000001").lengthOctets(1).item(0x4003, "01").lengthOctets(9).item(0x4005, hexOf(uid(5))));
  readSet(right_, key, Items(1).item(0x4001, "00000001").item(0x4003, "01").item(0x4005, hexOf(uid(5))));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("BER octet counts 2"));
}

TEST_F(InsignificantDifferences, CountTheFewestSetsThatWouldHaveToMove) {
  // left: 1 2 3 4 5, right: 1 2 5 3 4
  for (const uint32 number : {3u, 4u, 5u}) {
    refer(*leftThing_, "Ordered", number);
    refer(*rightThing_, "Ordered", 100 + number);
  }
  for (const uint32 number : {3u, 4u, 5u}) addSet(left_, "Thing", number);
  for (const uint32 number : {5u, 3u, 4u}) addSet(right_, "Thing", 100 + number);
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("sets in another order 1"));
}

TEST_F(InsignificantDifferences, CountSetsWithPropertiesInAnotherOrder) {
  readSet(left_, "Thing", Items().item(0x4001, "00000001").item(0x4003, "01").item(0x7f01, "01"));
  readSet(right_, "Thing", Items().item(0x7f01, "01").item(0x4001, "00000001").item(0x4003, "01"));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("sets with properties in another order 1"));
}

TEST_F(InsignificantDifferences, CountPropertiesUnderOtherLocalTags) {
  left_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  right_.partitionDictionary().addPrimerEntry({0x8002, labelOf("Dynamic").key()});
  readSet(left_, "Other", Items().item(0x8001, "07"));
  readSet(right_, "Other", Items().item(0x8002, "07"));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("local tag numbers 1"));
}

TEST_F(InsignificantDifferences, CountDynamicTagsThatAreNotFixedYet) {
  left_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  readSet(left_, "Thing", Items().item(0x8001, "07").item(0x4001, "00000001").item(0x5001, "0001"));
  auto& right = readSet(right_, "Thing", Items());
  setValue(right, "Dynamic", Types::UInt8(7));
  setValue(right, "Number", Types::UInt32(1));
  auto& misplaced =
      right.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(&definitionOf("Foreign")));
  dynamic_cast<SimpleElement&>(misplaced).set(std::make_unique<Types::UInt16>(uint16{1}), true);
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("sets with properties in another order 1", "local tag numbers 2"));
  right_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  right_.partitionDictionary().addPrimerEntry({0x5001, labelOf("Foreign").key()});
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("sets with properties in another order 1"));
}

TEST_F(InsignificantDifferences, CountEmptyOptionalCollectionsInOneOnly) {
  appendNumbers(*leftThing_, "Numbers", {});
  property<CollectionElement>(*rightThing_, "Children").append(nullptr);
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("empty optional collections in one only 2"));
}

TEST_F(InsignificantDifferences, DoNotIncludeRequiredOrFilledCollections) {
  property<CollectionElement>(*leftThing_, "Needed").append(nullptr);
  appendNumbers(*rightThing_, "Numbers", {1});
  EXPECT_THAT(differences(),
              ElementsAre("missing property: Thing #2: Needed: [] -> ", "added property: Thing #2: Numbers:  -> [1]"));
  EXPECT_THAT(insignificant(), IsEmpty());
}

TEST_F(InsignificantDifferences, CountItemSizesOfEmptyCollections) {
  readSet(left_, "Thing", Items().item(0x400d, "00000000 00000010"));
  readSet(right_, "Thing", Items().item(0x400d, "00000000 00000000"));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("item sizes of empty collections 1"));
}

TEST_F(InsignificantDifferences, CountLabelsOfLocalTagsInDarkSets) {
  for (auto* partition : {&left_, &right_}) {
    readSet(*partition, darkGroupKey(),
            Items().instanceUID(9).item(0x8001, "01").item(0x8002, "02").item(0x8003, "03").item(0x7f01, "04"));
  }
  left_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  left_.partitionDictionary().addPrimerEntry({0x8002, labelOf("Dynamic").key()});
  left_.partitionDictionary().addPrimerEntry({0x7f01, labelOf("Number").key()});
  right_.partitionDictionary().addPrimerEntry({0x8002, labelOf("ForeignDynamic").key()});
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("labels of local tags in dark sets 3"));
  right_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  right_.partitionDictionary().addPrimerEntry({0x7f01, labelOf("Number").key()});
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("labels of local tags in dark sets 1"));
}

TEST_F(InsignificantDifferences, DoNotIncludeStaticTagsInDarkSetsThatTheDictionaryExplains) {
  for (auto* partition : {&left_, &right_}) readSet(*partition, darkGroupKey(), Items().item(0x4001, "00000001"));
  left_.partitionDictionary().addPrimerEntry({0x4001, labelOf("Number").key()});
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), IsEmpty());
}

TEST_F(InsignificantDifferences, DoNotIncludeTagsInDarkSetsThatAreNoLocalSets) {
  for (auto* partition : {&left_, &right_}) {
    for (const auto& key : {darkGroupKey(), darkSetKey()}) {
      partition->addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, uint8{4}, KLV::Value(hex("8001 0001"))));
    }
  }
  left_.partitionDictionary().addPrimerEntry({0x8001, labelOf("Dynamic").key()});
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), IsEmpty());
}

TEST_F(InsignificantDifferences, CountKeysOfAnotherCodingOrVersion) {
  auto octets = hex(hexOf(keyOf("Other").rawBuffer(), KLV::Key::kSize));
  octets[5] = 0x13;
  octets[7] = 0x05;
  readSet(left_, KLV::Key(octets.data()), Items(4).item(0x5001, "0001"));
  readSet(right_, "Other", Items().item(0x5001, "0001"));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("keys that differ in octets 6 or 8 1"));
}

TEST_F(InsignificantDifferences, CountObjectDirectoriesAndTheirRoots) {
  const Bytes keys[] = {hex("96 13 B3 8A 87 34 87 46 F1 02 96 F0 56 E0 4D 2A"),
                        hex("80 53 08 00 36 21 08 04 B3 B3 98 A5 1C 90 11 D4")};
  for (const auto& key : keys) {
    for (const auto& [partition, octets] : {std::pair(&left_, "0001"), std::pair(&right_, "000203")}) {
      partition->addDarkMetadataSet(
          std::make_unique<DarkMetadataSet>(KLV::Key(key.data()), uint8{4}, KLV::Value(hex(octets))));
    }
  }
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("object directories with other offsets 2"));
}

TEST_F(InsignificantDifferences, DoNotIncludeObjectDirectoriesThatCameOrWent) {
  const Bytes key = hex("96 13 B3 8A 87 34 87 46 F1 02 96 F0 56 E0 4D 2A");
  left_.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(KLV::Key(key.data()), uint8{4}, KLV::Value(hex("01"))));
  EXPECT_EQ(differences().size(), 1u);
}

}  // namespace
}  // namespace Vantor
