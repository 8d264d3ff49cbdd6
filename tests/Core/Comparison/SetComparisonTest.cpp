#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Core/Comparison/ComparisonFixture.h"
#include "tests/Sanitized.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using ComparisonOfSets = PartitionComparisonTest;

TEST_F(ComparisonOfSets, FindsNothingInEmptyPartitions) {
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_TRUE(comparison_.isEqual());
  EXPECT_EQ(comparison_.sets, 0u);
}

TEST_F(ComparisonOfSets, FindsNothingInPartitionsThatDifferInInstanceUIDsOnly) {
  addChain();
  refer(*leftThing_, "Peer", 1);
  refer(*rightThing_, "Peer", 101);
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), IsEmpty());
  EXPECT_EQ(comparison_.sets, 2u);
  EXPECT_EQ(comparison_.properties, 4u);
  EXPECT_EQ(comparison_.differingSets, 0u);
  EXPECT_EQ(comparison_.differingProperties, 0u);
}

TEST_F(ComparisonOfSets, FindsNothingInAPartitionAndItself) {
  addChain();
  EXPECT_TRUE(comparePartitions(left_, left_).isEqual());
}

TEST_F(ComparisonOfSets, ReportsMissingAndAddedSets) {
  addChain();
  addSet(left_, "Other", 3);
  addSet(right_, "Thing", 103);
  EXPECT_THAT(differences(), ElementsAre("missing set: Other #3", "added set: Thing #103"));
  EXPECT_EQ(comparison_.sets, 4u);
  EXPECT_EQ(comparison_.differingSets, 2u);
  EXPECT_EQ(comparison_.differingProperties, 0u);
}

TEST_F(ComparisonOfSets, StartsWithTheFirstSetsWhereThereIsNoPreface) {
  refer(addSet(left_, "Thing", 1), "Child", 2);
  addSet(left_, "Thing", 2);
  refer(addSet(right_, "Thing", 101), "Child", 102);
  addSet(right_, "Thing", 102);
  EXPECT_THAT(differences(), IsEmpty());
}

TEST_F(ComparisonOfSets, ReportsAPrefaceThatOnlyOnePartitionHas) {
  addSet(left_, "Preface", 1);
  addSet(right_, "Thing", 101);
  EXPECT_THAT(differences(), ElementsAre("missing set: Preface #1", "added set: Thing #101"));
}

TEST_F(ComparisonOfSets, PairsFurtherPrefacesInOrder) {
  for (const uint32 number : {1u, 2u}) addSet(left_, "Preface", number);
  addSet(right_, "Preface", 101);
  EXPECT_THAT(differences(), ElementsAre("missing set: Preface #2"));
}

TEST_F(ComparisonOfSets, PairsFloatingSetsByTheirValues) {
  for (const uint32 number : {1u, 2u, 3u}) setValue(addSet(left_, "Thing", number), "Number", Types::UInt32(number));
  for (const uint32 number : {3u, 1u}) setValue(addSet(right_, "Thing", 100 + number), "Number", Types::UInt32(number));
  addSet(left_, "Preface", 9);
  addSet(right_, "Preface", 109);
  EXPECT_THAT(differences(), ElementsAre("missing set: Thing #2"));
  EXPECT_THAT(insignificant(), ElementsAre("sets in another order 1"));
}

TEST_F(ComparisonOfSets, PairsFloatingSetsWhoseValuesDifferInOrder) {
  addSet(left_, "Preface", 9);
  addSet(right_, "Preface", 109);
  for (const uint32 number : {1u, 2u}) {
    setValue(addSet(left_, "Thing", number), "Number", Types::UInt32(number));
    setValue(addSet(right_, "Thing", 100 + number), "Number", Types::UInt32(10 + number));
  }
  EXPECT_THAT(differences(), ElementsAre("value: Thing #1: Number: 1 -> 11", "value: Thing #2: Number: 2 -> 12"));
}

TEST_F(ComparisonOfSets, PairsWhatFloatingSetsReferToWithThem) {
  addSet(left_, "Preface", 9);
  addSet(right_, "Preface", 109);
  // The owned set comes first in the file and has the values of a floating one.
  for (const uint32 number : {1u, 2u}) addSet(left_, "Thing", number);
  refer(addSet(left_, "Other", 3), "ForeignChild", 1);
  addSet(right_, "Thing", 102);
  addSet(right_, "Thing", 101);
  refer(addSet(right_, "Other", 103), "ForeignChild", 101);
  EXPECT_THAT(differences(), IsEmpty());
}

