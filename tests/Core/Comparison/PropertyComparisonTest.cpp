#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Core/Comparison/ComparisonFixture.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ThingComparison, ReportsMissingAndAddedProperties) {
  setValue(*leftThing_, "Number", Types::UInt32(5));
  setValue(*rightThing_, "Flag", Types::Boolean(true));
  addUnknown(*leftThing_, 0x7f01, hex("AB"));
  addUnknown(*rightThing_, 0x7f02, hex("CD"));
  EXPECT_THAT(differences(), ElementsAre("missing property: Thing #2: Number: 5 -> ",
                                         "missing property: Thing #2: unknown property 7F.01: AB -> ",
                                         "added property: Thing #2: Flag:  -> true",
                                         "added property: Thing #2: unknown property 7F.02:  -> CD"));
  EXPECT_EQ(comparison_.sets, 2u);
  EXPECT_EQ(comparison_.properties, 7u);
  EXPECT_EQ(comparison_.differingSets, 1u);
  EXPECT_EQ(comparison_.differingProperties, 4u);
}

TEST_F(ThingComparison, ReportsValuesOfOneTypeThatDiffer) {
  setValue(*leftThing_, "Number", Types::UInt32(5));
  setValue(*rightThing_, "Number", Types::UInt32(6));
  setValue(*leftThing_, "Text", Types::UTF16String(wstring(u"a")));
  setValue(*rightThing_, "Text", Types::UTF16String(wstring(u"A")));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Number: 5 -> 6", "value: Thing #2: Text: \"a\" -> \"A\""));
  EXPECT_EQ(comparison_.differingSets, 1u);
  EXPECT_EQ(comparison_.differingProperties, 2u);
}

TEST_F(ThingComparison, ReportsValuesOfOtherTypesWithTheirTypes) {
  setValue(*leftThing_, "Number", Types::UInt32(5));
  property<SimpleElement>(*rightThing_, "Number").set(std::make_unique<Types::Int32>(5), false);
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Number: UInt32 5 -> Int32 5"));
}

TEST_F(ThingComparison, ReportsAPropertyThatHasAValueInOneSetOnly) {
  setValue(*leftThing_, "Number", Types::UInt32(5));
  property(*rightThing_, "Number");
  property(*leftThing_, "Flag");
  property(*rightThing_, "Flag");
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Number: 5 -> no value"));
}

TEST_F(ThingComparison, TellsWhereLongValuesDiffer) {
  Bytes octets(1000, 0x11);
  setValue(*leftThing_, "Data", Types::DataStream(octets));
  octets[900] = 0x22;
  setValue(*rightThing_, "Data", Types::DataStream(octets));
  const std::string start = hexOf(Bytes(200, 0x11)) + "... (1000 octets), octet 900 is ";
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Data: " + start + "11 -> " + start + "22"));
}

TEST_F(ThingComparison, TellsTheSizesOfLongValuesThatStartAlike) {
  setValue(*leftThing_, "Data", Types::DataStream(Bytes(1000, 0x11)));
  setValue(*rightThing_, "Data", Types::DataStream(Bytes(999, 0x11)));
  const std::string start = hexOf(Bytes(200, 0x11)) + "... (";
  EXPECT_THAT(differences(),
              ElementsAre("value: Thing #2: Data: " + start + "1000 octets) -> " + start + "999 octets)"));
}

TEST_F(ThingComparison, ReportsWholeLists) {
  appendNumbers(*leftThing_, "Numbers", {1, 2, 3});
  appendNumbers(*rightThing_, "Numbers", {1, 5, 6});
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Numbers: [1, 2, 3] -> [1, 5, 6]"));
  EXPECT_EQ(comparison_.differingProperties, 1u);
}

TEST_F(ThingComparison, ReportsCollectionsWithMoreOrFewerItems) {
  appendNumbers(*leftThing_, "Numbers", {1, 2});
  appendNumbers(*rightThing_, "Numbers", {1, 2, 3});
  refer(*leftThing_, "Children", 50);
  refer(*leftThing_, "Children", 51);
  refer(*rightThing_, "Children", 150);
  EXPECT_THAT(differences(), ElementsAre("reference: Thing #2: Children: [#50, #51] -> [#150]",
                                         "value: Thing #2: Numbers: [1, 2] -> [1, 2, 3]"));
}

