#include "Core/MetaMetadata/HashIndex.h"

#include <gtest/gtest.h>

#include "Core/MetaMetadata/LabelHash.h"

namespace Vantor::MetaMetadata {
namespace {

bool any(uint32) { return true; }

TEST(HashIndex, FindsNothingWhenEmpty) { EXPECT_EQ(HashIndex().find(7, any), HashIndex::kNotFound); }

TEST(HashIndex, FindsNothingWhenOnlyRoomWasMade) {
  HashIndex index;
  index.reserve(100);
  EXPECT_EQ(index.find(0, any), HashIndex::kNotFound);
}

TEST(HashIndex, KeepsEveryPlaceWhileItGrows) {
  HashIndex index;
  for (uint32 place = 0; place < 1000; ++place) index.insert(hashOf(place), place);
  for (uint32 place = 0; place < 1000; ++place) {
    EXPECT_EQ(index.find(hashOf(place), [&](uint32 candidate) { return candidate == place; }), place);
  }
  EXPECT_EQ(index.find(hashOf(1000), [](uint32 candidate) { return candidate == 1000; }), HashIndex::kNotFound);
}

TEST(HashIndex, OffersPlacesOfOneHashInTheOrderInWhichTheyWereEntered) {
  for (const uint32 hash : {0u, 3u, 0xFFFFFFFFu}) {  // the last starts in the last slot and goes on in the first
    HashIndex index;
    for (uint32 place = 0; place < 50; ++place) index.insert(hash, place);
    uint32 expected = 0;
    index.find(hash, [&](uint32 candidate) {
      EXPECT_EQ(candidate, expected++);
      return false;
    });
    EXPECT_EQ(expected, 50u);
  }
}

TEST(HashIndex, OffersNoPlaceOfAnotherHashInTheSameSlot) {
  HashIndex index;
  index.insert(1, 10);
  index.insert(1 + (1u << 20), 20);
  EXPECT_EQ(index.find(1 + (1u << 20), any), 20u);
  EXPECT_EQ(index.find(1 + (1u << 21), any), HashIndex::kNotFound);
}

}  // namespace
}  // namespace Vantor::MetaMetadata
