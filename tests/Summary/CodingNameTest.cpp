#include "Summary/CodingName.h"

#include <gtest/gtest.h>

#include "Core/Dictionary/BuiltInDictionary.h"

namespace Vantor::Summary {
namespace {

std::string nameOfLabel(const char* symbol) {
  const auto* label = builtInLabels().findLabel(std::string_view(symbol));
  return label == nullptr ? "not registered" : codingName(label->key).value_or("none");
}

TEST(CodingName, IsTheOneOfTheNearestNode) {
  EXPECT_EQ(nameOfLabel("MPEG2422PHLLongGOP"), "MPEG-2");
  EXPECT_EQ(nameOfLabel("SMPTED1050Mbps625x50I"), "D-10 50 Mbps");
  EXPECT_EQ(nameOfLabel("SMPTED1030Mbps525x5994I"), "D-10 30 Mbps");
  EXPECT_EQ(nameOfLabel("H264MPEG4AVCHighProfileUnconstrainedCoding"), "AVC");
  EXPECT_EQ(nameOfLabel("H264MPEG4AVCHigh422IntraRP2027ConstrainedClass10010805994iCoding"), "AVC-Intra 100");
  EXPECT_EQ(nameOfLabel("DVBasedVideo50Mbps625x50I"), "DV 50 Mbps");
  EXPECT_EQ(nameOfLabel("HTJ2KPictureCodingSchemeGeneric"), "HTJ2K");
  EXPECT_EQ(nameOfLabel("JPEG2000DigitalCinemaProfile"), "JPEG 2000");
  EXPECT_EQ(nameOfLabel("ProResPictureCoding422HQ"), "ProRes 422 HQ");
  EXPECT_EQ(nameOfLabel("DolbyECompressedAudio"), "Dolby E");
  EXPECT_EQ(nameOfLabel("SMPTE382MDefaultUncompressedSoundCoding"), "PCM");
}

TEST(CodingName, IsNoneForLabelsThatNameNoCoding) {
  EXPECT_EQ(nameOfLabel("UndefinedSoundCoding"), "none");
  EXPECT_EQ(nameOfLabel("PictureEssenceTrack"), "none");
  EXPECT_EQ(codingName(Types::UniversalLabel()), std::nullopt);
}

TEST(CodingName, IgnoresTheVersionOfTheLabel) {
  const auto key = builtInLabels().findLabel(std::string_view("VC2Stream"))->key.key();
  EXPECT_EQ(codingName(Types::UniversalLabel(key.withOctet(KLV::Key::kVersionOctet, 1))).value_or(""), "VC-2");
}

}  // namespace
}  // namespace Vantor::Summary
