#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "tests/Core/Types/ValueBytes.h"

namespace Vantor::Types {
namespace {

Timestamp atMilliSecond(uint16 milliSecond) { return Timestamp(2024, 12, 31, 23, 59, 58, milliSecond); }

TEST(Rational, ReadsNumeratorThenDenominator) {
  const Bytes editRate = {0x00, 0x00, 0x75, 0x30,   // 30000
                          0x00, 0x00, 0x03, 0xe9};  // 1001
  const auto value = fromBytes<Rational>(editRate);
  EXPECT_EQ(value.numerator(), 30000);
  EXPECT_EQ(value.denominator(), 1001);
  EXPECT_EQ(toBytes(value), editRate);
}

TEST(Rational, HoldsTheLowestAndHighestNumbers) {
  const Rational value(std::numeric_limits<int32>::min(), std::numeric_limits<int32>::max());
  EXPECT_EQ(toBytes(value), (Bytes{0x80, 0, 0, 0, 0x7f, 0xff, 0xff, 0xff}));
  EXPECT_EQ(fromBytes<Rational>(toBytes(value)).numerator(), std::numeric_limits<int32>::min());
}

TEST(Timestamp, ReadsItsFieldsInWireOrder) {
  const Bytes bytes = {0x07, 0xe8, 12, 31, 23, 59, 58, 249};
  const auto value = fromBytes<Timestamp>(bytes);
  EXPECT_EQ(value.year(), 2024);
  EXPECT_EQ(value.month(), 12);
  EXPECT_EQ(value.day(), 31);
  EXPECT_EQ(value.hour(), 23);
  EXPECT_EQ(value.minute(), 59);
  EXPECT_EQ(value.second(), 58);
  EXPECT_EQ(value.milliSecond(), 996);
  EXPECT_EQ(toBytes(value), bytes);
}

TEST(Timestamp, WritesAFourthOfItsMilliSeconds) {
  EXPECT_EQ(toBytes(atMilliSecond(999)).back(), 249);
  EXPECT_EQ(toBytes(atMilliSecond(3)).back(), 0);
  EXPECT_EQ(toBytes(atMilliSecond(4)).back(), 1);
  EXPECT_EQ(toBytes(atMilliSecond(1000)).back(), 250);
}

TEST(Timestamp, WritesTheLowOctetOfAFourthThatIsTooLarge) {
  EXPECT_EQ(toBytes(atMilliSecond(1023)).back(), 255);
  EXPECT_EQ(toBytes(atMilliSecond(1024)).back(), 0);
  EXPECT_EQ(toBytes(atMilliSecond(0xffff)).back(), 0xff);
}

TEST(Timestamp, KeepsTheMilliSecondsThatItWasMadeWith) {
  EXPECT_EQ(atMilliSecond(999).milliSecond(), 999);
  EXPECT_EQ(atMilliSecond(3).milliSecond(), 3);
  EXPECT_EQ(atMilliSecond(0xffff).milliSecond(), 0xffff);
}

TEST(Timestamp, EqualsWhatWritesTheSameOctets) {
  EXPECT_EQ(atMilliSecond(999), atMilliSecond(996));
  EXPECT_NE(atMilliSecond(999), atMilliSecond(1000));
}

TEST(Timestamp, KeepsAllFieldsOfAnUnlikelyDate) {
  const Bytes bytes(8, uint8{0xff});
  const auto value = fromBytes<Timestamp>(bytes);
  EXPECT_EQ(value.month(), 255);
  EXPECT_EQ(value.milliSecond(), 1020);
  EXPECT_EQ(toBytes(value), bytes);
}

TEST(ProductVersion, ReadsItsFieldsInWireOrder) {
  const Bytes bytes = {0x00, 0x01, 0x02, 0x00, 0x00, 0x03, 0xff, 0xff, 0x00, 0x05};
  const auto value = fromBytes<ProductVersion>(bytes);
  EXPECT_EQ(value.major(), 1);
  EXPECT_EQ(value.minor(), 0x0200);
  EXPECT_EQ(value.patch(), 3);
  EXPECT_EQ(value.build(), 0xffff);
  EXPECT_EQ(value.releaseVersion(), ReleaseVersion::kPrivateBuild);
  EXPECT_EQ(toBytes(value), bytes);
}

TEST(ProductVersion, CarriesAReleaseThatHasNoName) {
  const Bytes bytes = {0, 0, 0, 0, 0, 0, 0, 0, 0xab, 0xcd};
  const auto value = fromBytes<ProductVersion>(bytes);
  EXPECT_EQ(static_cast<uint16>(value.releaseVersion()), 0xabcd);
  EXPECT_EQ(toBytes(ProductVersion(0, 0, 0, 0, value.releaseVersion())), bytes);
}

TEST(VersionType, ReadsMajorThenMinor) {
  const auto value = fromBytes<VersionType>({0x01, 0x03});
  EXPECT_EQ(value.major(), 1);
  EXPECT_EQ(value.minor(), 3);
  EXPECT_EQ(toBytes(VersionType(255, 0)), (Bytes{0xff, 0x00}));
}

TEST(RGBALayout, HoldsEightComponentsOfCodeAndDepth) {
  const Bytes bytes = {'R', 10, 'G', 11, 'B', 12, 'A', 13, 0, 0, 0, 0, 0, 0, 'F', 255};
  const auto value = fromBytes<RGBALayout>(bytes);
  EXPECT_EQ(value.get(0), (RGBAComponent{'R', 10}));
  EXPECT_EQ(value.get(3), (RGBAComponent{'A', 13}));
  EXPECT_EQ(value.get(4), RGBAComponent());
  EXPECT_EQ(value.get(7), (RGBAComponent{'F', 255}));
  EXPECT_EQ(toBytes(value), bytes);
}

TEST(RGBALayout, WritesAComponentThatWasSet) {
  RGBALayout layout;
  layout.set(1, {'B', 8});
  EXPECT_EQ(toBytes(layout), (Bytes{0, 0, 'B', 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(layout.get(1), (RGBAComponent{'B', 8}));
}

TEST(RGBALayout, RefusesANinthComponent) {
  RGBALayout layout;
  EXPECT_THROW(layout.set(8, {'R', 8}), Exceptions::InvalidLength);
  EXPECT_THROW(layout.set(0xffffffff, {'R', 8}), Exceptions::InvalidLength);
  EXPECT_THROW(layout.get(8), Exceptions::InvalidLength);
  EXPECT_EQ(layout, RGBALayout());
}

TEST(J2KPictureComponent, ReadsItsThreeOctets) {
  const auto value = fromBytes<J2KPictureComponent>({0x8b, 1, 2});
  EXPECT_EQ(value.sSizi(), 0x8b);
  EXPECT_EQ(value.xRSizi(), 1);
  EXPECT_EQ(value.yRSizi(), 2);
}

TEST(J2KCodingStyleDefault, ReadsScodThenSGcodThenTheRest) {
  const auto value = fromBytes<J2KCodingStyleDefault>({0x01, 0x04, 0x00, 0x01, 0x02, 0x05, 0x03, 0x00});
  EXPECT_EQ(value.scod(), 1);
  EXPECT_EQ(value.sGcod(), 0x04000102u);
  EXPECT_EQ(toBytes(value.spcod()), (Bytes{0x05, 0x03, 0x00}));
}

TEST(J2KCodingStyleDefault, MayEndAfterSGcod) {
  const auto value = fromBytes<J2KCodingStyleDefault>({0x01, 0xff, 0xff, 0xff, 0xff});
  EXPECT_EQ(value.sGcod(), 0xffffffffu);
  EXPECT_EQ(value.spcod().encodedSize(), 0u);
  EXPECT_NE(value.spcod().rawBuffer(), nullptr);
}

TEST(J2KCodingStyleDefault, KeepsItsOctetsWhenMovedFrom) {
  auto style = fromBytes<J2KCodingStyleDefault>({0x01, 0x04, 0x00, 0x01, 0x02, 0x05});
  const J2KCodingStyleDefault taken = std::move(style);
  EXPECT_EQ(style.sGcod(), 0x04000102u);  // NOLINT(bugprone-use-after-move): that it stays whole is what is tested
  EXPECT_EQ(taken, style);
}

TEST(J2KQuantisationDefault, ReadsSqcdThenTheRest) {
  const auto value = fromBytes<J2KQuantisationDefault>({0x42, 0x77, 0x1e});
  EXPECT_EQ(value.sqcd(), 0x42);
  EXPECT_EQ(toBytes(value.sPgcd()), (Bytes{0x77, 0x1e}));
  EXPECT_EQ(fromBytes<J2KQuantisationDefault>({0x42}).sPgcd(), DataStream());
}

}  // namespace
}  // namespace Vantor::Types