TEST_F(ComparisonOfSets, PairsFloatingSetsWithAnotherInstanceUIDAndOtherReferencesByTheirValues) {
  addSet(left_, "Preface", 9);
  addSet(right_, "Preface", 109);
  setValue(addSet(left_, "Thing", 1), "Number", Types::UInt32(1));
  setValue(addSet(left_, "Thing", 2), "Number", Types::UInt32(2));
  setValue(addSet(right_, "Thing", 102), "Number", Types::UInt32(2));
  auto& first = addSet(right_, "Thing", 101);
  setValue(first, "Number", Types::UInt32(1));
  refer(first, "Peer", 109);
  EXPECT_THAT(differences(), ElementsAre("added property: Thing #1: Peer:  -> #109"));
}

TEST_F(ComparisonOfSets, FollowsStrongReferencesBeforeWeakOnes) {
  const auto build = [](PartitionMetadata& partition, uint32 base, uint32 peer) {
    auto& preface = addSet(partition, "Preface", base + 1);
    refer(preface, "Children", base + 2);
    refer(preface, "Children", base + 3);
    refer(addSet(partition, "Thing", base + 2), "Peer", base + peer);
    auto& owner = addSet(partition, "Thing", base + 3);
    for (const uint32 number : {4u, 5u}) {
      refer(owner, "Children", base + number);
      setValue(addSet(partition, "Thing", base + number), "Number", Types::UInt32(number));
    }
  };
  build(left_, 0, 4);
  build(right_, 100, 5);
  EXPECT_THAT(differences(), ElementsAre("reference: Thing #2: Peer: #4 (Thing) -> #105 (Thing)"));
}

TEST_F(ComparisonOfSets, FollowsWeakReferencesToSetsThatNobodyOwns) {
  addChain();
  refer(*leftThing_, "Peer", 4);
  refer(*rightThing_, "Peer", 104);
  for (const uint32 number : {3u, 4u}) setValue(addSet(left_, "Thing", number), "Number", Types::UInt32(number));
  for (const uint32 number : {4u, 3u}) setValue(addSet(right_, "Thing", 100 + number), "Number", Types::UInt32(7));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #3: Number: 3 -> 7", "value: Thing #4: Number: 4 -> 7"));
}

TEST_F(ComparisonOfSets, PairsSetsOfOneInstanceUIDAsReferencesFindThem) {
  addChain();
  setValue(addSet(left_, "Thing", 2), "Number", Types::UInt32(1));
  setValue(addSet(right_, "Thing", 102), "Number", Types::UInt32(1));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_EQ(comparison_.sets, 3u);
}

TEST_F(ComparisonOfSets, ComesToAnEndInCirclesAndLongChains) {
  const uint32 kSets = isSanitized() ? 10000 : 100000;
  for (auto* partition : {&left_, &right_}) {
    const uint32 base = partition == &left_ ? 0 : 1000000;
    refer(addSet(*partition, "Preface", base + 1), "Child", base + 2);
    for (uint32 number = 2; number <= kSets; ++number) {
      const uint32 next = number == kSets ? 1 : number + 1;
      readSet(*partition, "Thing", Items().instanceUID(base + number).item(0x4006, hexOf(uid(base + next))));
    }
  }
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_EQ(comparison_.sets, kSets);
  EXPECT_EQ(comparison_.properties, 2u * kSets);
}

TEST_F(ComparisonOfSets, NeedsNoLongerForManySetsThatAreAlike) {
  const uint32 kSets = isSanitized() ? 5000 : 20000;
  for (uint32 i = 0; i < kSets; ++i) {
    for (auto* partition : {&left_, &right_}) {
      readSet(*partition, "Thing", Items().instanceUID(7).item(0x4006, hexOf(uid(7))).item(0x7f01, "01"));
    }
  }
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_EQ(comparison_.sets, kSets);
}

using ComparisonOfDarkSets = ThingComparison;

void addDark(PartitionMetadata& partition, const KLV::Key& key, const std::string& octets, uint8 berOctets = 4) {
  partition.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, berOctets, KLV::Value(hex(octets))));
}

