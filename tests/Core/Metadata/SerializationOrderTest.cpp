#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "Core/DataIO/BigEndian.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/Sanitized.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SerializationOrder : public testing::Test {
 protected:
  MetadataSet& add(const char* set, uint32 number) { return addSet(partition_, set, number); }
  MetadataSet& thing(uint32 number) { return add("Thing", number); }

  /// The numbers of the InstanceUIDs, and how many sets at the end were not reached.
  std::vector<uint32> order(bool withUnreached, bool followWeak = false) {
    std::vector<const MetadataSet*> sets = {nullptr};  // to be emptied
    unreached_ = partition_.calculateSerializationOrder(sets, withUnreached, followWeak);
    std::vector<uint32> numbers;
    for (const MetadataSet* set : sets) {
      numbers.push_back(DataIO::readBigEndian<uint32>(set->instanceUID()->rawBuffer() + 12));
    }
    return numbers;
  }

  PartitionMetadata partition_{testDictionary()};
  uint32 unreached_ = 0;
};

TEST_F(SerializationOrder, IsEmptyForAnEmptyPartition) {
  EXPECT_THAT(order(true), IsEmpty());
  EXPECT_EQ(unreached_, 0u);
}

TEST_F(SerializationOrder, StartsWithThePrefaceAndGoesDepthFirstInTheOrderOfTheDefinition) {
  auto& root = thing(2);
  for (const uint32 number : {3u, 4u, 5u, 6u, 7u}) thing(number);
  refer(root, "Ordered", 6);
  refer(root, "Ordered", 5);
  refer(root, "Children", 7);
  refer(root, "Child", 3);
  refer(*partition_.findByInstanceUID(uid(3)).front(), "Child", 4);
  refer(add("Preface", 1), "Child", 2);
  EXPECT_THAT(order(true), ElementsAre(1, 2, 3, 4, 7, 6, 5));
  EXPECT_EQ(unreached_, 0u);
}

TEST_F(SerializationOrder, PutsSetsThatThePrefaceDoesNotReachLast) {
  thing(9);
  refer(add("Preface", 1), "Child", 2);
  thing(2);
  thing(8);
  EXPECT_THAT(order(true), ElementsAre(1, 2, 9, 8));
  EXPECT_EQ(unreached_, 2u);
  EXPECT_THAT(order(false), ElementsAre(1, 2));
  EXPECT_EQ(unreached_, 0u);
}

TEST_F(SerializationOrder, PutsUnreachedOwnersBeforeWhatTheyOwn) {
  thing(5);
  thing(4);
  auto& owner = thing(3);
  add("Preface", 1);
  refer(owner, "Child", 5);
  refer(*partition_.findByInstanceUID(uid(5)).front(), "Child", 4);
  EXPECT_THAT(order(true), ElementsAre(1, 3, 5, 4));
  EXPECT_EQ(unreached_, 3u);
}

TEST_F(SerializationOrder, CountsEverySetAsUnreachedWithoutAPreface) {
  refer(thing(2), "Child", 1);
  thing(1);
  EXPECT_THAT(order(true), ElementsAre(2, 1));
  EXPECT_EQ(unreached_, 2u);
  EXPECT_THAT(order(false), IsEmpty());
}

TEST_F(SerializationOrder, FollowsWeakReferencesOnRequest) {
  add("Preface", 1);
  refer(*partition_.sets().front(), "Child", 2);
  refer(thing(2), "Peer", 3);
  thing(4);
  thing(3);
  EXPECT_THAT(order(true, false), ElementsAre(1, 2, 4, 3));
  EXPECT_EQ(unreached_, 2u);
  EXPECT_THAT(order(true, true), ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(unreached_, 1u);
}

TEST_F(SerializationOrder, HasEverySetOfACircleOnce) {
  auto& preface = add("Preface", 1);
  refer(preface, "Child", 2);
  refer(thing(2), "Child", 3);
  refer(thing(3), "Child", 1);
  refer(thing(4), "Child", 5);
  refer(thing(5), "Child", 4);
  refer(thing(6), "Child", 6);
  EXPECT_THAT(order(true), ElementsAre(1, 2, 3, 6, 4, 5)) << "no other set owns 6";
  EXPECT_EQ(unreached_, 3u);
}

TEST_F(SerializationOrder, HasASetThatSeveralOwnAtItsFirstPlace) {
  auto& preface = add("Preface", 1);
  for (const uint32 number : {2u, 3u, 2u}) refer(preface, "Children", number);
  refer(thing(2), "Child", 4);
  refer(thing(3), "Child", 4);
  thing(4);
  EXPECT_THAT(order(true), ElementsAre(1, 2, 4, 3));
}

TEST_F(SerializationOrder, ReachesTheFirstSetOfAnInstanceUIDThatSeveralCarry) {
  refer(add("Preface", 1), "Child", 2);
  const MetadataSet* first = &thing(2);
  const MetadataSet* second = &thing(2);
  std::vector<const MetadataSet*> sets;
  EXPECT_EQ(partition_.calculateSerializationOrder(sets, true, false), 1u);
  EXPECT_THAT(sets, ElementsAre(partition_.sets()[0], first, second));
}

TEST_F(SerializationOrder, TakesASecondPrefaceForUnreached) {
  add("Preface", 1);
  add("Preface", 2);
  EXPECT_THAT(order(true), ElementsAre(1, 2));
  EXPECT_EQ(unreached_, 1u);
}

TEST_F(SerializationOrder, PassesOverReferencesToNothing) {
  refer(add("Preface", 1), "Child", 99);
  EXPECT_THAT(order(true), ElementsAre(1));
}

TEST_F(SerializationOrder, FollowsALongChainOfSets) {
  const uint32 kSets = isSanitized() ? 10000 : 100000;
  add("Preface", 1);
  refer(*partition_.sets().front(), "Child", 2);
  std::vector<uint32> expected = {1};
  for (uint32 number = 2; number <= kSets; ++number) {
    readSet(partition_, "Thing", Items().instanceUID(number).item(0x4006, hexOf(uid(number + 1))));
    expected.push_back(number);
  }
  EXPECT_EQ(order(true), expected);
  EXPECT_EQ(unreached_, 0u);
}

}  // namespace
}  // namespace Vantor
