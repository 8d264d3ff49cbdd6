#include "Summary/PackageIndex.h"

#include <algorithm>

#include "Summary/Values.h"

namespace Vantor::Summary {

PackageIndex::PackageIndex(const PartitionMetadata& metadata) : metadata_(metadata) {
  for (const auto& package : metadata.findAll("Package")) packages_.push_back(&package);
  const auto isMaterial = [](const MetadataSet* package) { return isKind(*package, "MaterialPackage"); };
  const auto others = std::stable_partition(packages_.begin(), packages_.end(), isMaterial);
  const auto* preface = metadata.preface();
  const auto* primary = preface == nullptr ? nullptr : targetIn(metadata, *preface, "PrimaryPackage");
  std::stable_partition(packages_.begin(), others, [primary](const auto* package) { return package == primary; });
  for (const auto* package : packages_) add(*package);
}

void PackageIndex::add(const MetadataSet& set) {
  if (const auto* id = valueOf<Types::UMID32>(set, "PackageID")) byID_.emplace(*id, &set);
  auto& package = index_[&set];
  for (const auto* track : targetsIn(metadata_, set, "PackageTracks")) {
    if (const auto id = numberIn(*track, "TrackID")) package.tracks.emplace(*id, track);
  }
  const auto* descriptor = targetIn(metadata_, set, "EssenceDescription");
  if (descriptor == nullptr || !isKind(*descriptor, "FileDescriptor")) return;
  package.descriptor = descriptor;
  const bool isNew = isKind(*descriptor, "MultipleDescriptor") && parts_.count(descriptor) == 0;
  if (isNew) parts_.emplace(descriptor, partsOf(*descriptor));
}

PackageIndex::ByTrackID PackageIndex::partsOf(const MetadataSet& descriptor) const {
  ByTrackID parts;
  for (const auto* part : targetsIn(metadata_, descriptor, "FileDescriptors")) {
    if (const auto id = numberIn(*part, "LinkedTrackID")) parts.emplace(*id, part);
  }
  return parts;
}

const PackageIndex::Segment& PackageIndex::segmentOf(const MetadataSet& track) const {
  static const Segment kNothing;
  const auto* set = targetIn(metadata_, track, "TrackSegment");
  if (set == nullptr) return kNothing;
  const auto [at, isNew] = segments_.try_emplace(set);
  if (!isNew) return at->second;
  addComponent(*set, at->second);
  if (isKind(*set, "Sequence")) {
    for (const auto* part : targetsIn(metadata_, *set, "ComponentObjects")) addComponent(*part, at->second);
  }
  return at->second;
}

void PackageIndex::addComponent(const MetadataSet& component, Segment& segment) const {
  if (segment.timecode == nullptr && isKind(component, "Timecode")) segment.timecode = &component;
  const auto* framework = targetIn(metadata_, component, "DescriptiveFrameworkObject");
  if (framework != nullptr) segment.frameworks.push_back(framework);
  const auto* id = segment.source ? nullptr : valueOf<Types::UMID32>(component, "SourcePackageID");
  const auto package = id == nullptr ? byID_.end() : byID_.find(*id);
  const auto trackID = package == byID_.end() ? std::nullopt : numberIn(component, "SourceTrackID");
  if (trackID) segment.source = Place{package->second, *trackID};
}

std::optional<PackageIndex::Place> PackageIndex::sourceOf(const MetadataSet& track) const {
  return segmentOf(track).source;
}

const MetadataSet* PackageIndex::timecodeOf(const MetadataSet& track) const { return segmentOf(track).timecode; }

const std::vector<const MetadataSet*>& PackageIndex::frameworksOf(const MetadataSet& track) const {
  return segmentOf(track).frameworks;
}

const MetadataSet* PackageIndex::trackAt(const Place& place) const {
  const auto& tracks = index_.at(place.package).tracks;
  const auto found = tracks.find(place.trackID);
  return found == tracks.end() ? nullptr : found->second;
}

const MetadataSet* PackageIndex::descriptorAt(const Place& place) const {
  const auto* descriptor = index_.at(place.package).descriptor;
  const auto parts = parts_.find(descriptor);
  if (parts == parts_.end()) return descriptor;
  const auto found = parts->second.find(place.trackID);
  return found == parts->second.end() ? nullptr : found->second;
}

const MetadataSet* PackageIndex::soleDescriptor(const MetadataSet& package) const {
  const auto* descriptor = index_.at(&package).descriptor;
  return parts_.count(descriptor) == 0 ? descriptor : nullptr;
}

}  // namespace Vantor::Summary
