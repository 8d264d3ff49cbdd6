#include "Edit/DarkMerge.h"

#include <gmock/gmock.h>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor::Edit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(DarkKLVs, AreThoseWithoutInstanceUIDByContent) {
  PartitionMetadata partition(testDictionary());
  for (const uint8 octets : {3, 9}) {
    partition.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(darkSetKey(), octets, KLV::Value(hex("0102"))));
  }
  readSet(partition, darkGroupKey(), Items().item(0x8001, "01"), 0);
  readSet(partition, darkGroupKey(), Items().instanceUID(3), 4);
  const auto klvs = darkKLVsOf(partition);
  ASSERT_EQ(klvs.size(), 2u);
  EXPECT_THAT(klvs.at({darkSetKey(), hex("0102")}), ElementsAre(3, 9));
  EXPECT_THAT(klvs.at({darkGroupKey(), hex("8001 0001 01")}), ElementsAre(0));
}

TEST(DarkKLVs, AreNotObjectDirectories) {
  PartitionMetadata partition(testDictionary());
  for (const char* key : {"96 13 B3 8A 87 34 87 46 F1 02 96 F0 56 E0 4D 2A",  // the directory
                          "80 53 08 00 36 21 08 04 B3 B3 98 A5 1C 90 11 D4"}) {
    const Bytes octets = hex(key);
    partition.addDarkMetadataSet(
        std::make_unique<DarkMetadataSet>(KLV::Key(octets.data()), uint8{4}, KLV::Value(hex("01"))));
  }
  EXPECT_THAT(darkKLVsOf(partition), IsEmpty());
}

TEST(DarkDifference, IsInTheNumberOfKLVsAndInTheirLengthFields) {
  const auto difference = compareDark({4, 3, 9}, {9, 5});
  EXPECT_THAT(difference.kept, ElementsAre(Optional(5), std::nullopt, Optional(0)));
  EXPECT_THAT(difference.added, IsEmpty());
  EXPECT_THAT(compareDark({4}, {1, 4}).added, ElementsAre(1));
  EXPECT_THAT(compareDark({}, {0}).added, ElementsAre(0));
}

TEST(DarkDifference, RemovesTheFirstOfSeveralThatAreAlike) {
  EXPECT_THAT(compareDark({4, 4}, {4}).kept, ElementsAre(std::nullopt, Optional(0)));
}

TEST(DarkDifference, IsNotInLengthFieldsThatTheEditSaysNothingOf) { EXPECT_TRUE(compareDark({4, 9}, {9, 0}).isNone()); }

}  // namespace
}  // namespace Vantor::Edit
