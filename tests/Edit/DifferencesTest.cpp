#include "Core/Comparison/DocumentDifference.h"

#include <gmock/gmock.h>

#include "Core/Types/Types.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor::DocumentDifference {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Two partitions, each with a Thing that has the same InstanceUID.
class DocumentDifferenceTest : public testing::Test {
 protected:
  bool areSame() const { return DocumentDifference::areSame(left_, tagsOf(lefts_), right_, tagsOf(rights_)); }
  std::vector<PropertyPair> differing() const {
    return differingProperties(left_, tagsOf(lefts_), right_, tagsOf(rights_));
  }
  std::string contentOfLeft() const { return contentOf(left_, tagsOf(lefts_)); }
  std::string contentOfRight() const { return contentOf(right_, tagsOf(rights_)); }
  static const PartitionDictionary& tagsOf(const PartitionMetadata& partition) {
    return partition.partitionDictionary();
  }
  static MetadataSet& addGroup(PartitionMetadata& partition, const Items& items, uint8 lengthOctets = 4) {
    return readSet(partition, darkGroupKey(), items, lengthOctets);
  }

  PartitionMetadata lefts_{testDictionary()};
  PartitionMetadata rights_{testDictionary()};
  MetadataSet& left_ = addSet(lefts_, "Thing", 1);
  MetadataSet& right_ = addSet(rights_, "Thing", 1);
};

TEST_F(DocumentDifferenceTest, IsNoneBetweenPropertiesWithTheSameValueWhateverTheirOrder) {
  setValue(left_, "Number", Types::UInt32(7));
  setValue(left_, "Flag", Types::Boolean(true));
  setValue(right_, "Flag", Types::Boolean(true));
  setValue(right_, "Number", Types::UInt32(7));
  EXPECT_TRUE(areSame());
  EXPECT_THAT(differing(), IsEmpty());
  EXPECT_EQ(contentOfLeft(), contentOfRight());
  EXPECT_EQ(octetsOf(property(left_, "Number")), hex("00000007"));
  EXPECT_TRUE(isSame(&property(left_, "Number"), &property(right_, "Number")));
}

TEST_F(DocumentDifferenceTest, IsInTheValueOrInWhatOnlyOneHas) {
  setValue(left_, "Number", Types::UInt32(7));
  setValue(right_, "Number", Types::UInt32(8));
  setValue(right_, "Flag", Types::Boolean(true));
  EXPECT_FALSE(areSame());
  EXPECT_NE(contentOfLeft(), contentOfRight());
  const auto pairs = differing();
  ASSERT_EQ(pairs.size(), 2u);
  EXPECT_EQ(pairs[0].left, &property(left_, "Number"));
  EXPECT_EQ(pairs[0].right, &property(right_, "Number"));
  EXPECT_EQ(pairs[1].left, nullptr);
  EXPECT_EQ(pairs[1].right, &property(right_, "Flag"));
}

TEST_F(DocumentDifferenceTest, IsBetweenAValueAndNoneAndBetweenNoneAndNoProperty) {
  const auto& none = property(left_, "Number");
  const auto& noneEither = property(right_, "Number");
  EXPECT_TRUE(isSame(&none, &noneEither));
  EXPECT_TRUE(isSame(nullptr, nullptr));
  EXPECT_FALSE(isSame(&none, nullptr));
  EXPECT_THAT(octetsOf(none), IsEmpty());
  setValue(right_, "Number", Types::UInt32(0));
  EXPECT_FALSE(isSame(&none, &noneEither));
}

TEST_F(DocumentDifferenceTest, LeavesOutTheInstanceUIDFromTheContent) {
  auto& other = addSet(rights_, "Thing", 2);
  EXPECT_EQ(contentOfLeft(), contentOf(other, tagsOf(rights_)));
  EXPECT_FALSE(DocumentDifference::areSame(left_, tagsOf(lefts_), other, tagsOf(rights_)));
  EXPECT_NE(contentOfLeft(), contentOf(addSet(rights_, "Other", 1), tagsOf(rights_)));
}

