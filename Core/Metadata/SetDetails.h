#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/Metadata/MetadataSet.h"

/// The few words that distinguish sets of one kind.
namespace Vantor {

class PartitionMetadata;

/// The properties that people know a set by, those that it has; of a kind without such, the first text or number. Each
/// with its name and its shortened value: "TrackName \"V1\"", "PackageUID ...8B.6B.4D.57.B0.0B.0A.DC". The name is the
/// common one where there is one; the kind of essence stands without.
/// @param set  with a definition.
std::vector<std::string> detailsOf(const MetadataSet& set);

/// The value of a property in at most 32 characters; identifiers keep their last eight octets, texts their beginning.
/// Empty where the property has no value.
std::string shortText(const MetadataSet& set, std::string_view property);

/// Which set a set belongs to: the first that has a strong reference to it. Lives no longer than the partition and
/// follows no change of it. Made in time in proportion to the sets.
class SetOwners {
 public:
  explicit SetOwners(const PartitionMetadata& partition);

  /// Null for a set that none refers to.
  const MetadataSet* ownerOf(const MetadataSet& set) const;
  /// The package that a set belongs to, directly or through others; null for none, and for a package.
  const MetadataSet* packageOf(const MetadataSet& set) const;

 private:
  void findPackage(const MetadataSet& set);

  std::unordered_map<const MetadataSet*, const MetadataSet*> owners_;
  std::unordered_map<const MetadataSet*, const MetadataSet*> packages_;  // of sets that have an owner; null for none
};

}  // namespace Vantor
