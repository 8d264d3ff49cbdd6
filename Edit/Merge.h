#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Edit/Differences.h"
#include "Edit/Scope.h"

namespace Vantor::Edit {

/// The state that an edit leads to.
struct Theirs {
  const PartitionMetadata& partition;
  /// Properties that the document has but that could not be read: InstanceUIDs of sets with symbols of properties.
  std::set<std::pair<Types::UUID, std::string>> unread = {};
  /// Whether to remove what theirs omits; false when parts of it could not be read.
  bool mayRemove = true;
};

/// A set or a property of it.
struct MergePlace {
  std::string set;       ///< the symbol, with the InstanceUID when there is one
  std::string property;  ///< empty for the set itself
};

/// An edit that was not merged, because it cannot be assigned to a set of ours.
struct RejectedEdit {
  enum class Reason {
    kSharedInstanceUID,  ///< several sets have the InstanceUID
    kNoInstanceUID,      ///< the set has none, so its content is all that identifies it
    kOtherKind           ///< theirs has a set of another kind with the InstanceUID
  };
  Reason reason;
  std::string set;          ///< as in `MergePlace`
  std::string theirs = {};  ///< for kOtherKind, the symbol of their set
};

/// What a merge left out.
struct MergeReport {
  std::vector<MergePlace> kept = {};  ///< omitted by theirs, and kept because nothing may be removed
  std::vector<RejectedEdit> rejected = {};
};

/// Merges the difference between base and theirs into ours, and leaves everything else alone.
///
/// What base and theirs have in common keeps its octets, local tags, length fields and order in ours. Sets are
/// identified by InstanceUID; those without one, and those that share one, are left alone. Dark KLVs without
/// InstanceUID are identified by key and value. New sets are appended. References that the scope hides are kept.
///
/// @param base   what theirs was made from; may be ours itself. All three share one dictionary.
/// @param scope  the part of the base that theirs shows.
/// @throws Exceptions::InvalidFormat naming set and property for a value that the property cannot have; naming both
/// sets when theirs removes one to which another that theirs does not show refers. Nothing is changed then.
MergeReport merge(PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs, const Scope& scope);

}  // namespace Vantor::Edit
