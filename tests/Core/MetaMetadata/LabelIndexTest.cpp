#include "Core/MetaMetadata/LabelIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantor::MetaMetadata {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Types::UniversalLabel numberedLabel(uint8 number) {
  std::array<uint8, 16> octets = {0x06, 0x0e, 0x2b, 0x34, 4, 1, 1, 1, number};
  return Types::UniversalLabel(octets);
}

class LabelLookup : public testing::Test {
 protected:
  std::vector<std::string> named(const std::string& text, uint8 below = 0xff) const {
    std::vector<std::string> symbols;
    for (const auto* label : index_.findNamed(text, [below](const auto& key) { return key.octet(9) < below; })) {
      symbols.emplace_back(label->symbol);
    }
    return symbols;
  }

  LabelIndex index_{{{numberedLabel(1), "Transfer_ITU709", "ITU-R BT.709 Transfer"},
                     {numberedLabel(2), "Primaries_ITU709", "ITU-R BT.709 Color Primaries"},
                     {numberedLabel(3), "MXFOP1aUniTrack", "MXF OP1a UniTrack"},
                     {numberedLabel(4), "MXFOP1aUniTrackToo", "MXF OP1a UniTrack Too"},
                     {numberedLabel(5), "Picture", "A track"},
                     {numberedLabel(6), "picture", "Another track"},
                     {numberedLabel(1), "Replaced", "Of a key that another label has"}}};
};

TEST_F(LabelLookup, FindsByKeyAndBySymbol) {
  EXPECT_EQ(index_.find(numberedLabel(1))->symbol, "Transfer_ITU709");
  EXPECT_EQ(index_.find(numberedLabel(9)), nullptr);
  EXPECT_EQ(index_.findSymbol("picture")->key, numberedLabel(6));
  EXPECT_EQ(index_.findSymbol("PICTURE"), nullptr);
  EXPECT_EQ(index_.findSymbol("Replaced"), nullptr);
}

TEST_F(LabelLookup, PrefersSymbolsToNamesAndWholesToParts) {
  EXPECT_THAT(named("mxfop1aunitrack"), ElementsAre("MXFOP1aUniTrack"));
  EXPECT_THAT(named("MXF OP1a UniTrack Too"), ElementsAre("MXFOP1aUniTrackToo"));
  EXPECT_THAT(named("PICTURE"), ElementsAre("Picture", "picture"));
  EXPECT_THAT(named("a track"), ElementsAre("Picture"));
}

TEST_F(LabelLookup, FindsPartsWhateverTheirPunctuation) {
  EXPECT_THAT(named("BT.709"), ElementsAre("Transfer_ITU709", "Primaries_ITU709"));
  EXPECT_THAT(named("bt 709", 2), ElementsAre("Transfer_ITU709"));
  EXPECT_THAT(named("OP1a"), ElementsAre("MXFOP1aUniTrack", "MXFOP1aUniTrackToo"));
  EXPECT_THAT(named("UniTrack"), ElementsAre("MXFOP1aUniTrack", "MXFOP1aUniTrackToo"));
}

TEST_F(LabelLookup, FindsNoPartThatBeginsOrEndsWithinAWord) {
  EXPECT_THAT(named("BT.70"), IsEmpty());
  EXPECT_THAT(named("U709"), IsEmpty());
  EXPECT_THAT(named("UniTra"), IsEmpty());
  EXPECT_THAT(named("rimaries"), IsEmpty());
}

TEST_F(LabelLookup, FindsPartsAnywhereToSuggestThem) {
  std::vector<std::string> symbols;
  for (const auto* label : index_.findContaining("rimari", [](const auto&) { return true; })) {
    symbols.emplace_back(label->symbol);
  }
  EXPECT_THAT(symbols, ElementsAre("Primaries_ITU709"));
}

TEST_F(LabelLookup, FindsNothingForOtherAndForVeryShortTexts) {
  EXPECT_THAT(named("BT.2020"), IsEmpty());
  EXPECT_THAT(named("BT"), IsEmpty());
  EXPECT_THAT(named("."), IsEmpty());
  EXPECT_THAT(named(""), IsEmpty());
}

}  // namespace
}  // namespace Vantor::MetaMetadata
