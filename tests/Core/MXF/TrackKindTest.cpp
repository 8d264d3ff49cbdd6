#include "Core/MXF/TrackKind.h"

#include <gtest/gtest.h>

namespace Vantor::MXF {
namespace {

Types::UniversalLabel definitionOf(uint8 branch, uint8 definition) {
  return Types::UniversalLabel(KLV::Key({0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,  //
                                         0x01, 0x03, 0x02, branch, definition, 0x00, 0x00, 0x00}));
}

TEST(TrackKindOfADataDefinition, IsWhatTheRegisterOfLabelsNames) {
  EXPECT_EQ(trackKindOf(definitionOf(2, 1)), TrackKind::kPicture);
  EXPECT_EQ(trackKindOf(definitionOf(2, 2)), TrackKind::kSound);
  EXPECT_EQ(trackKindOf(definitionOf(2, 3)), TrackKind::kData);
  for (const uint8 userBits : {1, 2, 3}) EXPECT_EQ(trackKindOf(definitionOf(1, userBits)), TrackKind::kTimecode);
  EXPECT_EQ(trackKindOf(definitionOf(1, 0x10)), TrackKind::kDescriptive);
}

TEST(TrackKindOfADataDefinition, IsDataForEssenceOfAKindThatTheRegisterDoesNotName) {
  EXPECT_EQ(trackKindOf(definitionOf(2, 9)), TrackKind::kData);
  EXPECT_EQ(trackKindOf(definitionOf(3, 1)), TrackKind::kData);
}

TEST(TrackKindOfADataDefinition, IsOtherForWhatIsNone) {
  EXPECT_EQ(trackKindOf(definitionOf(1, 4)), TrackKind::kOther);
  EXPECT_EQ(trackKindOf(definitionOf(0, 0)), TrackKind::kOther);
  EXPECT_EQ(trackKindOf(Types::UniversalLabel()), TrackKind::kOther);
}

TEST(TrackKindOfADataDefinition, IsKnownForIdentifiersThatAreOlderThanTheLabels) {
  const auto old = [](const KLV::Key& key) { return trackKindOf(Types::UniversalLabel(key)); };
  EXPECT_EQ(old(KLV::Key({0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f,  //
                          0x6f, 0x3c, 0x8c, 0xe1, 0x6c, 0xef, 0x11, 0xd2})),
            TrackKind::kPicture);
  EXPECT_EQ(old(KLV::Key({0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f,  //
                          0x78, 0xe1, 0xeb, 0xe1, 0x6c, 0xef, 0x11, 0xd2})),
            TrackKind::kSound);
  EXPECT_EQ(old(KLV::Key({0x80, 0x7f, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f,  //
                          0x7f, 0x27, 0x5e, 0x81, 0x77, 0xe5, 0x11, 0xce})),
            TrackKind::kTimecode);
}

TEST(TrackKind, IsEssenceForPictureSoundAndData) {
  for (const auto kind : {TrackKind::kPicture, TrackKind::kSound, TrackKind::kData}) EXPECT_TRUE(isEssence(kind));
  for (const auto kind : {TrackKind::kTimecode, TrackKind::kDescriptive, TrackKind::kOther}) {
    EXPECT_FALSE(isEssence(kind));
  }
}

}  // namespace
}  // namespace Vantor::MXF
