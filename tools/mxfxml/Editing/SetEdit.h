#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "CommandLine/DictionaryOptions.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/SetPath.h"
#include "Edit/File.h"
#include "Editing/GivenValues.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

/// A file whose properties are set, and how to read it. The options outlive this object.
struct EditTarget {
  Path file;
  const DictionaryOptions& dictionary;
  const std::optional<MXF::PartitionChoice>& partition;  ///< none for the header partition and all that repeat it
  bool isForced = false;                                 ///< as `Edit::SaveOptions` has it
};

/// Opens the file for the edits of `mxfxml set`.
/// @param isInPlace  the file itself will change: a change of it that was stopped is undone first, with a message.
/// @throws CommandError for a file that cannot be edited, with the way around; what `Edit::File` throws.
std::unique_ptr<Edit::File> openForSetting(const EditTarget& target, bool isInPlace);

/// What the user wants of one property: "Set.Property=VALUE", or "Set.Property" to remove it, or a value of a document.
struct Change : PropertyPath {
  explicit Change(const PropertyPath& path, std::shared_ptr<const GivenValue> givenValue = nullptr)
      : PropertyPath(path), given(std::move(givenValue)) {}

  bool isAssignment() const { return value || given != nullptr; }

  std::shared_ptr<const GivenValue> given;
};

/// Two changes are of one property of one set.
class GivenTwice final : public UsageError {
 public:
  GivenTwice(const Change& first, const Change& second)
      : UsageError(second.choice + " is given more than once"), first_(first), second_(second) {}

  const Change& first() const { return first_; }
  const Change& second() const { return second_; }

 private:
  const Change& first_;
  const Change& second_;
};

/// Changes properties in the metadata of one file.
class SetEdit {
 public:
  /// A change that cannot be made, or not in all its sets.
  struct Failure {
    const Change* change;
    std::exception_ptr reason;  ///< InvalidFormat, IOError, CommandError or OtherFileError
  };
  /// A change of one set, with the texts of the values; none where there is no value.
  struct Made {
    const Change* change;
    std::optional<std::string> before, after;
  };
  struct Result {
    std::vector<Failure> failures = {};
    std::vector<Made> made = {};
    std::vector<std::string> remarks = {};  ///< on properties that cannot be removed, since they are not there
    std::set<std::string> warnings = {};    ///< about given values; each names its document
  };

  /// @param start       of several sets with one name, the one to edit; none for the sets that paths lead to.
  /// @param keepsGoing  try all sets of a change, even if it fails in one.
  SetEdit(EditTarget target, std::optional<std::string> start, bool keepsGoing)
      : target_(std::move(target)), start_(std::move(start)), keepsGoing_(keepsGoing) {}

  /// Finds the sets of all changes before it makes one, so that no change decides which sets another means, and tries
  /// all changes.
  /// @param changes  outlive the result.
  /// @throws GivenTwice when two of them change one property.
  Result run(PartitionMetadata& metadata, const std::vector<Change>& changes) const;

 private:
  struct Place;

  std::vector<Place> placesOf(const PartitionMetadata& metadata, const std::vector<Change>& changes,
                              std::vector<Failure>& failures) const;
  FoundSets find(const PartitionMetadata& metadata, const Change& change) const;
  void checkGiven(const std::vector<Place>& places, Result& result, const PartitionMetadata& metadata) const;
  template <class Action>
  bool attempt(const Change& change, std::vector<Failure>& failures, const PartitionMetadata& metadata,
               Action action) const;
  std::string hintOn(const Change& change, const PartitionMetadata& metadata) const;
  const MetaMetadata::Dictionary* ownDictionary() const;

  EditTarget target_;
  std::optional<std::string> start_;
  bool keepsGoing_;
  mutable std::optional<SharedPtr<const MetaMetadata::Dictionary>> ownDictionary_;
};

}  // namespace Vantor::Tool
