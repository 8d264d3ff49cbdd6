#include "Core/Metadata/PartitionMetadata.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

KLV::Key withOctets(const KLV::Key& key, uint8 octet6, uint8 octet8) {
  auto octets = hex(hexOf(key.rawBuffer(), KLV::Key::kSize));
  octets[5] = octet6;
  octets[7] = octet8;
  return KLV::Key(octets.data());
}

class PartitionMetadataTest : public testing::Test {
 protected:
  PartitionMetadata partition_{testDictionary()};
};

TEST_F(PartitionMetadataTest, FindsSetsByKeyInFileOrderWhateverTheirCodingAndVersion) {
  const auto& first = addSet(partition_, "Thing", 1);
  addSet(partition_, "Other", 2);
  const auto& second = readSet(partition_, withOctets(keyOf("Thing"), 0x13, 0x02), Items(1).instanceUID(3));
  EXPECT_THAT(partition_.find(keyOf("Thing")), ElementsAre(&first, &second));
  EXPECT_THAT(partition_.find(withOctets(keyOf("Thing"), 0x7f, 0x7e)), ElementsAre(&first, &second));
  EXPECT_THAT(partition_.find(keyOf("Preface")), IsEmpty());
  EXPECT_EQ(second.definition()->symbol(), "Thing");
  EXPECT_EQ(second.key(), withOctets(keyOf("Thing"), 0x13, 0x02)) << "the set keeps the key that was read";
}

TEST_F(PartitionMetadataTest, FindsEverySetOfAnInstanceUIDInFileOrder) {
  const auto& first = addSet(partition_, "Thing", 7);
  addSet(partition_, "Thing", 8);
  const auto& second = addSet(partition_, "Other", 7);
  const auto& third = readSet(partition_, darkGroupKey(), Items().instanceUID(7));
  EXPECT_THAT(partition_.findByInstanceUID(uid(7)), ElementsAre(&first, &second, &third));
  EXPECT_THAT(partition_.findByInstanceUID(uid(9)), IsEmpty());
}

TEST_F(PartitionMetadataTest, FollowsChangesOfInstanceUIDs) {
  auto& first = addSet(partition_, "Thing", 1);
  auto& second = addSet(partition_, "Thing", 2);
  auto& third = addSet(partition_, "Thing", 2);
  setValue(third, "InstanceUID", uid(1));
  EXPECT_THAT(partition_.findByInstanceUID(uid(1)), ElementsAre(&first, &third));
  EXPECT_THAT(partition_.findByInstanceUID(uid(2)), ElementsAre(&second));
  setValue(second, "InstanceUID", uid(1));
  EXPECT_THAT(partition_.findByInstanceUID(uid(1)), ElementsAre(&first, &second, &third)) << "file order, not time";
  EXPECT_THAT(partition_.findByInstanceUID(uid(2)), IsEmpty());
  property<SimpleElement>(first, "InstanceUID").set(nullptr, true);
  EXPECT_THAT(partition_.findByInstanceUID(uid(1)), ElementsAre(&second, &third));
  setValue(first, "InstanceUID", uid(2));
  EXPECT_THAT(partition_.findByInstanceUID(uid(2)), ElementsAre(&first));
}

TEST_F(PartitionMetadataTest, GivesANewSetARandomInstanceUIDAndNothingElse) {
  const MetadataSet* set = partition_.createMetadataSet(keyOf("Thing"));
  const MetadataSet* other = partition_.createMetadataSet(keyOf("Thing"));
  ASSERT_NE(set->instanceUID(), nullptr);
  EXPECT_EQ(set->instanceUID()->octet(7) >> 4, 4) << "version 4 (RFC 4122)";
  EXPECT_NE(*set->instanceUID(), *other->instanceUID());
  EXPECT_THAT(partition_.findByInstanceUID(*set->instanceUID()), ElementsAre(set));
  ASSERT_NE(set->begin(), set->end());
  EXPECT_EQ(set->begin()->metaAttribute().metaElement()->symbol(), "InstanceUID");
  EXPECT_EQ(++set->begin(), set->end()) << "unset properties are passed over";
  EXPECT_EQ(set->invalidBegin(), set->invalidEnd());
}

TEST_F(PartitionMetadataTest, MakesASetWithoutDefinitionOfAnUnknownKey) {
  const MetadataSet* set = partition_.createMetadataSet(darkGroupKey());
  EXPECT_EQ(set->definition(), nullptr);
  EXPECT_EQ(set->instanceUID(), nullptr);
  EXPECT_EQ(set->begin(), set->end());
  EXPECT_THAT(partition_.find(darkGroupKey()), ElementsAre(set));
}

