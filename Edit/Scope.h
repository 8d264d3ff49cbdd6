#pragma once

#include <unordered_set>

#include "Core/Metadata/PartitionMetadata.h"
#include "Edit/Differences.h"

namespace Vantor::Edit {

/// How a document was exported: what decides which sets and references it omits.
struct DocumentForm {
  bool isNested = true;
  bool isStructuralOnly = false;
  std::optional<Types::UUID> start = {};  ///< where it starts; none for the Preface
  /// Whether this is an assumption, for a document without description. It may then have the exact form, in which
  /// references to dark groups and to sets that are written elsewhere are empty properties.
  bool isAssumed = false;
};

/// The sets and references of the base that a document of a form shows.
class Scope {
 public:
  /// Shows everything.
  explicit Scope(const PartitionMetadata& base) : base_(base) {}
  /// @param theirs  the sets of the document. Both outlive this.
  /// @throws Exceptions::InvalidFormat when the set that the document starts from is not in the base.
  Scope(const PartitionMetadata& base, const PartitionMetadata& theirs, const DocumentForm& form);

  bool shows(const MetadataSet& set) const { return isWhole() || shown_.count(&set) != 0; }
  /// Whether the form leaves a reference to this set out of its property.
  bool hides(const Types::UUID& target, bool isStrong) const;
  /// How closely values of theirs can be compared with those of the base.
  Fidelity fidelity() const { return theirs_ != nullptr ? Fidelity::kLetter : Fidelity::kWhole; }

 private:
  bool isWhole() const { return !form_.start && !form_.isStructuralOnly; }
  void show(const MetadataSet& start);

  const PartitionMetadata& base_;
  DocumentForm form_ = {};
  const PartitionMetadata* theirs_ = nullptr;  // where it may have the exact form
  std::unordered_set<const MetadataSet*> shown_;
};

}  // namespace Vantor::Edit
