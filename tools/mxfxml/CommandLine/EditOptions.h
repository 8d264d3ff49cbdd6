#pragma once

#include <CLI/CLI.hpp>

#include "CommandLine/RuleOptions.h"
#include "Edit/Save.h"

namespace Vantor::Tool {

/// Options of the commands that edit a file.
class EditOptions {
 public:
  /// Adds --only, --ignore, --sign, --keep-undo, --force, --dry-run and --keep-going.
  void add(CLI::App& command);

  /// @param isCopy  whether the edits go into a copy. @throws UsageError for options of a change in place then.
  void requireFor(bool isCopy) const;

  Edit::SaveOptions saving() const;
  /// Identifies this program in the signatures that --sign leaves.
  static Types::UUID productUID();
  /// Whether to keep the old bytes of a change in place.
  bool keepsUndo() const { return keepsUndo_; }
  /// Whether to change files that are cut off or not finished.
  bool isForced() const { return isForced_; }
  bool isSigned() const { return isSigned_; }
  bool isDryRun() const { return isDryRun_; }
  /// Whether to save the rest when a part of the edit cannot be taken.
  bool keepsGoing() const { return keepsGoing_; }

 private:
  bool isOnly_ = false;
  bool isSigned_ = false;
  bool keepsUndo_ = false;
  bool isForced_ = false;
  bool isDryRun_ = false;
  bool keepsGoing_ = false;
  RuleOptions rules_;
};

}  // namespace Vantor::Tool
