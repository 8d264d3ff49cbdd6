#include <gtest/gtest.h>

#include <limits>

#include "tests/Core/Types/ValueBytes.h"

namespace Vantor::Types {
namespace {

template <class T>
void expectNumber(decltype(T().value()) number, const Bytes& bytes) {
  EXPECT_EQ(toBytes(T(number)), bytes);
  EXPECT_EQ(T(number).value(), number);
  EXPECT_EQ(fromBytes<T>(bytes).value(), number);
}

template <class Number>
constexpr Number kLowest = std::numeric_limits<Number>::min();
template <class Number>
constexpr Number kHighest = std::numeric_limits<Number>::max();

TEST(Scalars, OfOneOctetHoldTheirLowestAndHighestNumber) {
  expectNumber<Int8>(kLowest<int8>, {0x80});
  expectNumber<Int8>(kHighest<int8>, {0x7f});
  expectNumber<Int8>(-1, {0xff});
  expectNumber<UInt8>(0, {0x00});
  expectNumber<UInt8>(kHighest<uint8>, {0xff});
  expectNumber<Orientation>(kHighest<uint8>, {0xff});
  expectNumber<SignalStandard>(kHighest<uint8>, {0xff});
}

TEST(Scalars, OfTwoOctetsHoldTheirLowestAndHighestNumber) {
  expectNumber<Int16>(kLowest<int16>, {0x80, 0x00});
  expectNumber<Int16>(kHighest<int16>, {0x7f, 0xff});
  expectNumber<UInt16>(0, {0x00, 0x00});
  expectNumber<UInt16>(kHighest<uint16>, {0xff, 0xff});
  expectNumber<UTF16>(0xd83d, {0xd8, 0x3d});
}

TEST(Scalars, OfFourOctetsHoldTheirLowestAndHighestNumber) {
  expectNumber<Int32>(kLowest<int32>, {0x80, 0x00, 0x00, 0x00});
  expectNumber<Int32>(kHighest<int32>, {0x7f, 0xff, 0xff, 0xff});
  expectNumber<UInt32>(0, {0x00, 0x00, 0x00, 0x00});
  expectNumber<UInt32>(kHighest<uint32>, {0xff, 0xff, 0xff, 0xff});
}

TEST(Scalars, OfEightOctetsHoldTheirLowestAndHighestNumber) {
  const Bytes lowest = {0x80, 0, 0, 0, 0, 0, 0, 0};
  const Bytes highest = {0x7f, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
  expectNumber<Int64>(kLowest<int64>, lowest);
  expectNumber<Int64>(kHighest<int64>, highest);
  expectNumber<Length>(kLowest<int64>, lowest);
  expectNumber<Position>(kHighest<int64>, highest);
  expectNumber<Length>(-1, Bytes(8, uint8{0xff}));
  expectNumber<UInt64>(0, Bytes(8));
  expectNumber<UInt64>(kHighest<uint64>, Bytes(8, uint8{0xff}));
}

TEST(Boolean, ReadsNothingButZeroAndOne) {
  EXPECT_TRUE(fromBytes<Boolean>({0x01}).value());
  EXPECT_FALSE(fromBytes<Boolean>({0x00}).value());
  for (int octet = 2; octet <= 0xff; ++octet) EXPECT_FALSE(decodes<Boolean>({static_cast<uint8>(octet)})) << octet;
}

}  // namespace
}  // namespace Vantor::Types
