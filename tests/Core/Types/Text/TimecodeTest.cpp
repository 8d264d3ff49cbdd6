#include "Core/Types/Text/Timecode.h"

#include <gtest/gtest.h>

#include "Core/Platform/Strings.h"

namespace Vantor::Types {
namespace {

constexpr TimecodeBase k25 = {25, false};
constexpr TimecodeBase k30Drop = {30, true};
constexpr TimecodeBase k60Drop = {60, true};

std::string printedTimecode(int64 frames, const TimecodeBase& base) {
  const auto text = printTimecode(frames, base);
  return text ? Utils::wstringToString(*text) : "none";
}

int64 framesOf(std::u16string_view text, const TimecodeBase& base) {
  const auto parsed = parseTimecode(text, base);
  EXPECT_TRUE(parsed.isTimecode && parsed.reason.empty()) << parsed.reason;
  return parsed.frames;
}

std::string refusedTimecode(std::u16string_view text, const TimecodeBase& base) {
  const auto parsed = parseTimecode(text, base);
  return parsed.isTimecode ? parsed.reason : "no timecode";
}

TEST(Timecode, CountsFramesWithoutDrop) {
  EXPECT_EQ(framesOf(u"10:00:00:00", k25), 900000);
  EXPECT_EQ(framesOf(u" 23:59:59:24 ", k25), 24 * 3600 * 25 - 1);
  EXPECT_EQ(printedTimecode(900000, k25), "10:00:00:00");
  EXPECT_EQ(printedTimecode(0, {24, false}), "00:00:00:00");
  EXPECT_EQ(printedTimecode(119, {120, false}), "00:00:00:119");
}

TEST(Timecode, SkipsAddressesWithDropFrame) {
  EXPECT_EQ(framesOf(u"00:00:59;29", k30Drop), 1799);
  EXPECT_EQ(framesOf(u"00:01:00;02", k30Drop), 1800);
  EXPECT_EQ(framesOf(u"00:10:00;00", k30Drop), 17982);
  EXPECT_EQ(framesOf(u"01:00:00;00", k30Drop), 107892);
  EXPECT_EQ(framesOf(u"10:00:00.00", k30Drop), 1078920);
  EXPECT_EQ(framesOf(u"10:00:00:00", k30Drop), 1078920) << "the set says that it drops frames";
  EXPECT_EQ(framesOf(u"00:01:00;04", k60Drop), 3600);
  EXPECT_EQ(framesOf(u"01:00:00;00", k60Drop), 215784);
  EXPECT_EQ(printedTimecode(1800, k30Drop), "00:01:00;02");
  EXPECT_EQ(printedTimecode(1799, k30Drop), "00:00:59;29");
}

TEST(Timecode, PrintsEveryFrameOfADayAsItsOwnAddress) {
  for (const auto& base : {k25, k30Drop, k60Drop}) {
    std::string before;
    int64 frames = 0;
    for (; printedTimecode(frames, base) != "none"; frames += frames < 40000 ? 1 : 997) {
      const auto text = printedTimecode(frames, base);
      ASSERT_LT(before, text);
      ASSERT_EQ(framesOf(Utils::stringToWstring(text), base), frames) << text;
      before = text;
    }
    EXPECT_GT(frames, int64{23} * 3600 * base.framesPerSecond);
  }
  EXPECT_EQ(printedTimecode(2589407, k30Drop), "23:59:59;29");
  EXPECT_EQ(printedTimecode(2589408, k30Drop), "none");
}

TEST(Timecode, HasNoneOutsideOfADayAndWithoutABase) {
  EXPECT_EQ(printedTimecode(-1, k25), "none");
  EXPECT_EQ(printedTimecode(24 * 3600 * 25, k25), "none");
  EXPECT_EQ(printedTimecode(0, {0, false}), "none");
  EXPECT_EQ(printedTimecode(0, {25, true}), "none");
}

TEST(Timecode, GivesTheReasonForAddressesThatDoNotExist) {
  EXPECT_EQ(refusedTimecode(u"00:01:00;00", k30Drop), "drop frame skips it");
  EXPECT_EQ(refusedTimecode(u"00:01:00:01", k30Drop), "drop frame skips it");
  EXPECT_EQ(refusedTimecode(u"00:59:00;03", k60Drop), "drop frame skips it");
  EXPECT_EQ(refusedTimecode(u"10:00:00;00", k25), "';' is for drop frame, and DropFrame of the set is false");
  EXPECT_EQ(refusedTimecode(u"10:00:00;00", {25, true}), "drop frame is for 30 frames a second and multiples");
  EXPECT_EQ(refusedTimecode(u"10:00:00:00", {0, false}), "FramesPerSecond of the set is missing or 0");
  EXPECT_EQ(refusedTimecode(u"10:00:00:25", k25), "the frames end at 24");
  EXPECT_EQ(refusedTimecode(u"10:00:60:00", k25), "the seconds end at 59");
  EXPECT_EQ(refusedTimecode(u"10:60:00:00", k25), "the minutes end at 59");
  EXPECT_EQ(refusedTimecode(u"24:00:00:00", k25), "the hours end at 23");
  EXPECT_EQ(refusedTimecode(u"99999999999999999999:00:00:00", k25), "no timecode");
  for (const auto* text : {u"", u"10", u"10:00:00", u"10:00:00:00:00", u"10;00;00;00", u"-1:00:00:00", u"10:00:00:"}) {
    EXPECT_EQ(refusedTimecode(text, k25), "no timecode") << Utils::wstringToString(text);
  }
}

}  // namespace
}  // namespace Vantor::Types
