#pragma once

#include <unordered_set>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Edit {

/// How a document was exported, as far as it decides what the document omits.
struct DocumentForm {
  bool isNested = true;
  bool isStructuralOnly = false;
  std::optional<Types::UUID> start = {};  ///< where it starts; none for the Preface
  /// Whether the document does not describe itself, so that it may have the letter of the exported form, in which some
  /// references are an empty property: those to dark groups and those to sets that are written elsewhere.
  bool isAssumed = false;
};

/// Which sets and references of the base a document of a form shows.
class Scope {
 public:
  /// All of it.
  explicit Scope(const PartitionMetadata& base);
  /// @param theirs  the sets of the document. Both outlive this.
  /// @throws Exceptions::InvalidFormat when the set that the document starts from is not in the base.
  Scope(const PartitionMetadata& base, const PartitionMetadata& theirs, const DocumentForm& form);

  bool shows(const MetadataSet& set) const { return isWhole_ || shown_.count(&set) != 0; }
  /// Whether the form hides a reference to a set within the property that holds it.
  bool hides(const Types::UUID& target, bool isStrong) const;
  bool isLetter() const { return theirs_ != nullptr; }

 private:
  void show(const MetadataSet& start);

  const PartitionMetadata& base_;
  bool isWhole_ = true;
  bool hidesOthers_ = false;  // sets that are not structural
  bool skipsOthers_ = false;  // writes no such set, hidden or not
  const PartitionMetadata* theirs_ = nullptr;
  std::unordered_set<const MetadataSet*> shown_;
};

}  // namespace Vantor::Edit