TEST_F(DocumentDifferenceTest, FindsTheSetWithAnInstanceUIDUnlessThereAreSeveral) {
  EXPECT_EQ(findOnly(lefts_, uid(1)), &left_);
  EXPECT_EQ(findOnly(lefts_, uid(2)), nullptr);
  addSet(lefts_, "Other", 1);
  EXPECT_EQ(findOnly(lefts_, uid(1)), nullptr);
}

TEST_F(DocumentDifferenceTest, IsInTheOctetsOfDarkGroups) {
  const auto &one = addGroup(lefts_, Items().instanceUID(3).item(0x8001, "01")),
             &same = addGroup(rights_, Items().instanceUID(3).item(0x8001, "01"), 9),
             &other = addGroup(rights_, Items().instanceUID(3).item(0x8001, "02"));
  const auto compare = [this](const MetadataSet& left, const MetadataSet& right) {
    return DocumentDifference::areSame(left, tagsOf(lefts_), right, tagsOf(rights_));
  };
  EXPECT_TRUE(compare(one, same));
  EXPECT_FALSE(compare(one, other));
  EXPECT_FALSE(compare(one, right_));
  EXPECT_FALSE(compare(left_, same));
}

TEST_F(DocumentDifferenceTest, IsInLengthFieldsAsFarAsTheEditSaysHowLongTheyAre) {
  const Items items = Items().instanceUID(3).item(0x8001, Bytes(300));
  const auto hasOther = [&](uint8 before, uint8 after) {
    return hasOtherLengthOctets(addGroup(lefts_, items, before), addGroup(rights_, items, after));
  };
  EXPECT_FALSE(hasOther(4, 4));
  EXPECT_TRUE(hasOther(4, 9));
  EXPECT_FALSE(hasOther(4, 0));
  EXPECT_FALSE(hasOther(3, 1)) << "the length takes three";
  EXPECT_TRUE(hasOther(4, 1));
  EXPECT_FALSE(hasOtherLengthOctets(left_, right_));
  right_.setBerLength(9);
  EXPECT_TRUE(hasOtherLengthOctets(left_, right_));
}

TEST_F(DocumentDifferenceTest, ListsDarkKLVsWithoutInstanceUIDByContent) {
  for (const uint8 octets : {3, 9}) {
    lefts_.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(darkSetKey(), octets, KLV::Value(hex("0102"))));
  }
  addGroup(lefts_, Items().item(0x8001, "01"), 0);
  addGroup(lefts_, Items().instanceUID(3));
  const auto klvs = darkKLVsOf(lefts_);
  ASSERT_EQ(klvs.size(), 2u);
  EXPECT_THAT(klvs.at({darkSetKey(), hex("0102")}), ElementsAre(3, 9));
  EXPECT_THAT(klvs.at({darkGroupKey(), hex("8001 0001 01")}), ElementsAre(0));
}

TEST(DarkDifference, IsInTheNumberOfKLVsAndInTheirLengthFields) {
  const auto difference = compareDark({4, 3, 9}, {9, 5});
  EXPECT_THAT(difference.recoded, ElementsAre(Pair(4, 5)));
  EXPECT_THAT(difference.removed, ElementsAre(3));
  EXPECT_THAT(difference.added, IsEmpty());
  EXPECT_THAT(compareDark({4}, {1, 4}).added, ElementsAre(1));
  EXPECT_THAT(compareDark({}, {0}).added, ElementsAre(0));
}

TEST(DarkDifference, IsNotInLengthFieldsThatTheEditSaysNothingOf) {
  const auto difference = compareDark({4, 9}, {9, 0});
  EXPECT_THAT(difference.recoded, IsEmpty());
  EXPECT_THAT(difference.removed, IsEmpty());
  EXPECT_THAT(difference.added, IsEmpty());
}

}  // namespace
}  // namespace Vantor::DocumentDifference
