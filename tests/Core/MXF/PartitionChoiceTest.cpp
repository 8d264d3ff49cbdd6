#include "Core/MXF/PartitionChoice.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;

TEST(PartitionChoice, IsTheHeaderUnlessToldOtherwise) {
  EXPECT_EQ(PartitionChoice().kind(), PartitionChoice::Kind::kHeader);
  EXPECT_EQ(PartitionChoice().name(), "header partition");
}

TEST(PartitionChoice, ReadsTheBest) {
  EXPECT_EQ(PartitionChoice::parse("best").kind(), PartitionChoice::Kind::kBest);
  EXPECT_EQ(PartitionChoice::best().name(), "best partition");
  EXPECT_EQ(PartitionChoice::best().text(), "best");
}

TEST(PartitionChoice, ReadsHeaderAndFooter) {
  EXPECT_EQ(PartitionChoice::parse("header").kind(), PartitionChoice::Kind::kHeader);
  EXPECT_EQ(PartitionChoice::parse("footer").kind(), PartitionChoice::Kind::kFooter);
  EXPECT_EQ(PartitionChoice::footer().name(), "footer partition");
}

TEST(PartitionChoice, ReadsNumbersUpToTheLargestOf32Bits) {
  EXPECT_EQ(PartitionChoice::parse("0").number(), 0u);
  EXPECT_EQ(PartitionChoice::parse("12").number(), 12u);
  EXPECT_EQ(PartitionChoice::parse("4294967295").number(), 4294967295u);
  EXPECT_EQ(PartitionChoice::parse("12").kind(), PartitionChoice::Kind::kNumber);
  EXPECT_EQ(PartitionChoice::parse("12").name(), "partition 12");
}

TEST(PartitionChoice, RefusesEveryOtherText) {
  for (const char* text : {"", " ", "Header", "footers", "-1", "+1", "1 ", " 1", "0x1", "1.0", "4294967296"}) {
    EXPECT_THROW(PartitionChoice::parse(text), Exceptions::InvalidFormat) << text;
  }
  EXPECT_THAT([] { PartitionChoice::parse("body"); },
              ThrowsMessage<Exceptions::InvalidFormat>(
                  StrEq("'body' names no partition: expected 'header', 'footer', 'best' or a number from 0")));
}

}  // namespace
}  // namespace Vantor::MXF
