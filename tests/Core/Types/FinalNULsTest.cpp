#include "Core/Types/FinalNULs.h"

#include <gtest/gtest.h>

#include "Core/Types/Factories.h"
#include "Core/Types/Types.h"

namespace Vantor::Types {
namespace {

auto_ptr<SimpleDataType> valueOf(Identifiers::Identifier type, const Bytes& octets) {
  return Factories::fromBytes(type, octets.data(), octets.size());
}

Bytes octetsOf(const SimpleDataType& value) {
  return Bytes(value.rawBuffer(), value.rawBuffer() + value.encodedSize());
}

TEST(FinalNULs, AreCountedInCodeUnits) {
  EXPECT_EQ(finalNULsOf(*valueOf(Identifiers::kUTF16String, {0, 'a', 0, 0, 0, 0})), 2u);
  EXPECT_EQ(finalNULsOf(*valueOf(Identifiers::kUTF16String, {1, 0})), 0u) << "U+0100 has a zero octet";
  EXPECT_EQ(finalNULsOf(*valueOf(Identifiers::kUTF8String, {'a', 0, 0, 0})), 3u);
  EXPECT_EQ(finalNULsOf(*valueOf(Identifiers::kISO7String, {0})), 1u);
  EXPECT_EQ(finalNULsOf(*valueOf(Identifiers::kISO8String, {})), 0u);
  EXPECT_EQ(finalNULsOf(UInt32(0)), 0u) << "no text";
}

TEST(FinalNULs, AreAddedToATextThatHasNone) {
  EXPECT_EQ(octetsOf(*withFinalNULs(std::make_unique<UTF16String>(u"ab"), 1)), (Bytes{0, 'a', 0, 'b', 0, 0}));
  EXPECT_EQ(octetsOf(*withFinalNULs(std::make_unique<UTF8String>(u"ab"), 2)), (Bytes{'a', 'b', 0, 0}));
  EXPECT_EQ(octetsOf(*withFinalNULs(std::make_unique<ISO7String>("ab"), 0)), (Bytes{'a', 'b'}));
}

TEST(FinalNULs, AreLeftAsTheyAreWhereThereAreSomeAndInOtherValues) {
  EXPECT_EQ(octetsOf(*withFinalNULs(valueOf(Identifiers::kUTF8String, {'a', 0}), 3)), (Bytes{'a', 0}));
  EXPECT_EQ(octetsOf(*withFinalNULs(std::make_unique<UInt16>(uint16{7}), 3)), (Bytes{0, 7}));
  EXPECT_EQ(withFinalNULs(nullptr, 3), nullptr);
}

}  // namespace
}  // namespace Vantor::Types
