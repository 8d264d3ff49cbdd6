#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/SetValues.h"
#include "Core/Types/Rational.h"
#include "Core/Types/UMID32.h"
#include "Edit/Check.h"

namespace Vantor::Edit {

/// The definition of a property; null for an unknown one.
inline const MetaMetadata::MetaElement* definitionOf(const Element& element) {
  return element.metaAttribute().metaElement();
}
/// Its symbol; of an unknown one the local tag.
std::string symbolOf(const Element& element);

/// @name Labels without their version
/// Labels are the same in every version of the register, octet 8.
/// @{
Types::UniversalLabel withoutVersion(const Types::UniversalLabel& label);
using Labels = std::unordered_set<Types::UniversalLabel>;
Labels withoutVersions(const std::vector<Types::UniversalLabel>& labels);
bool areSame(const Types::UniversalLabel& left, const Types::UniversalLabel& right);
/// @}
std::string textOf(const Types::UniversalLabel& label);

/// A package with its tracks.
struct Package {
  const MetadataSet* set = nullptr;
  const Types::UMID32* id = nullptr;  ///< null for none
  std::vector<const MetadataSet*> tracks = {};
  std::unordered_map<int64, const MetadataSet*> byTrackID = {};  ///< the first of several
  bool isNamed = false;                                          ///< EssenceData name it
  bool hasStream = false;                                        ///< EssenceData name a stream for its essence
};

/// A component of a track, however deep: its segment, a part of a sequence, an input of an operation.
struct PlacedComponent {
  const MetadataSet* set;
  const Package* package;
  const MetadataSet* track;
};

/// The descriptor of a package, or one that it is made of.
struct PlacedDescriptor {
  const MetadataSet* set;
  const Package* package;
  const MetadataSet* whole;  ///< that it is a part of; null for the descriptor of a package
};

/// One state of header metadata, with what rules look up in it.
class Model {
 public:
  /// @param partitions  those that share the metadata, ascending; at least one.
  Model(const PartitionMetadata& metadata, std::vector<std::size_t> partitions);
  Model(Model&&) = default;

  const PartitionMetadata& metadata() const { return metadata_; }
  const std::vector<std::size_t>& partitions() const { return partitions_; }
  const MetaMetadata::Dictionary& dictionary() const { return *metadata_.partitionDictionary().dictionary(); }
  const MetadataSet* preface() const { return preface_; }
  /// The sets that the dictionary knows, in file order.
  const std::vector<const MetadataSet*>& sets() const { return sets_; }
  /// In file order; the last of all for null.
  std::size_t placeOf(const MetadataSet* set) const;

  /// Whether a set is of a kind or of one that inherits from it. @param symbol  of the kind.
  bool is(const MetadataSet& set, std::string_view symbol) const;
  /// The sets of a kind, and of those that inherit from it.
  std::vector<const MetadataSet*> all(std::string_view symbol) const;

  /// The first set that a property refers to; null when there is none.
  const MetadataSet* target(const MetadataSet& set, std::string_view property) const;
  /// The sets that a property refers to; references to none are left out.
  std::vector<const MetadataSet*> targets(const MetadataSet& set, std::string_view property) const;

  const std::vector<Package>& packages() const { return packages_; }
  /// Null when there is none; the first one of several.
  const Package* findPackage(const Types::UMID32& id) const;
  /// The package that a reference of a set means. @param property  a package identifier.
  const Package* package(const MetadataSet& set, std::string_view property) const;
  /// The packages that EssenceData name, each once: those with essence in the file.
  const std::vector<const Package*>& packagesWithEssence() const { return packagesWithEssence_; }
  /// The components of all tracks by package and track. One that several tracks share is the first one's.
  const std::vector<PlacedComponent>& components() const { return components_; }
  /// The descriptors of all packages. One that several packages share is the first one's.
  const std::vector<PlacedDescriptor>& descriptors() const { return descriptors_; }

 private:
  void addPackage(const MetadataSet& set);
  void addComponents(const Package& package, const MetadataSet& track);
  void addDescriptors(const Package& package);
  void addPackagesWithEssence();

  const PartitionMetadata& metadata_;
  std::vector<std::size_t> partitions_;
  const MetadataSet* preface_;
  std::vector<const MetadataSet*> sets_;
  std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::vector<std::size_t>>
      byDefinition_;  // places in `sets_`
  std::unordered_map<const MetadataSet*, std::size_t> places_;
  std::vector<Package> packages_;
  std::unordered_map<Types::UMID32, std::size_t> byPackageID_;
  std::vector<const Package*> packagesWithEssence_;
  std::vector<PlacedComponent> components_;
  std::vector<PlacedDescriptor> descriptors_;
  std::unordered_set<const MetadataSet*> placed_;  // the sets of `components_` and `descriptors_`
};

/// A file with its models, one for each distinct state of header metadata.
class CheckedFile {
 public:
  explicit CheckedFile(const FileState& state);

  const FileState& state() const { return state_; }
  const std::vector<Model>& models() const { return models_; }
  /// The metadata of a partition; null when it has none.
  const Model* modelOf(std::size_t partition) const;
  /// The metadata to believe: of the last complete partition that has some, else of the last one.
  const Model* best() const { return best_; }
  /// Whether the file ends before the footer partition that it names.
  bool isCut() const;

 private:
  const FileState& state_;
  std::vector<Model> models_;
  std::unordered_map<const PartitionMetadata*, std::size_t> places_;  // in `models_`
  const Model* best_ = nullptr;
};

/// Whether the metadata of a partition are final (ST 377-1): those of an open or incomplete one may still change.
inline bool isComplete(const MXF::PartitionInfo& partition) {
  return partition.pack.status == KLV::PartitionStatus::kClosedComplete ||
         partition.pack.status == KLV::PartitionStatus::kOpenComplete;
}

/// Whether nothing of a partition will change any more.
inline bool isClosedComplete(const MXF::PartitionInfo& partition) {
  return partition.pack.status == KLV::PartitionStatus::kClosedComplete;
}

}  // namespace Vantor::Edit
