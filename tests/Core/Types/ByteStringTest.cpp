#include <gtest/gtest.h>

#include <cstdint>

#include "tests/Core/Types/ValueBytes.h"

namespace Vantor::Types {
namespace {

template <class T>
class ByteStringTest : public ::testing::Test {};
using ByteStrings = ::testing::Types<DataStream, DataValue, Unknown>;
TYPED_TEST_SUITE(ByteStringTest, ByteStrings, TypeNames);

TYPED_TEST(ByteStringTest, HoldsNoOctets) {
  const TypeParam value(nullptr, 0);
  EXPECT_EQ(value.encodedSize(), 0u);
  EXPECT_NE(value.rawBuffer(), nullptr);
  EXPECT_EQ(value, fromBytes<TypeParam>({}));
}

TYPED_TEST(ByteStringTest, HoldsMoreThan65535Octets) {
  Bytes bytes(70000);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8>(i * 7);
  const TypeParam value(bytes.data(), bytes.size());
  EXPECT_EQ(value.encodedSize(), 70000u);
  EXPECT_EQ(value.serializedSize(), 70000u);
  EXPECT_EQ(toBytes(value), bytes);
  EXPECT_EQ(fromBytes<TypeParam>(bytes), value);
}

TYPED_TEST(ByteStringTest, CopiesItsOctets) {
  Bytes bytes = {1, 2, 3};
  const TypeParam value(bytes.data(), bytes.size());
  bytes[0] = 9;
  EXPECT_EQ(toBytes(value), (Bytes{1, 2, 3}));
}

TYPED_TEST(ByteStringTest, CountsFinalZeros) { EXPECT_NE(TypeParam(Bytes{1, 0}), TypeParam(Bytes{1})); }

#if SIZE_MAX > UINT32_MAX
TYPED_TEST(ByteStringTest, RefusesFourGibibytesBeforeItTouchesThem) {
  const uint8 octet = 0;
  const std::size_t size = std::size_t{1} << 32;
  EXPECT_THROW(TypeParam(&octet, size), Exceptions::InvalidLength);
  EXPECT_THROW(J2KQuantisationDefault(0, &octet, size - 1), Exceptions::InvalidLength);
  EXPECT_THROW(J2KCodingStyleDefault(0, 0, &octet, size - 5), Exceptions::InvalidLength);
  EXPECT_EQ(Factories::fromBytes(TypeParam::kIdentifier, &octet, size), nullptr);
  EXPECT_EQ(Factories::collectionFromBytes(Identifiers::kArray, TypeParam::kIdentifier, &octet, size), nullptr);
}
#endif

TEST(Unknown, IsMadeFromTheValueOfATriplet) {
  EXPECT_EQ(toBytes(Unknown(KLV::Value(Bytes{0xca, 0xfe}))), (Bytes{0xca, 0xfe}));
  EXPECT_EQ(Unknown(KLV::Value()), Unknown());
}

}  // namespace
}  // namespace Vantor::Types
