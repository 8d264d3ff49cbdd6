#include "Look/SummaryText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantor::Tool {

using Field = FieldGroup::Field;

bool operator==(const Field& left, const Field& right) { return left.name == right.name && left.value == right.value; }
void PrintTo(const Field& field, std::ostream* out) { *out << field.name << " = " << field.value; }

namespace {

using Summary::Essence;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = Summary::Track::Kind;

/// The fields of a track of this essence.
std::vector<Field> fieldsOf(const Essence& essence, Kind kind) {
  Summary::Track track;
  track.kind = kind;
  track.essence = std::make_shared<const Essence>(essence);
  Summary::MetadataSummary summary;
  summary.tracks = {track};
  return groupsOf(summary).at(1).fields;
}

std::vector<Field> soundOf(const Essence& essence) { return fieldsOf(essence, Kind::kSound); }
std::vector<Field> pictureOf(const Essence& essence) { return fieldsOf(essence, Kind::kPicture); }

// sound

TEST(SummaryOfSound, HasNoFieldsOfWhatIsNotThere) { EXPECT_THAT(soundOf({}), IsEmpty()); }

TEST(SummaryOfSound, HasRateDepthAndChannels) {
  Essence essence;
  essence.samplingRate = {48000, 1};
  essence.bitDepth = 24;
  essence.channelCount = 2;
  EXPECT_THAT(soundOf(essence),
              ElementsAre(Field{"sampling rate", "48000 Hz"}, Field{"depth", "24 bits"}, Field{"channels", "2"}));
}

Summary::Channel left() {
  Summary::Channel channel;
  channel.number = 1;
  channel.tagSymbol = "chL";
  channel.tagName = "Left";
  return channel;
}

TEST(SummaryOfSound, HasEachChannelByNumberWithItsLanguageAndGroup) {
  Essence essence;
  essence.channels = {left(), Summary::Channel()};
  essence.channels[0].language = "no";
  essence.channels[0].group = 0;
  essence.channels[1].tagSymbol = "chR";
  essence.groups.resize(1);
  essence.groups[0].tagSymbol = "sgST";
  EXPECT_THAT(soundOf(essence), ElementsAre(Field{"channel 1", "chL, Left, language: no, in sgST"},
                                            Field{"channel", "chR"}, Field{"group", "sgST"}));
}

TEST(SummaryOfSound, CallsAGroupOfAChannelByWhatItHas) {
  Essence essence;
  essence.channels = {left()};
  essence.channels[0].group = 0;
  essence.groups.resize(1);
  EXPECT_THAT(soundOf(essence), ElementsAre(Field{"channel 1", "chL, Left, in a group"}));
  essence.groups[0].tagName = "5.1";
  EXPECT_THAT(soundOf(essence), ElementsAre(Field{"channel 1", "chL, Left, in 5.1"}, Field{"group", "5.1"}));
}

TEST(SummaryOfSound, LabelsWhatAGroupHas) {
  Essence essence;
  essence.groups = {{"sg51", "5.1", "no", "no mca", "PRM", "FCMP"}, {}};
  essence.groups[1].title = "Commentary";
  EXPECT_THAT(soundOf(essence),
              ElementsAre(Field{"group", "sg51, 5.1, language: no, title: no mca, content: PRM, element: FCMP"},
                          Field{"group", "title: Commentary"}));
}

// pictures

TEST(SummaryOfPictures, ShowsAnAspectRatioAsItIs) {
  Essence essence;
  essence.aspectRatio = {0, 1};
  EXPECT_THAT(pictureOf(essence), ElementsAre(Field{"aspect ratio", "0:1"}));
}

TEST(SummaryOfPictures, NamesTheFieldThatComesFirstOfInterlacedOnes) {
  Essence essence;
  essence.scan = Summary::Scan::kInterlaced;
  essence.frameLayout = "SeparateFields";
  const auto scan = [&essence] { return pictureOf(essence).at(0).value; };
  EXPECT_EQ(scan(), "interlaced, SeparateFields, field order not given");
  essence.fieldDominance = "UnspecifiedField";
  EXPECT_EQ(scan(), "interlaced, SeparateFields, UnspecifiedField");
  essence.fieldDominance = "FieldTwo";
  EXPECT_EQ(scan(), "interlaced, SeparateFields, FieldTwo first");
  essence.fieldOrder = Summary::FieldOrder::kBottomFirst;
  EXPECT_EQ(scan(), "interlaced, SeparateFields, bottom field first (FieldTwo)");
  essence.fieldOrder = Summary::FieldOrder::kTopFirst;
  EXPECT_EQ(scan(), "interlaced, SeparateFields, top field first (FieldTwo)");
  essence.scan = Summary::Scan::kProgressive;
  essence.frameLayout = "FullFrame";
  EXPECT_EQ(scan(), "progressive, FullFrame, FieldTwo");
}

// rates and times

TEST(RateText, IsAWholeNumberOrADecimalOneWithItsRatio) {
  EXPECT_EQ(rateText({25, 1}), "25");
  EXPECT_EQ(rateText({50, 2}), "25");
  EXPECT_EQ(rateText({30000, 1001}), "29.97 (30000/1001)");
  EXPECT_EQ(rateText({24000, 1001}), "23.976 (24000/1001)");
  EXPECT_EQ(rateText({48000, 256}), "187.5 (48000/256)");
  EXPECT_EQ(rateText({1, 3}), "0.33333 (1/3)");
}

TEST(TimeText, CountsHoursMinutesSecondsAndMilliseconds) {
  EXPECT_EQ(timeText(0), "00:00:00.000");
  EXPECT_EQ(timeText(1695.04), "00:28:15.040");
  EXPECT_EQ(timeText(3600), "01:00:00.000");
  EXPECT_EQ(timeText(100 * 3600.0), "100:00:00.000");
}

TEST(TimeText, RoundsToMillisecondsAndCarries) {
  EXPECT_EQ(timeText(0.0334), "00:00:00.033");
  EXPECT_EQ(timeText(0.0336), "00:00:00.034");
  EXPECT_EQ(timeText(59.9996), "00:01:00.000");
  EXPECT_EQ(timeText(3599.9999), "01:00:00.000");
}

TEST(TimeText, EndsAtTheMostHoursThatItCounts) {
  EXPECT_EQ(timeText(1e12), "277777777:46:40.000");
  EXPECT_EQ(timeText(1e300), timeText(1e12));
}

}  // namespace
}  // namespace Vantor::Tool
