#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/UMID32.h"

/// Sets of a partition and their properties as people look at them. For one thread.
namespace Vantor::Tool {

class SetNames {
 public:
  /// @param metadata  outlives this.
  explicit SetNames(const PartitionMetadata& metadata);

  /// What chooses the set, as `PartitionMetadata::find` takes it: "Preface", "TimelineTrack[2]"; the key of a dark
  /// group.
  std::string choiceOf(const MetadataSet& set) const;
  /// The same followed by the common name: "Timecode[1] (TimecodeComponent)".
  std::string nameOf(const MetadataSet& set) const;
  /// The same followed by what the set is called: "TimelineTrack[2] "V1"".
  const std::string& fullName(const MetadataSet& set) const;

  /// The package with this PackageID; null for none.
  const MetadataSet* findPackage(const Types::UMID32& id) const;

 private:
  std::string makeFullName(const MetadataSet& set) const;

  struct Place {
    std::size_t number;        // from 1
    const std::size_t* count;  // of sets of the kind
  };

  std::unordered_map<const MetadataSet*, Place> places_;
  std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::size_t> counts_;
  std::unordered_map<Types::UMID32, const MetadataSet*> packages_;
  mutable std::unordered_map<const MetadataSet*, std::string> fullNames_;  // of those that were asked for
};

/// The present properties: those that people ask for first, by the kind of set, then the others in order of definition,
/// misplaced and unknown ones last.
std::vector<const Element*> inOrderOfInterest(const MetadataSet& set);

}  // namespace Vantor::Tool