TEST_F(PartitionMetadataTest, KeepsTheOrderOfSetsAndDarkSets) {
  const auto& first = addSet(partition_, "Thing", 1);
  partition_.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(darkSetKey(), uint8{4}, KLV::Value(hex("01"))));
  const auto& second = readSet(partition_, darkGroupKey(), Items());
  EXPECT_THAT(partition_.sets(), ElementsAre(&first, &second));
  const auto& entries = partition_.entries();
  ASSERT_THAT(entries, SizeIs(3));
  EXPECT_EQ(std::get<auto_ptr<MetadataSet>>(entries[0]).get(), &first);
  EXPECT_EQ(std::get<auto_ptr<DarkMetadataSet>>(entries[1]).get(), *partition_.darkBegin());
  EXPECT_EQ(std::get<auto_ptr<MetadataSet>>(entries[2]).get(), &second);
  EXPECT_EQ(std::distance(partition_.darkBegin(), partition_.darkEnd()), 1);
}

TEST_F(PartitionMetadataTest, NamesTheSetAndTheOffsetWhereItsItemsDoNotFit) {
  const auto value = hex("4001 0004 00000007 4003 0002 01");
  try {
    partition_.addKLV(keyOf("Thing"), 4, value.data(), value.size(), 1000);
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::ParseError& error) {
    EXPECT_THAT(error.message(), testing::HasSubstr("set Thing: "));
    EXPECT_THAT(error.message(), testing::HasSubstr("1012"));
  }
  EXPECT_THAT(partition_.sets(), IsEmpty());
  EXPECT_THAT(partition_.entries(), IsEmpty());
  EXPECT_THAT(partition_.find(keyOf("Thing")), IsEmpty());
}

TEST_F(PartitionMetadataTest, KeepsAnUnknownLocalSetAsADarkParsedGroup) {
  const auto items = Items().item(0x1234, "AB").instanceUID(7);
  auto& set = readSet(partition_, darkGroupKey(), items, 9);
  const auto* group = dynamic_cast<const DarkParsedGroup*>(&set);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(hexOf(group->value()), hexOf(items.bytes()));
  EXPECT_EQ(group->berLength(), 9);
  EXPECT_EQ(group->definition(), nullptr);
  EXPECT_EQ(group->begin(), group->end());
  EXPECT_EQ(*group->instanceUID(), uid(7));
  EXPECT_THAT(partition_.find(darkGroupKey()), ElementsAre(group));
}

TEST_F(PartitionMetadataTest, FindsTheInstanceUIDOfADarkParsedGroupAsThePrimerNamesIt) {
  partition_.partitionDictionary().addPrimerEntry({0x9000, labelOf("InstanceUID").key()});
  partition_.partitionDictionary().addPrimerEntry({0x3c0a, labelOf("Generation").key()});
  const auto& set = readSet(partition_, darkGroupKey(),
                            Items().instanceUID(1).item(0x9000, hexOf(uid(2))).item(0x9000, hexOf(uid(3))));
  EXPECT_EQ(*set.instanceUID(), uid(2)) << "the first one that the primer calls so";
}

TEST_F(PartitionMetadataTest, TakesNoInstanceUIDOfAnotherSizeFromADarkParsedGroup) {
  EXPECT_EQ(readSet(partition_, darkGroupKey(), Items().item(0x3c0a, "01")).instanceUID(), nullptr);
}

TEST_F(PartitionMetadataTest, KeepsAnUnknownLocalSetWhoseItemsDoNotFitAsADarkSet) {
  const auto value = hex("1234 0002 AB");
  partition_.addKLV(darkGroupKey(), 4, value.data(), value.size(), 0);
  EXPECT_THAT(partition_.sets(), IsEmpty());
  ASSERT_EQ(std::distance(partition_.darkBegin(), partition_.darkEnd()), 1);
  EXPECT_EQ((*partition_.darkBegin())->key(), darkGroupKey());
  EXPECT_EQ(hexOf((*partition_.darkBegin())->value().bytes()), "12340002AB");
}

TEST_F(PartitionMetadataTest, KeepsAnythingThatIsNoLocalSetAsADarkSet) {
  const auto value = Items().instanceUID(1).bytes();
  partition_.addKLV(darkSetKey(), 9, value.data(), value.size(), 0);
  const auto packOfThing = withOctets(keyOf("Thing"), 0x05, 0x01);
  partition_.addKLV(packOfThing, 4, value.data(), value.size(), 0);
  EXPECT_THAT(partition_.sets(), IsEmpty());
  ASSERT_EQ(std::distance(partition_.darkBegin(), partition_.darkEnd()), 2);
  EXPECT_EQ((*partition_.darkBegin())->berLength(), 9);
  EXPECT_EQ(partition_.darkBegin()[1]->key(), packOfThing);
}

}  // namespace
}  // namespace Vantor
