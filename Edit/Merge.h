#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Edit/Differences.h"
#include "Edit/Scope.h"

namespace Vantor::Edit {

/// The state that an edit leads to.
struct Theirs {
  const PartitionMetadata& partition;
  /// Properties that the document has, but that could not be read, by `keyOf`.
  std::unordered_set<std::string> unread = {};
  /// Whether what the state omits is to be removed: not where parts of it could not be read.
  bool mayRemove = true;

  /// @param instanceUID  of the set.
  /// @param symbol       of the property.
  static std::string keyOf(const Types::UUID& instanceUID, const std::string& symbol);
};

/// A set or a property of it.
struct MergePlace {
  std::string set;       ///< the symbol, with the InstanceUID when there is one
  std::string property;  ///< empty for the set itself
};

/// An edit that was not merged, because it fits no set of ours.
struct RejectedEdit {
  enum class Reason {
    kSharedInstanceUID,  ///< several sets have the InstanceUID
    kNoInstanceUID,      ///< the set has none, and its content is another
    kOtherKind           ///< theirs is a set of another kind with the InstanceUID
  };
  Reason reason;
  std::string set;          ///< as in `MergePlace`
  std::string theirs = {};  ///< for kOtherKind, the symbol of their set
};

/// What a merge left out.
struct MergeReport {
  std::vector<MergePlace> kept = {};  ///< what theirs omits, and what stays because nothing may be removed
  std::vector<RejectedEdit> rejected = {};
};

/// Merges the difference between base and theirs into ours, and changes nothing else of it.
///
/// What is the same in base and theirs keeps everything that it has in ours: octets, local tags, octets of length
/// fields, order. Sets are identified by their InstanceUIDs; sets without one, and sets that share theirs with another,
/// stay as they are. KLVs of which nothing is known are identified by key and octets. New sets come at the end.
/// References that the scope hides stay.
///
/// @param base   what theirs was made from; may be ours itself. All three have one dictionary.
/// @param scope  what of the base theirs shows.
/// @throws Exceptions::InvalidFormat naming set and property for a value that the property cannot have, and for a set
/// that theirs omits although a set that theirs does not show refers to it. Nothing is changed then.
MergeReport merge(PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs, const Scope& scope);

}  // namespace Vantor::Edit
