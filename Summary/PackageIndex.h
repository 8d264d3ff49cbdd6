#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Summary/Summary.h"

namespace Vantor::Summary {

/// The packages of a partition with what summaries look up in them, each look-up by hash. For one thread.
class PackageIndex {
 public:
  /// Where a SourceClip leads: a package, and the track in it.
  struct Place {
    const MetadataSet* package = nullptr;
    uint32 trackID = 0;
  };

  /// @param metadata  outlives the index.
  explicit PackageIndex(const PartitionMetadata& metadata);

  /// Material packages first, the primary one foremost; then the others in file order.
  const std::vector<const MetadataSet*>& packages() const { return packages_; }

  /// Where a track gets its material from: by its first SourceClip that names a package of the partition; none
  /// otherwise.
  std::optional<Place> sourceOf(const MetadataSet& track) const;
  /// The track that is there; null when the package has none of that TrackID.
  const MetadataSet* trackAt(const Place& place) const;
  /// The descriptor of the essence there; null for a package without essence in files.
  const MetadataSet* descriptorAt(const Place& place) const;
  /// The same for any track of a package, where the package has only one descriptor.
  const MetadataSet* soleDescriptor(const MetadataSet& package) const;

  /// The first Timecode on a track; null for none.
  const MetadataSet* timecodeOf(const MetadataSet& track) const;
  /// The descriptive frameworks on a track.
  const std::vector<const MetadataSet*>& frameworksOf(const MetadataSet& track) const;

 private:
  using ByTrackID = std::unordered_map<uint32, const MetadataSet*>;  // the first of several
  struct Package {
    ByTrackID tracks;
    const MetadataSet* descriptor = nullptr;  // of files
  };
  /// What is on the segment of a track.
  struct Segment {
    std::optional<Place> source;
    const MetadataSet* timecode = nullptr;
    std::vector<const MetadataSet*> frameworks;
  };

  void add(const MetadataSet& package);
  /// The descriptors of a MultipleDescriptor by LinkedTrackID.
  ByTrackID partsOf(const MetadataSet& descriptor) const;
  const Segment& segmentOf(const MetadataSet& track) const;
  void addComponent(const MetadataSet& component, Segment& segment) const;

  const PartitionMetadata& metadata_;
  std::vector<const MetadataSet*> packages_;
  std::unordered_map<Types::UMID32, const MetadataSet*> byID_;
  std::unordered_map<const MetadataSet*, Package> index_;
  std::unordered_map<const MetadataSet*, ByTrackID> parts_;  // by MultipleDescriptor, which packages may share
  // By segment, which tracks may share; made by the first look-up.
  mutable std::unordered_map<const MetadataSet*, Segment> segments_;
};

}  // namespace Vantor::Summary
