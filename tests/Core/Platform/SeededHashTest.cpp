#include "Core/Platform/SeededHash.h"

#include <gtest/gtest.h>

#include <set>

namespace Vantor::Platform {
namespace {

TEST(SeededHash, IsOneNumberForOnePairThroughoutTheProcess) {
  EXPECT_EQ(hashSeed(), hashSeed());
  EXPECT_EQ(seededHash(1, 2), seededHash(1, 2));
}

TEST(SeededHash, DependsOnBothNumbersAndTheirOrder) {
  std::set<uint64> hashes;
  for (uint64 first = 0; first < 64; ++first) {
    for (uint64 second = 0; second < 64; ++second) hashes.insert(seededHash(first, second));
  }
  EXPECT_EQ(hashes.size(), 64u * 64u);
}

TEST(SeededHash, SpreadsTheHighestBitToTheLowest) {
  int changes = 0;
  for (uint64 number = 0; number < 256; ++number) {
    changes += static_cast<int>((seededHash(number, 0) ^ seededHash(number | uint64{1} << 63, 0)) & 1);
  }
  EXPECT_GT(changes, 64);
  EXPECT_LT(changes, 192);
}

}  // namespace
}  // namespace Vantor::Platform
