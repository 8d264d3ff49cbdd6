#include "Tree/DifferenceTree.h"

#include <gtest/gtest.h>

#include "Core/Dictionary/BuiltInDictionary.h"

namespace Vantor::Tool {
namespace {

std::string differencesBetween(const PartitionMetadata& left, const PartitionMetadata& right) {
  TreeStyle style;
  style.hasSigns = true;
  const SetPairing pairs(left, right, Pairing::kByPlace);
  return treeText(differenceTree(left, right, pairs, comparePartitions(left, right), style), style);
}

/// A Preface with a material package that has a track, and an Identification.
struct TreeOfFour {
  TreeOfFour() : metadata(builtInDictionary()) {
    preface.set("ContentStorageObject", storage);
    storage.append("Packages", package);
    package.set("PackageName", u"Programme");
    track.set("TrackID", 2);
    package.append("PackageTracks", track);
  }
  MetadataSet& add(const char* kind) { return metadata.createMetadataSet(kind); }

  PartitionMetadata metadata;
  MetadataSet& preface = add("Preface");
  MetadataSet& storage = add("ContentStorage");
  MetadataSet& package = add("MaterialPackage");
  MetadataSet& track = add("TimelineTrack");
};

TEST(DifferenceTree, IsEmptyBetweenEqualPartitions) {
  const TreeOfFour left, right;
  EXPECT_EQ(differencesBetween(left.metadata, right.metadata), "");
}

TEST(DifferenceTree, ShowsChangedValuesBelowTheSetsThatOwnThem) {
  const TreeOfFour left;
  TreeOfFour right;
  right.track.set("TrackID", 3);
  right.track.set("TrackName", u"V1");
  right.package.remove("PackageName");
  EXPECT_EQ(differencesBetween(left.metadata, right.metadata), R"(  Preface
  └─ ContentStorageObject (ContentStorage): ContentStorage
     └─ Packages[1]: MaterialPackage
-       │ PackageName: "Programme"
        └─ PackageTracks[1] (Tracks): TimelineTrack (Track)
~            TrackID: 2 → 3
+            TrackName: "V1"
)");
}

TEST(DifferenceTree, ShowsAddedAndRemovedSetsWithTheirValues) {
  TreeOfFour left, right;
  auto& removed = left.add("Identification");
  removed.set("ApplicationName", u"first");
  left.preface.append("IdentificationList", removed);
  auto& added = right.add("StaticTrack");
  added.set("TrackID", 9);
  right.package.append("PackageTracks", added);
  EXPECT_EQ(differencesBetween(left.metadata, right.metadata), R"(  Preface
  ├─ ContentStorageObject (ContentStorage): ContentStorage
  │  └─ Packages[1]: MaterialPackage
+ │     └─ PackageTracks[2] (Tracks): StaticTrack
+ │          TrackID: 9
- └─ IdentificationList[1] (Identifications): Identification
-      ApplicationName (ProductName): "first"
)");
}

TEST(DifferenceTree, MayBeAsDeepAsAFileHasSets) {
  constexpr int kSets = 10000;
  TreeOfFour left, right;
  auto* last = &right.preface;
  for (int i = 0; i < kSets; ++i) {
    auto& next = right.add("Sequence");
    last->append(i == 0 ? "ApplicationPlugInObjects" : "ComponentObjects", next);
    last = &next;
  }
  EXPECT_LT(differencesBetween(left.metadata, right.metadata).size(), std::size_t{300} * kSets);
}

}  // namespace
}  // namespace Vantor::Tool