TEST_F(ComparisonOfDarkSets, PairsThemByKeyAndOctetsInOrder) {
  for (const char* octets : {"01", "02", "01", ""}) addDark(left_, darkSetKey(), octets);
  for (const char* octets : {"01", "", "01", "03"}) addDark(right_, darkSetKey(), octets);
  const std::string key = "06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00 ";
  EXPECT_THAT(differences(), ElementsAre("missing set: " + key, "added set: " + key));
  EXPECT_EQ(comparison_.sets, 7u);
  EXPECT_THAT(insignificant(), ElementsAre("sets in another order 1"));
}

TEST_F(ComparisonOfDarkSets, DoesNotPairThemAcrossKeys) {
  addDark(left_, darkSetKey(), "01");
  addDark(right_, darkGroupKey(), "01");
  EXPECT_THAT(differences(), ElementsAre("missing set: 06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00 ",
                                         "added set: 06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00 "));
}

TEST_F(ComparisonOfDarkSets, CountsGroupsThatCameBackAsDarkSets) {
  const auto items = Items().instanceUID(5).item(0x1234, "AB");
  readSet(left_, darkGroupKey(), items);
  addDark(right_, darkGroupKey(), hexOf(items.bytes()), 9);
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_THAT(insignificant(), ElementsAre("BER octet counts 1", "dark groups that came back as dark sets 1"));
}

TEST_F(ComparisonOfDarkSets, ReportsAGroupThatNobodyHas) {
  readSet(left_, darkGroupKey(), Items().instanceUID(5));
  readSet(right_, darkGroupKey(), Items().instanceUID(105));
  EXPECT_THAT(differences(), ElementsAre("missing set: 06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00 #5",
                                         "added set: 06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00 #105"));
}

TEST_F(ComparisonOfDarkSets, ComparesTheOctetsOfGroupsThatReferencesFind) {
  refer(*leftThing_, "Child", 5);
  refer(*rightThing_, "Child", 105);
  readSet(left_, darkGroupKey(), Items().instanceUID(5));
  readSet(right_, darkGroupKey(), Items().instanceUID(105));
  EXPECT_THAT(differences(), ElementsAre("value: 06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00 #5: octets: 3C0A0010" +
                                         hexOf(uid(5)) + " -> 3C0A0010" + hexOf(uid(105))));
}

TEST_F(ComparisonOfDarkSets, TellsWhereLongGroupsDiffer) {
  refer(*leftThing_, "Child", 5);
  refer(*rightThing_, "Child", 105);
  const Bytes octets(240, 0x11);
  readSet(left_, darkGroupKey(), Items().item(0x7f01, octets).instanceUID(5));
  readSet(right_, darkGroupKey(), Items().item(0x7f01, octets).instanceUID(105));
  const std::string start = "7F0100F0" + hexOf(Bytes(196, 0x11)) + "... (264 octets), octet 263 is ";
  EXPECT_THAT(differences(), ElementsAre("value: 06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00 #5: octets: " + start +
                                         "05 -> " + start + "69"));
}

TEST_F(ComparisonOfDarkSets, ReportsReferencesToAGroupThatCameBackAsADarkSet) {
  refer(*leftThing_, "Child", 5);
  refer(*rightThing_, "Child", 105);
  readSet(left_, darkGroupKey(), Items().instanceUID(5));
  addDark(right_, darkGroupKey(), "3C0A0010" + hexOf(uid(5)));
  EXPECT_THAT(differences(),
              ElementsAre("reference: Thing #2: Child: #5 (06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00) -> #105 "
                          "(no set)"));
  EXPECT_THAT(insignificant(), ElementsAre("dark groups that came back as dark sets 1"));
}

TEST_F(ComparisonOfDarkSets, ComparesSetsWithoutDefinitionByTheirProperties) {
  addUnknown(*left_.createMetadataSet(darkGroupKey()), 0x7f01, hex("01"));
  addUnknown(*right_.createMetadataSet(darkGroupKey()), 0x7f01, hex("02"));
  EXPECT_THAT(differences(), ElementsAre("value: 06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00 : unknown property "
                                         "7F.01: 01 -> 02"));
}

}  // namespace
}  // namespace Vantor
