#include "Core/Platform/Numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace Vantor::Platform {
namespace {

TEST(ToDecimal, WritesZeroAsOneDigit) { EXPECT_EQ(toDecimal(0), u"0"); }

TEST(ToDecimal, WritesEightBitIntegersAsNumbers) {
  EXPECT_EQ(toDecimal(uint8{65}), u"65");
  EXPECT_EQ(toDecimal(int8{-128}), u"-128");
}

TEST(ToDecimal, WritesLargeNumbersWithoutGrouping) {
  EXPECT_EQ(toDecimal(uint32{4294967295}), u"4294967295");
  EXPECT_EQ(toDecimal(int16{-12345}), u"-12345");
}

TEST(ToDecimal, ReachesTheEndsOfSixtyFourBits) {
  EXPECT_EQ(toDecimal(std::numeric_limits<int64>::min()), u"-9223372036854775808");
  EXPECT_EQ(toDecimal(std::numeric_limits<int64>::max()), u"9223372036854775807");
  EXPECT_EQ(toDecimal(std::numeric_limits<uint64>::max()), u"18446744073709551615");
}

}  // namespace
}  // namespace Vantor::Platform
