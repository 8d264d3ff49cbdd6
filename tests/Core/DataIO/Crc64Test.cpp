#include "Core/DataIO/Crc64.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantor::DataIO {
namespace {

uint64 checkOf(const std::string& text) {
  Crc64 check;
  check.write(reinterpret_cast<const uint8*>(text.data()), text.size());
  return check.value();
}

TEST(Crc64, HasTheValueThatIsListedForTheNineDigits) { EXPECT_EQ(checkOf("123456789"), 0x6C40DF5F0B497347u); }

TEST(Crc64, IsThatOfAllBytesHoweverTheyAreHandedOver) {
  Crc64 check;
  EXPECT_EQ(check.value(), 0u);
  check.write(reinterpret_cast<const uint8*>("12345"), 5);
  check.write(nullptr, 0);
  check.write(reinterpret_cast<const uint8*>("6789"), 4);
  EXPECT_EQ(check.value(), checkOf("123456789"));
}

}  // namespace
}  // namespace Vantor::DataIO