TEST_F(ThingComparison, ComparesGenerationUIDsPlainly) {
  setValue(*leftThing_, "Generation", uid(2));
  setValue(*rightThing_, "Generation", uid(102));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Generation: #2 -> #102"));
}

TEST_F(ThingComparison, ReportsReferencesToOtherSets) {
  refer(*leftThing_, "Ordered", 3);
  refer(*leftThing_, "Ordered", 4);
  refer(*rightThing_, "Ordered", 103);
  refer(*rightThing_, "Ordered", 104);
  for (const uint32 number : {3u, 4u}) {
    addSet(left_, "Thing", number);
    addSet(right_, "Thing", 100 + number);
  }
  refer(*leftThing_, "Peers", 3);
  refer(*leftThing_, "Peers", 4);
  refer(*rightThing_, "Peers", 103);
  refer(*rightThing_, "Peers", 103);
  EXPECT_THAT(differences(), ElementsAre("reference: Thing #2: Peers[1]: #4 (Thing) -> #103 (Thing)"));
}

TEST_F(ThingComparison, ReportsReferencesToSetsOfAnotherKind) {
  refer(*leftThing_, "Child", 3);
  refer(*rightThing_, "Child", 103);
  addSet(left_, "Thing", 3);
  addSet(right_, "Other", 103);
  EXPECT_THAT(differences(), ElementsAre("reference: Thing #2: Child: #3 (Thing) -> #103 (Other)",
                                         "missing set: Thing #3", "added set: Other #103"));
}

TEST_F(ThingComparison, ReportsReferencesOfWhichOneLeadsNowhere) {
  refer(*leftThing_, "Child", 3);
  refer(*rightThing_, "Child", 103);
  addSet(left_, "Other", 3);
  refer(*leftThing_, "Peer", 50);
  refer(*rightThing_, "Peer", 102);
  EXPECT_THAT(differences(),
              ElementsAre("reference: Thing #2: Child: #3 (Other) -> #103 (no set)",
                          "reference: Thing #2: Peer: #50 (no set) -> #102 (Thing)", "missing set: Other #3"));
}

TEST_F(ThingComparison, ReportsReferencesOfAnotherKind) {
  property<ReferenceElement>(*leftThing_, "Child")
      .setUnverifiedReference(std::make_unique<Types::StrongReference>(uid(1)));
  property<ReferenceElement>(*rightThing_, "Child")
      .setUnverifiedReference(std::make_unique<Types::WeakReference>(uid(101)));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: Child: StrongReference #1 -> WeakReference #101"));
}

TEST_F(ThingComparison, MapsReferencesToNothingOneToOne) {
  for (const uint32 number : {50u, 51u, 50u, 52u, 53u}) refer(*leftThing_, "Ordered", number);
  for (const uint32 number : {150u, 151u, 150u, 152u, 151u}) refer(*rightThing_, "Ordered", number);
  EXPECT_THAT(differences(), ElementsAre("mapping: Thing #2: Ordered[4]: #53 (no set) -> #151 (no set)"));
}

TEST_F(ThingComparison, ReportsOneReferenceToNothingThatBecameTwo) {
  refer(*leftThing_, "Child", 50);
  refer(*rightThing_, "Child", 150);
  refer(*leftThing_, "Peer", 50);
  refer(*rightThing_, "Peer", 151);
  EXPECT_THAT(differences(), ElementsAre("mapping: Thing #2: Peer: #50 (no set) -> #151 (no set)"));
}

TEST_F(ThingComparison, ReportsAReferenceToNoSetAtAllThatBecameAnIdentifier) {
  const auto refer = [](MetadataSet& thing, const Types::UUID& target) {
    property<ReferenceElement>(thing, "Child").setUnverifiedReference(std::make_unique<Types::StrongReference>(target));
  };
  refer(*leftThing_, Types::UUID());
  refer(*rightThing_, uid(150));
  EXPECT_THAT(differences(), ElementsAre("mapping: Thing #2: Child: #0 (no set) -> #150 (no set)"));
  refer(*rightThing_, Types::UUID());
  EXPECT_THAT(differences(), IsEmpty());
}

