#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "Core/MXF/Unchecked.h"
#include "Core/Platform/Exceptions.h"
#include "Edit/Changes.h"
#include "Edit/Check.h"
#include "Edit/EqualValues.h"
#include "Edit/LongValues.h"
#include "Edit/Merge.h"
#include "Edit/MovedTimecodes.h"
#include "Edit/Signature.h"

namespace Vantor::Edit {

/// How edits are saved.
struct SaveOptions {
  /// Whether what hangs together with an edit changes with it (`completeEdit`), partition packs included.
  bool completesEdits = true;
  /// Codes of rules that the edit may break.
  std::set<std::string> ignoredRules = {};
  /// Whether saving into the file itself keeps its old bytes beside it, for `DataIO::File::undo`. An edit that does not
  /// fit in place is refused then.
  bool keepsUndo = false;
  /// Whether a file that is cut off behind its header metadata, or whose writer is still at work, is changed all the
  /// same: only by save(), in place, and never written anew. What is not checked then: `SaveReport::unchecked`.
  bool isForced = false;
  /// Signs the edit (`sign`).
  std::optional<Signature> signature = {};
};

/// A partition that keeps its metadata, because they are not those of the header partition.
struct UneditedPartition {
  enum class Reason {
    kOtherMetadata,     ///< its metadata differ from those of the header partition
    kUnidentifiedSets,  ///< the same content, in which nothing identifies an edited set
    kOtherInstanceUIDs  ///< the content is the same, the InstanceUIDs are not
  };
  std::size_t number;  ///< in file order; 0 is the header partition
  Reason reason;
  bool isBetter = false;  ///< the best partition of the file, in a better state than the header partition
};

/// What saving writes, or wrote.
struct SaveReport {
  Changes changes = {};                            ///< of the metadata of the edited partition
  std::vector<MergePlace> followed = {};           ///< the properties among them that changed with the edit
  bool isSigned = false;                           ///< the changes include an Identification of the edit
  std::vector<EqualValue> equalValues = {};        ///< that the edit left in other sets
  std::vector<MovedTimecode> movedTimecodes = {};  ///< start timecodes that read differently in their new base
  std::size_t partitions = 0;                      ///< number of those with replaced metadata; 0 when nothing is edited
  std::vector<std::size_t> packs = {};             ///< the partitions whose packs get other labels
  std::vector<UneditedPartition> unedited = {};    ///< only where the header partition is edited
  std::vector<LongValue> longValues = {};
  std::vector<MXF::Unchecked> unchecked = {};  ///< of a forced change; empty for a file for which it needs no force
  /// Of any rule that the file did not break before, notes and ignored rules included.
  std::vector<Finding> findings = {};
  /// Whether the written file survives a power failure; without meaning for a sink.
  DataIO::File::Durability durability = DataIO::File::Durability::kSurvivesPowerFailure;
};

/// Those of the findings for which saving is refused: errors and warnings of rules that are not ignored.
std::vector<Finding> refusedFindings(const SaveReport& report, const SaveOptions& options);

/// An edit would break rules that the file does not break. Nothing is written.
class FileGetsWorse : public Exceptions::InvalidFormat {
 public:
  explicit FileGetsWorse(std::vector<Finding> findings);

  /// At least one.
  const std::vector<Finding>& findings() const { return findings_; }

 private:
  std::vector<Finding> findings_;
};

}  // namespace Vantor::Edit
