#include "Core/Metadata/SetDetails.h"

#include <gtest/gtest.h>

#include <chrono>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/Sanitized.h"

namespace Vantor {
namespace {

/// Sets of the built-in dictionary.
class SetOwnersTest : public testing::Test {
 protected:
  MetadataSet& add(const char* symbol, uint32 number) {
    const auto* definition = partition_.partitionDictionary().dictionary()->findSetBySymbol(symbol);
    auto& set = *partition_.createMetadataSet(definition->key());
    dynamic_cast<SimpleElement&>(element(set, "InstanceUID")).set(uid(number).clone(), true);
    return set;
  }
  static Element& element(MetadataSet& set, const char* symbol) {
    return set.createElement(*set.definition()->findAttribute(symbol));
  }
  static void own(MetadataSet& set, const char* symbol, uint32 number) {
    dynamic_cast<ReferenceElement&>(element(set, symbol))
        .setUnverifiedReference(std::make_unique<Types::StrongReference>(uid(number)));
  }

  PartitionMetadata partition_{builtInDictionary()};
};

TEST_F(SetOwnersTest, FindThePackageThroughOthers) {
  auto& package = add("MaterialPackage", 1);
  element(package, "PackageID");
  auto& track = add("TimelineTrack", 2);
  auto& sequence = add("Selector", 3);
  auto& stray = add("Selector", 4);
  dynamic_cast<CollectionElement&>(element(package, "PackageTracks"))
      .append(std::make_unique<Types::StrongReference>(uid(2)));
  own(track, "TrackSegment", 3);
  const SetOwners owners(partition_);
  EXPECT_EQ(owners.packageOf(sequence), &package);
  EXPECT_EQ(owners.packageOf(track), &package);
  EXPECT_EQ(owners.packageOf(package), nullptr);
  EXPECT_EQ(owners.packageOf(stray), nullptr);
  EXPECT_EQ(owners.ownerOf(sequence), &track);
}

TEST_F(SetOwnersTest, FindNoPackageInACircle) {
  auto& one = add("Selector", 1);
  auto& other = add("Selector", 2);
  auto& itself = add("Selector", 3);
  own(one, "SelectedSegment", 2);
  own(other, "SelectedSegment", 1);
  own(itself, "SelectedSegment", 3);
  const SetOwners owners(partition_);
  for (const auto* set : {&one, &other, &itself}) EXPECT_EQ(owners.packageOf(*set), nullptr);
}

TEST_F(SetOwnersTest, PassEachSetOfAChainOnce) {
  const uint32 kSets = isSanitized() ? 20000 : 100000;
  auto& package = add("MaterialPackage", 1);
  element(package, "PackageID");
  dynamic_cast<CollectionElement&>(element(package, "PackageTracks"))
      .append(std::make_unique<Types::StrongReference>(uid(2)));
  own(add("TimelineTrack", 2), "TrackSegment", 3);
  for (uint32 number = 3; number <= kSets; ++number) own(add("Selector", number), "SelectedSegment", number + 1);
  const auto start = std::chrono::steady_clock::now();
  const SetOwners owners(partition_);
  for (const auto* set : partition_.sets()) EXPECT_EQ(owners.packageOf(*set), set == &package ? nullptr : &package);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace Vantor
