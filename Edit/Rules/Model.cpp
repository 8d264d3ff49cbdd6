#include "Edit/Rules/Model.h"

#include <algorithm>
#include <utility>

#include "Core/Platform/Strings.h"

namespace Vantor::Edit {

std::string symbolOf(const Element& element) {
  if (const auto* definition = definitionOf(element)) return definition->symbol();
  return Utils::wstringToString(element.metaAttribute().asUnknown()->localTag().toString());
}

Types::UniversalLabel withoutVersion(const Types::UniversalLabel& label) {
  return Types::UniversalLabel(label.key().withOctet(KLV::Key::kVersionOctet, 0));
}

Labels withoutVersions(const std::vector<Types::UniversalLabel>& labels) {
  Labels set;
  for (const auto& label : labels) set.insert(withoutVersion(label));
  return set;
}

bool areSame(const Types::UniversalLabel& left, const Types::UniversalLabel& right) {
  return withoutVersion(left) == withoutVersion(right);
}

std::string textOf(const Types::UniversalLabel& label) { return label.dottedText(); }

Model::Model(const PartitionMetadata& metadata, std::vector<std::size_t> partitions)
    : metadata_(metadata), partitions_(std::move(partitions)), preface_(metadata.preface()) {
  for (const auto* set : metadata.sets()) {
    places_.emplace(set, places_.size());
    if (set->definition() == nullptr) continue;
    byDefinition_[set->definition()].push_back(sets_.size());
    sets_.push_back(set);
  }
  for (const auto* set : all("Package")) addPackage(*set);
  for (const auto& package : packages_) {
    for (const auto* track : package.tracks) addComponents(package, *track);
    addDescriptors(package);
  }
  addPackagesWithEssence();
}

std::size_t Model::placeOf(const MetadataSet* set) const {
  const auto found = places_.find(set);
  return found == places_.end() ? places_.size() : found->second;
}

void Model::addPackage(const MetadataSet& set) {
  Package package{&set, valueOf<Types::UMID32>(set, "PackageID")};
  package.tracks = targets(set, "PackageTracks");
  for (const auto* track : package.tracks) {
    if (const auto id = integerOf(*track, "TrackID")) package.byTrackID.emplace(*id, track);
  }
  if (package.id != nullptr) byPackageID_.emplace(*package.id, packages_.size());
  packages_.push_back(std::move(package));
}

void Model::addComponents(const Package& package, const MetadataSet& track) {
  std::vector<Types::UUID> identifiers;
  const auto addTargets = [&](const MetadataSet& owner) {
    identifiers.clear();
    for (const auto& element : owner) element.appendTargets({false}, identifiers);
    for (const auto& identifier : identifiers) {
      const auto& targets = metadata_.findByInstanceUID(identifier);
      if (targets.empty() || !is(*targets.front(), "Component")) continue;
      if (placed_.insert(targets.front()).second) components_.push_back({targets.front(), &package, &track});
    }
  };
  std::size_t next = components_.size();
  for (addTargets(track); next < components_.size(); ++next) addTargets(*components_[next].set);
}

void Model::addDescriptors(const Package& package) {
  const auto* descriptor = target(*package.set, "EssenceDescription");
  if (descriptor == nullptr || !placed_.insert(descriptor).second) return;
  descriptors_.push_back({descriptor, &package, nullptr});
  for (const auto* part : targets(*descriptor, "FileDescriptors")) {
    if (placed_.insert(part).second) descriptors_.push_back({part, &package, descriptor});
  }
}

void Model::addPackagesWithEssence() {
  for (const auto* data : all("EssenceData")) {
    const auto* id = valueOf<Types::UMID32>(*data, "LinkedPackageID");
    const auto found = id == nullptr ? byPackageID_.end() : byPackageID_.find(*id);
    if (found == byPackageID_.end()) continue;
    auto& package = packages_[found->second];
    if (integerOf(*data, "EssenceStreamID").value_or(0) != 0) package.hasStream = true;
    if (!std::exchange(package.isNamed, true)) packagesWithEssence_.push_back(&package);
  }
}

bool Model::is(const MetadataSet& set, std::string_view symbol) const {
  const auto* kind = dictionary().findSetBySymbol(symbol);
  return kind != nullptr && set.definition() != nullptr && set.definition()->isOrInherits(*kind);
}

std::vector<const MetadataSet*> Model::all(std::string_view symbol) const {
  std::vector<const MetadataSet*> found;
  const auto* kind = dictionary().findSetBySymbol(symbol);
  if (kind == nullptr) return found;
  std::vector<std::size_t> places;
  for (const auto& [definition, ofDefinition] : byDefinition_) {
    if (definition->isOrInherits(*kind)) places.insert(places.end(), ofDefinition.begin(), ofDefinition.end());
  }
  std::sort(places.begin(), places.end());
  found.reserve(places.size());
  for (const auto place : places) found.push_back(sets_[place]);
  return found;
}

const MetadataSet* Model::target(const MetadataSet& set, std::string_view property) const {
  const auto found = targets(set, property);
  return found.empty() ? nullptr : found.front();
}

std::vector<const MetadataSet*> Model::targets(const MetadataSet& set, std::string_view property) const {
  std::vector<Types::UUID> identifiers;
  const auto* element = set.find(property);
  if (element != nullptr) element->appendTargets({true}, identifiers);
  std::vector<const MetadataSet*> found;
  for (const auto& identifier : identifiers) {
    const auto& sets = metadata_.findByInstanceUID(identifier);
    if (!sets.empty()) found.push_back(sets.front());
  }
  return found;
}

const Package* Model::findPackage(const Types::UMID32& id) const {
  const auto found = byPackageID_.find(id);
  return found == byPackageID_.end() ? nullptr : &packages_[found->second];
}

const Package* Model::package(const MetadataSet& set, std::string_view property) const {
  const auto* id = valueOf<Types::UMID32>(set, property);
  return id == nullptr ? nullptr : findPackage(*id);
}

CheckedFile::CheckedFile(const FileState& state) : state_(state) {
  std::vector<std::vector<std::size_t>> sharing;
  std::vector<const PartitionMetadata*> distinct;
  for (std::size_t i = 0; i < state.partitions.size(); ++i) {
    const auto* metadata = state.partitions[i].metadata.get();
    if (metadata == nullptr) continue;
    const auto place = places_.emplace(metadata, places_.size()).first->second;
    if (place == distinct.size()) {
      distinct.push_back(metadata);
      sharing.emplace_back();
    }
    sharing[place].push_back(i);
  }
  models_.reserve(distinct.size());
  for (std::size_t i = 0; i < distinct.size(); ++i) models_.emplace_back(*distinct[i], std::move(sharing[i]));
  bool hasComplete = false;
  for (std::size_t i = 0; i < state.partitions.size(); ++i) {
    const auto* model = modelOf(i);
    const bool complete = isComplete(state.partitions[i].info);
    if (model == nullptr || (hasComplete && !complete)) continue;
    best_ = model;
    hasComplete = complete;
  }
}

const Model* CheckedFile::modelOf(std::size_t partition) const {
  const auto found = places_.find(state_.partitions[partition].metadata.get());
  return found == places_.end() ? nullptr : &models_[found->second];
}

bool CheckedFile::isCut() const {
  const auto& pack = state_.partitions.front().info.pack;
  return pack.footerPartition != 0 && state_.runIn + pack.footerPartition >= state_.fileSize;
}

}  // namespace Vantor::Edit