TEST_F(ThingComparison, ReportsInstanceUIDsThatWereOneAndBecameTwo) {
  addSet(left_, "Other", 2);
  addSet(right_, "Other", 103);
  EXPECT_THAT(differences(), ElementsAre("mapping: Other #2: InstanceUID: #2 -> #103"));
}

TEST_F(ThingComparison, ReportsInstanceUIDsThatWereTwoAndBecameOne) {
  addSet(left_, "Other", 3);
  addSet(right_, "Other", 102);
  EXPECT_THAT(differences(), ElementsAre("mapping: Other #3: InstanceUID: #3 -> #102"));
}

TEST_F(ThingComparison, ReportsAnInstanceUIDThatOnlyOneSetHas) {
  readSet(left_, "Other", Items());
  addSet(right_, "Other", 103);
  EXPECT_THAT(differences(), ElementsAre("added property: Other : InstanceUID:  -> #103"));
}

TEST_F(ThingComparison, PairsUnknownPropertiesByStaticTag) {
  addUnknown(*leftThing_, 0x7f01, hex("01"));
  addUnknown(*leftThing_, 0x7f02, hex("02"));
  addUnknown(*rightThing_, 0x7f02, hex("02"));
  addUnknown(*rightThing_, 0x7f01, hex("07"));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: unknown property 7F.01: 01 -> 07"));
}

TEST_F(ThingComparison, PairsUnknownPropertiesOfOneTagInOrder) {
  for (const char* octets : {"01", "02", "03"}) addUnknown(*leftThing_, 0x7f01, hex(octets));
  for (const char* octets : {"01", "05"}) addUnknown(*rightThing_, 0x7f01, hex(octets));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: unknown property 7F.01: 02 -> 05",
                                         "missing property: Thing #2: unknown property 7F.01: 03 -> "));
}

TEST_F(ThingComparison, PairsUnknownPropertiesWithDynamicTagsByTheLabelsOfThePrimers) {
  left_.partitionDictionary().addPrimerEntry({0x8001, darkGroupKey()});
  left_.partitionDictionary().addPrimerEntry({0x8002, darkSetKey()});
  right_.partitionDictionary().addPrimerEntry({0x8002, darkGroupKey()});
  right_.partitionDictionary().addPrimerEntry({0x8001, darkSetKey()});
  addUnknown(*leftThing_, 0x8001, hex("01"));
  addUnknown(*leftThing_, 0x8002, hex("02"));
  addUnknown(*rightThing_, 0x8001, hex("02"));
  addUnknown(*rightThing_, 0x8002, hex("07"));
  EXPECT_THAT(differences(),
              ElementsAre("value: Thing #2: unknown property 80.01 (06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00): "
                          "01 -> 07"));
  EXPECT_THAT(insignificant(), ElementsAre("sets with properties in another order 1", "local tag numbers 2"));
}

TEST_F(ThingComparison, PairsUnknownPropertiesWithDynamicTagsThatNoPrimerListsInOrder) {
  addUnknown(*leftThing_, 0x8001, hex("01"));
  addUnknown(*rightThing_, 0xffff, hex("01"));
  addUnknown(*leftThing_, 0x8002, hex("02"));
  addUnknown(*rightThing_, 0xfffe, hex("07"));
  EXPECT_THAT(differences(), ElementsAre("value: Thing #2: unknown property 80.02: 02 -> 07"));
  EXPECT_THAT(insignificant(), ElementsAre("local tag numbers 2"));
}

TEST_F(ThingComparison, DoesNotTakeAMisplacedPropertyForAValidOrUnknownOne) {
  auto& left = readSet(left_, "Other", Items().item(0x4001, "00000005"));
  auto& right = readSet(right_, "Other", Items().item(0x4001, "00000005"));
  EXPECT_EQ(left.invalidBegin()->metaAttribute().metaElement(), right.invalidBegin()->metaAttribute().metaElement());
  EXPECT_THAT(differences(), IsEmpty());
  readSet(left_, "Thing", Items().item(0x5001, "0005"));
  readSet(right_, "Thing", Items().item(0x5001, "05"));
  EXPECT_THAT(differences(), ElementsAre("missing property: Thing : Foreign: 5 -> ",
                                         "added property: Thing : Foreign as octets:  -> 0x[05]"));
}

}  // namespace
}  // namespace Vantor
