#include "Summary/EssenceOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Core/Types/RGBALayout.h"
#include "tests/Summary/SomeProgramme.h"

namespace Vantor::Summary {
namespace {

using testing::Optional;

/// A descriptor by itself.
struct SomeDescriptor {
  explicit SomeDescriptor(const char* kind) : metadata(builtInDictionary()), set(metadata.createMetadataSet(kind)) {}
  Essence essence() const { return essenceOf(metadata, set); }

  PartitionMetadata metadata;
  MetadataSet& set;
};

TEST(EssenceOf, DoublesTheHeightOfFields) {
  SomeDescriptor descriptor("CDCIDescriptor");
  descriptor.set.set("StoredWidth", 720);
  descriptor.set.set("StoredHeight", 304);
  descriptor.set.set("DisplayHeight", 288);
  descriptor.set.set("FrameLayout", u"SeparateFields");
  const auto essence = descriptor.essence();
  EXPECT_THAT(essence.width, Optional(720u));
  EXPECT_THAT(essence.height, Optional(576u));
  EXPECT_THAT(essence.storedHeight, Optional(304u));
  EXPECT_THAT(essence.scan, Optional(Scan::kInterlaced));
  descriptor.set.set("FrameLayout", u"FullFrame");
  EXPECT_THAT(descriptor.essence().height, Optional(288u));
  EXPECT_THAT(descriptor.essence().scan, Optional(Scan::kProgressive));
}

TEST(EssenceOf, NamesSubsampling) {
  SomeDescriptor descriptor("CDCIDescriptor");
  const auto sampledBy = [&](int across, int down) {
    descriptor.set.set("HorizontalSubsampling", across);
    descriptor.set.set("VerticalSubsampling", down);
    return descriptor.essence().subsampling;
  };
  EXPECT_EQ(descriptor.essence().subsampling, std::nullopt);
  EXPECT_THAT(sampledBy(1, 1), Optional(std::string("4:4:4")));
  EXPECT_THAT(sampledBy(2, 1), Optional(std::string("4:2:2")));
  EXPECT_THAT(sampledBy(2, 2), Optional(std::string("4:2:0")));
  EXPECT_THAT(sampledBy(4, 1), Optional(std::string("4:1:1")));
  EXPECT_EQ(sampledBy(3, 1), std::nullopt);
}

TEST(EssenceOf, TakesTheDepthThatAllColoursHave) {
  SomeDescriptor descriptor("RGBADescriptor");
  Types::RGBALayout layout;
  layout.set(0, {'R', 10});
  layout.set(1, {'G', 10});
  layout.set(2, {'B', 10});
  layout.set(3, {'A', 8});
  descriptor.set.set("PixelLayout", layout);
  EXPECT_THAT(descriptor.essence().bitDepth, Optional(10u));
  layout.set(2, {'B', 8});
  descriptor.set.set("PixelLayout", layout);
  EXPECT_EQ(descriptor.essence().bitDepth, std::nullopt);
}

TEST(EssenceOf, CallsACodingByItsLabelOrElseByItsDescriptor) {
  SomeDescriptor pcm("WAVEPCMDescriptor"), other("SoundDescriptor");
  EXPECT_THAT(pcm.essence().codingName, Optional(std::string("PCM")));
  EXPECT_EQ(other.essence().codingName, std::nullopt);
  other.set.set("SoundCompression", u"DolbyECompressedAudio");
  EXPECT_THAT(other.essence().codingName, Optional(std::string("Dolby E")));
  EXPECT_EQ(other.essence().coding->symbol, "DolbyECompressedAudio");
}

TEST(EssenceOf, IgnoresRatesBelowZero) {
  SomeDescriptor descriptor("CDCIDescriptor");
  for (const int32 numerator : {-25, std::numeric_limits<int32>::min()}) {
    descriptor.set.set("SampleRate", Types::Rational(numerator, -1));
    EXPECT_FALSE(descriptor.essence().sampleRate);
    descriptor.set.set("SampleRate", Types::Rational(numerator, 1));
    EXPECT_FALSE(descriptor.essence().sampleRate);
  }
}

TEST(EssenceOf, IgnoresRatesOfZero) {
  SomeDescriptor descriptor("CDCIDescriptor");
  descriptor.set.set("SampleRate", Types::Rational(0, 1));
  EXPECT_FALSE(descriptor.essence().sampleRate);
}

TEST(EssenceOf, HasTheAspectRatioAsItIs) {
  SomeDescriptor descriptor("CDCIDescriptor");
  EXPECT_FALSE(descriptor.essence().aspectRatio);
  for (const auto& [numerator, denominator] : {std::pair(16, 9), std::pair(0, 1), std::pair(16, 0)}) {
    descriptor.set.set("ImageAspectRatio", Types::Rational(numerator, denominator));
    const auto ratio = descriptor.essence().aspectRatio;
    ASSERT_TRUE(ratio);
    EXPECT_EQ(ratio->numerator, numerator);
    EXPECT_EQ(ratio->denominator, denominator);
  }
}

/// The order of fields of interlaced pictures.
std::optional<FieldOrder> orderOf(const char16_t* lines, const char16_t* dominance) {
  SomeDescriptor descriptor("CDCIDescriptor");
  descriptor.set.set("FrameLayout", u"SeparateFields");
  descriptor.set.set("VideoLineMap", std::u16string_view(lines));
  descriptor.set.set("FieldDominance", std::u16string_view(dominance));
  return descriptor.essence().fieldOrder;
}

TEST(EssenceOf, FindsTheFieldOrderByTheLinesOfTheDominantField) {
  for (const auto* topIsFirst : {u"[23, 336]", u"[21, 584]", u"[20, 283]"}) {
    EXPECT_THAT(orderOf(topIsFirst, u"FieldOne"), Optional(FieldOrder::kTopFirst));
    EXPECT_THAT(orderOf(topIsFirst, u"FieldTwo"), Optional(FieldOrder::kBottomFirst));
  }
  for (const auto* topIsSecond : {u"[23, 335]", u"[20, 582]", u"[23, 285]"}) {
    EXPECT_THAT(orderOf(topIsSecond, u"FieldOne"), Optional(FieldOrder::kBottomFirst));
    EXPECT_THAT(orderOf(topIsSecond, u"FieldTwo"), Optional(FieldOrder::kTopFirst));
  }
}

TEST(EssenceOf, LeavesTheFieldOrderOpenWhereTheFileDoes) {
  for (const auto* lines : {u"[0, 0]", u"[1, 0]", u"[336, 23]", u"[23]", u"[]"}) {
    EXPECT_EQ(orderOf(lines, u"FieldOne"), std::nullopt);
  }
  SomeDescriptor descriptor("CDCIDescriptor");
  descriptor.set.set("FrameLayout", u"SeparateFields");
  descriptor.set.set("VideoLineMap", u"[23, 336]");
  EXPECT_EQ(descriptor.essence().fieldOrder, std::nullopt);
  descriptor.set.set("FieldDominance", u"FieldOne");
  descriptor.set.set("FrameLayout", u"FullFrame");
  EXPECT_EQ(descriptor.essence().fieldOrder, std::nullopt);
}

TEST(EssenceOf, TakesTheDepthOfColourDifferencesToo) {
  SomeDescriptor descriptor("RGBADescriptor");
  Types::RGBALayout layout;
  layout.set(0, {'Y', 8});
  layout.set(1, {'U', 8});
  layout.set(2, {'V', 8});
  descriptor.set.set("PixelLayout", layout);
  EXPECT_THAT(descriptor.essence().bitDepth, Optional(8u));
  layout.set(2, {'V', 10});
  descriptor.set.set("PixelLayout", layout);
  EXPECT_EQ(descriptor.essence().bitDepth, std::nullopt);
}

TEST(EssenceOf, ListsChannelsByNumberWithTheirGroups) {
  SomeDescriptor descriptor("WAVEPCMDescriptor");
  const auto add = [&](const char* kind, const char16_t* symbol) -> MetadataSet& {
    auto& label = descriptor.metadata.createMetadataSet(kind);
    label.set("MCATagSymbol", std::u16string_view(symbol));
    descriptor.set.append("SubDescriptors", label);
    return label;
  };
  auto& right = add("AudioChannelLabelSubDescriptor", u"chR");
  auto& left = add("AudioChannelLabelSubDescriptor", u"chL");
  auto& group = add("SoundfieldGroupLabelSubDescriptor", u"sgST");
  right.set("MCAChannelID", 2);
  left.set("MCAChannelID", 1);
  left.set("RFC5646SpokenLanguage", u"de");
  group.set("MCALinkID", u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07");
  left.set("SoundfieldGroupLinkID", u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07");
  const auto essence = descriptor.essence();
  ASSERT_EQ(essence.channels.size(), 2u);
  EXPECT_THAT(essence.channels[0].tagSymbol, Optional(std::string("chL")));
  EXPECT_THAT(essence.channels[0].language, Optional(std::string("de")));
  EXPECT_THAT(essence.channels[0].group, Optional(std::size_t{0}));
  EXPECT_THAT(essence.channels[1].number, Optional(2u));
  EXPECT_EQ(essence.channels[1].group, std::nullopt);
  EXPECT_THAT(essence.groups.at(0).tagSymbol, Optional(std::string("sgST")));
}

}  // namespace
}  // namespace Vantor::Summary
