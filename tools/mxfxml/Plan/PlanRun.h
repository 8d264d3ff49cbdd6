#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/EditOptions.h"
#include "Core/Comparison/SetPairing.h"
#include "Core/DataIO/File.h"
#include "Edit/File.h"
#include "Plan/PlanTable.h"

namespace Vantor::Tool {

/// What becomes of a file, or of a row.
enum class PlanState {
  kNotReached,  ///< left alone, since something else was refused or failed before
  kChanged,     ///< written; of a dry run: would be
  kCopied,      ///< written, with nothing to change, as a copy that was not there
  kAlreadySo,   ///< nothing to change
  kRefused,     ///< cannot be edited so; found before anything was written
  kFailed       ///< could not be written
};

/// One line of the report.
struct PlanChange {
  std::size_t row;  ///< among those of the file
  std::string path;
  std::string before = {}, after = {};  ///< the values as people write them; empty for none
  bool isChange = false;                ///< they are not the same
  PlanState state = PlanState::kNotReached;
  std::string reason = {};  ///< of what is refused or failed
};

/// A file with the edits of its rows in memory.
struct EditedPlanFile {
  std::unique_ptr<Edit::File> file;
  std::optional<MXF::PartitionChoice> partition = {};
  std::vector<PlanChange> changes = {};
  bool isThere = false;      ///< the file has the edits already, although it differs from what they lead to
  std::size_t refusals = 0;  ///< number of changes that are refused
};

/// How the rows of a plan edit a file.
class PlanEdits {
 public:
  virtual ~PlanEdits() = default;
  /// Opens a file and edits it in memory. Prints warnings.
  /// @param isInPlace  the file itself will change, now or in the next step.
  /// @throws whatever keeps the file from being edited.
  virtual EditedPlanFile edit(const PlannedFile& file, bool isInPlace) const = 0;
  /// How sets of an edited file and of an earlier copy of it belong together.
  virtual Pairing pairing() const = 0;
};

/// --plan and --report.
class PlanOptions {
 public:
  /// @param columns  of the table, for the help.
  /// @param alone    options that a plan makes meaningless.
  void add(CLI::App& command, const std::string& columns, const std::vector<std::string>& alone);
  bool isGiven() const { return table_.has_value(); }
  const Path& table() const { return *table_; }
  const std::optional<Path>& report() const { return report_; }

 private:
  std::optional<Path> table_;
  std::optional<Path> report_;
};

/// Checks all edits of a plan, and shows them on standard output; then, unless something is refused or it is a dry run,
/// writes the files one after another; then prints what became of how many, and writes the report. One file at a time
/// is in memory. A file that was changed between the two is left alone, and counts as failed.
/// @throws CommandError naming the table when something was refused or has failed.
ExitCode runPlan(const PlanOptions& plan, const Plan& files, const PlanEdits& edits, const EditOptions& options);

}  // namespace Vantor::Tool
