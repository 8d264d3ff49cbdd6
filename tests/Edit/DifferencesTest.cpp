#include "Edit/Differences.h"

#include <gmock/gmock.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Types.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor::Edit {
namespace {

using testing::IsEmpty;

/// Two partitions, each with a Thing that has the same InstanceUID.
class DifferencesTest : public testing::Test {
 protected:
  bool areSame() const { return Edit::areSame(left_, tagsOf(lefts_), right_, tagsOf(rights_)); }
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

TEST_F(DifferencesTest, IsNoneBetweenPropertiesWithTheSameValueWhateverTheirOrder) {
  setValue(left_, "Number", Types::UInt32(7));
  setValue(left_, "Flag", Types::Boolean(true));
  setValue(right_, "Flag", Types::Boolean(true));
  setValue(right_, "Number", Types::UInt32(7));
  EXPECT_TRUE(areSame());
  EXPECT_THAT(differing(), IsEmpty());
  EXPECT_EQ(contentOfLeft(), contentOfRight());
  EXPECT_TRUE(Edit::areSame(&property(left_, "Number"), &property(right_, "Number")));
}

TEST_F(DifferencesTest, IsInTheValueOrInWhatOnlyOneHas) {
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

TEST_F(DifferencesTest, IsBetweenAValueAndNoneAndBetweenNoneAndNoProperty) {
  const auto& none = property(left_, "Number");
  const auto& noneEither = property(right_, "Number");
  EXPECT_TRUE(Edit::areSame(&none, &noneEither));
  EXPECT_TRUE(Edit::areSame(nullptr, nullptr));
  EXPECT_FALSE(Edit::areSame(&none, nullptr));
  setValue(right_, "Number", Types::UInt32(0));
  EXPECT_FALSE(Edit::areSame(&none, &noneEither));
}

TEST_F(DifferencesTest, IsNotInFinalNULsOfTexts) {
  const auto text = [](const std::string& octets) {
    const Bytes bytes = hex(octets);
    return Types::Factories::fromBytes(Types::Identifiers::kUTF16String, bytes.data(), bytes.size());
  };
  setDecodedValue(property(left_, "Text"), text("00610000"));
  setDecodedValue(property(right_, "Text"), text("0061"));
  EXPECT_TRUE(areSame());
  EXPECT_EQ(contentOfLeft(), contentOfRight());
}

TEST_F(DifferencesTest, IsNotInTheItemSizesOfEmptyCollections) {
  setDecodedValue(property(left_, "Numbers"), std::make_unique<Types::Array>(4));
  setDecodedValue(property(right_, "Numbers"), std::make_unique<Types::Array>(0));
  EXPECT_TRUE(areSame());
}

TEST_F(DifferencesTest, IsNotToTheLetterInEmptyCollections) {
  setDecodedValue(property(left_, "Numbers"), std::make_unique<Types::Array>(4));
  EXPECT_EQ(differing().size(), 1u);
  EXPECT_THAT(differingProperties(left_, tagsOf(lefts_), right_, tagsOf(rights_), Fidelity::kLetter), IsEmpty());
}

TEST(Fidelity, ToTheLetterComparesFiveComponentsOfAPixelLayout) {
  PartitionMetadata partition(builtInDictionary());
  auto &six = partition.createMetadataSet("RGBADescriptor"), &five = partition.createMetadataSet("RGBADescriptor");
  Types::RGBALayout layout;
  for (uint32 i = 0; i < 5; ++i) layout.set(i, {'R', 8});
  five.set("PixelLayout", layout);
  layout.set(5, {'R', 8});
  six.set("PixelLayout", layout);
  EXPECT_FALSE(areSame(six.find("PixelLayout"), five.find("PixelLayout")));
  EXPECT_TRUE(areSame(six.find("PixelLayout"), five.find("PixelLayout"), Fidelity::kLetter));
  layout.set(4, {'G', 8});
  five.set("PixelLayout", layout);
  EXPECT_FALSE(areSame(six.find("PixelLayout"), five.find("PixelLayout"), Fidelity::kLetter));
}

TEST_F(DifferencesTest, LeavesOutTheInstanceUIDFromTheContent) {
  auto& other = addSet(rights_, "Thing", 2);
  EXPECT_EQ(contentOfLeft(), contentOf(other, tagsOf(rights_)));
  EXPECT_FALSE(Edit::areSame(left_, tagsOf(lefts_), other, tagsOf(rights_)));
  EXPECT_NE(contentOfLeft(), contentOf(addSet(rights_, "Other", 1), tagsOf(rights_)));
}

TEST_F(DifferencesTest, FindsTheSetWithAnInstanceUIDUnlessThereAreSeveral) {
  EXPECT_EQ(findOnly(lefts_, uid(1)), &left_);
  EXPECT_EQ(findOnly(lefts_, uid(2)), nullptr);
  addSet(lefts_, "Other", 1);
  EXPECT_EQ(findOnly(lefts_, uid(1)), nullptr);
}

TEST_F(DifferencesTest, IsInTheOctetsOfDarkGroups) {
  const auto &one = addGroup(lefts_, Items().instanceUID(3).item(0x8001, "01")),
             &same = addGroup(rights_, Items().instanceUID(3).item(0x8001, "01"), 9),
             &other = addGroup(rights_, Items().instanceUID(3).item(0x8001, "02"));
  const auto compare = [this](const MetadataSet& left, const MetadataSet& right) {
    return Edit::areSame(left, tagsOf(lefts_), right, tagsOf(rights_));
  };
  EXPECT_TRUE(compare(one, same));
  EXPECT_FALSE(compare(one, other));
  EXPECT_FALSE(compare(one, right_));
  EXPECT_FALSE(compare(left_, same));
}

TEST_F(DifferencesTest, IsInLengthFieldsAsFarAsTheEditSaysHowLongTheyAre) {
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
  left_.setBerLength(9);
  EXPECT_FALSE(hasOtherLengthOctets(left_, right_)) << "a set that was made leaves it to the writer";
  left_.setBerLength(4);
  right_.setBerLength(9);
  EXPECT_TRUE(hasOtherLengthOctets(left_, right_));
}

}  // namespace
}  // namespace Vantor::Edit
