#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Core/Comparison/ComparisonFixture.h"
#include "tests/Sanitized.h"

/// Sets that find one another by their InstanceUIDs.
namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Numbers = std::vector<uint32>;

class PairingByIdentifier : public PartitionComparisonTest {
 protected:
  void SetUp() override { pairing_ = Pairing::kByIdentifier; }

  static void addThing(PartitionMetadata& partition, uint32 number) {
    setValue(addSet(partition, "Thing", number), "Number", Types::UInt32(number));
  }
  /// A Preface that owns some of the Things 2 to 5.
  static void addThings(PartitionMetadata& partition, const Numbers& owned) {
    auto& preface = addSet(partition, "Preface", 1);
    for (const uint32 number : owned) refer(preface, "Children", number);
    for (const uint32 number : {2u, 3u, 4u, 5u}) addThing(partition, number);
  }
};

TEST_F(PairingByIdentifier, ShowsAReferenceThatIsTakenOutAsOneProperty) {
  addThings(left_, {2, 3, 4, 5});
  addThings(right_, {2, 4, 5});
  EXPECT_THAT(differences(), ElementsAre("reference: Preface #1: Children: [#2, #3, #4, #5] -> [#2, #4, #5]"));
  EXPECT_EQ(comparison_.differingSets, 1u);
  EXPECT_EQ(comparison_.differingProperties, 1u);
  pairing_ = Pairing::kByPlace;
  EXPECT_GT(differences().size(), 1u);
}

TEST_F(PairingByIdentifier, ShowsReferencesThatAreSwappedAsOneProperty) {
  addThings(left_, {2, 3, 4, 5});
  addThings(right_, {2, 4, 3, 5});
  EXPECT_THAT(differences(), ElementsAre("reference: Preface #1: Children[1]: #3 (Thing) -> #4 (Thing)"));
  pairing_ = Pairing::kByPlace;
  EXPECT_GT(differences().size(), 1u);
}

TEST_F(PairingByIdentifier, ShowsAnotherReferenceToASetThatIsInNeitherPartition) {
  refer(addSet(left_, "Preface", 1), "Child", 7);
  refer(addSet(right_, "Preface", 1), "Child", 8);
  EXPECT_THAT(differences(), ElementsAre("mapping: Preface #1: Child: #7 (no set) -> #8 (no set)"));
  pairing_ = Pairing::kByPlace;
  EXPECT_THAT(differences(), IsEmpty());
}

TEST_F(PairingByIdentifier, PairsTheRestByPlace) {
  refer(addSet(left_, "Preface", 1), "Child", 2);
  refer(addSet(right_, "Preface", 1), "Child", 102);
  setValue(addSet(left_, "Thing", 2), "Number", Types::UInt32(2));
  setValue(addSet(right_, "Thing", 102), "Number", Types::UInt32(2));
  EXPECT_THAT(differences(), IsEmpty());
  ASSERT_EQ(SetPairing(left_, right_, pairing_).setPairs().size(), 2u);
}

TEST_F(PairingByIdentifier, PairsSetsOfASharedInstanceUIDByPlace) {
  for (auto* partition : {&left_, &right_}) {
    refer(addSet(*partition, "Preface", 1), "Child", 2);
    setValue(addSet(*partition, "Thing", 2), "Number", Types::UInt32(1));
  }
  setValue(addSet(right_, "Thing", 2), "Number", Types::UInt32(2));
  EXPECT_THAT(differences(), ElementsAre("added set: Thing #2"));
}

TEST_F(PairingByIdentifier, PairsNoSetsOfTwoKinds) {
  for (auto* partition : {&left_, &right_}) addSet(*partition, "Preface", 1);
  addSet(left_, "Thing", 2);
  addSet(right_, "Other", 2);
  EXPECT_THAT(differences(), ElementsAre("missing set: Thing #2", "added set: Other #2"));
}

TEST_F(PairingByIdentifier, ComparesTheOctetsOfDarkGroups) {
  for (auto* partition : {&left_, &right_}) addSet(*partition, "Preface", 1);
  readSet(left_, darkGroupKey(), Items().instanceUID(2).item(0x1234, "01"));
  readSet(right_, darkGroupKey(), Items().instanceUID(2).item(0x1234, "02"));
  const auto found = differences();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_THAT(found[0], testing::AllOf(testing::StartsWith("value: "), testing::HasSubstr(": octets: ")));
}

TEST_F(PairingByIdentifier, NeedsNoLongerForManyReferencesThatMoved) {
  const uint32 kSets = isSanitized() ? 5000 : 20000;
  for (auto* partition : {&left_, &right_}) {
    auto& preface = addSet(*partition, "Preface", 1);
    for (uint32 i = 0; i < kSets; ++i) refer(preface, "Children", partition == &left_ ? 2 + i : 1 + kSets - i);
    for (uint32 i = 0; i < kSets; ++i) addThing(*partition, 2 + i);
  }
  EXPECT_EQ(differences().size(), 1u);
  EXPECT_EQ(comparison_.sets, kSets + 1);
  EXPECT_EQ(comparison_.differingProperties, 1u);
}

}  // namespace
}  // namespace Vantor
