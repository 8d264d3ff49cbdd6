#include "Plan/PlanRun.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "Core/Platform/Path.h"
#include "Editing/EarlierEdit.h"
#include "Editing/EditReport.h"
#include "Editing/ImportEdit.h"
#include "Plan/PlanReport.h"
#include "Terminal/CopyProgress.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

using DataIO::File::FileState;

/// Standard output. When its reader is gone, files are written all the same.
class PlanOutput {
 public:
  explicit PlanOutput(bool isNeeded) : isNeeded_(isNeeded) {}

  void print(const std::string& text) {
    if (isGone_) return;
    try {
      writeStandardOutput(text);
    } catch (const std::exception& failure) {
      if (isNeeded_) throw;
      isGone_ = true;
      if (dynamic_cast<const ReaderGone*>(&failure) == nullptr) printMessage(std::string("warning: ") + failure.what());
    }
  }

 private:
  bool isNeeded_;
  bool isGone_ = false;
};

std::string indented(const std::string& lines) {
  std::string text;
  for (std::size_t from = 0; from < lines.size();) {
    const auto end = std::min(lines.find('\n', from), lines.size());
    text += "  " + lines.substr(from, end - from) + "\n";
    from = end + 1;
  }
  return text;
}

/// @throws OtherFileError.
void requirePlaceFor(const Path& report) {
  const auto refuse = [&](const std::string& text) {
    throw OtherFileError("--report: '" + Platform::pathToUTF8(report) + "' " + text);
  };
  std::error_code error;
  const auto status = std::filesystem::status(report, error);
  if (exists(status) && !is_regular_file(status)) refuse("is no regular file");
  const auto folder = report.parent_path();
  if (!folder.empty() && !std::filesystem::is_directory(folder, error)) refuse("is in a folder that is not there");
}

class PlanRun {
 public:
  PlanRun(const PlanOptions& plan, const Plan& files, const PlanEdits& edits, const EditOptions& options)
      : plan_(plan),
        files_(files),
        edits_(edits),
        options_(options),
        output_(options.isDryRun()),
        outcomes_(files.size()),
        states_(files.size()) {}

  ExitCode run() {
    requirePlaceForReport();
    for (std::size_t i = 0; i < files_.size(); ++i) check(i);
    if (options_.isDryRun() || (count(PlanState::kRefused) != 0 && !options_.keepsGoing())) {
      finish(reportFile());
    } else {
      writeAll();
    }
    if (isInterrupted_) return kFailure;
    requireDone();
    return kSuccess;
  }

 private:
  /// Refuses a report that would replace the table, a file of the plan or a device, or whose folder is not there.
  void requirePlaceForReport() const {
    if (!plan_.report()) return;
    requirePlaceFor(*plan_.report());
    refuseSameFile(plan_.table(), *plan_.report());
    for (const auto& file : files_) refuseSameFile(file.file, *plan_.report());
  }

  bool isInPlace(const PlannedFile& file) const { return !file.copy && !options_.isDryRun(); }

  void check(std::size_t number) {
    output_.print(oneLine(Platform::pathToUTF8(files_[number].file)) + "\n");
    output_.print(indented(checked(number)));
    if (plan_.report()) return;
    for (auto& change : outcomes_[number].changes) change.before = change.after = "";  // nobody asks for them
  }

  /// @return what would change.
  std::string checked(std::size_t number) {
    try {
      return edited(number);
    } catch (const DocumentError& error) {
      refuse(number, error.what(), files_[number].rows.front().what);
    } catch (...) {
      refuse(number, currentExceptionText(files_[number].file));
    }
    return "refused\n";
  }

  std::string edited(std::size_t number) {
    const auto& file = files_[number];
    auto& outcome = outcomes_[number];
    if (!isInPlace(file)) states_[number] = DataIO::File::stateOf(file.file);
    auto edited = edits_.edit(file, isInPlace(file));
    // A change that was stopped has been undone. Another one after the file was opened is found by the preview.
    if (isInPlace(file)) states_[number] = DataIO::File::stateOf(file.file);
    outcome.changes = std::move(edited.changes);
    if (edited.refusals != 0) return reportRefusals(number);
    if (edited.isThere || hasCopy(file, edited.partition)) return alreadySo(outcome);
    const auto preview = previewOf(*edited.file, options_, file.copy.has_value());
    printRemarks(file.file, preview.report);
    if (!preview.refused.empty()) {
      refuse(number, Platform::pathToUTF8(file.file) + ": " + refusalOf(preview.refused));
      return preview.text + "refused\n";
    }
    const bool isSame = preview.report.changes.isNone();
    if (!file.copy && isSame) return alreadySo(outcome);
    settle(outcome, isSame ? PlanState::kCopied : PlanState::kChanged);
    return preview.text;
  }

  static std::string alreadySo(PlanOutcome& outcome) {
    settle(outcome, PlanState::kAlreadySo);
    return "already so\n";
  }

  /// Whether the copy is that of an earlier run: it has the edits, and the file has not changed since.
  bool hasCopy(const PlannedFile& file, const std::optional<MXF::PartitionChoice>& partition) const {
    std::error_code error;
    if (!file.copy || !std::filesystem::is_regular_file(*file.copy, error)) return false;
    if (DataIO::File::stateOf(*file.copy).modified < DataIO::File::stateOf(file.file).modified) return false;
    const auto edited = editedAgain(file);
    auto saving = options_.saving();
    saving.signature.reset();
    edited.file->preview(saving);  // which completes the edit
    try {
      return isEditThere(*file.copy, partition, edited.file->metadata(), edits_.pairing());
    } catch (const Exceptions::BaseException&) {
      return false;  // it is no copy
    }
  }

  std::string reportRefusals(std::size_t number) {
    auto& outcome = outcomes_[number];
    outcome.state = PlanState::kRefused;
    for (const auto& change : outcome.changes) {
      if (change.state != PlanState::kRefused) continue;
      const auto& row = files_[number].rows[change.row];
      printMessage(Platform::pathToUTF8(plan_.table()) + ": " + placeOf(row.what) + ": " + change.reason);
    }
    return "refused\n";
  }

  /// All of a file.
  void refuse(std::size_t number, const std::string& reason) {
    refuse(number, reason, files_[number].rows.front().file);
  }
  void refuse(std::size_t number, const std::string& reason, const CSVCell& cell) {
    give(number, PlanState::kRefused, reason);
    printMessage(Platform::pathToUTF8(plan_.table()) + ": " + placeOf(cell) + ": " + reason);
  }

  void give(std::size_t number, PlanState state, const std::string& reason) {
    auto& outcome = outcomes_[number];
    outcome.state = state;
    if (outcome.changes.empty()) addRows(number);
    for (auto& change : outcome.changes) {
      if (change.state == PlanState::kAlreadySo) continue;
      change.state = state;
      change.reason = reason;
    }
  }

  /// For a file that could not be looked at.
  void addRows(std::size_t number) {
    const auto& rows = files_[number].rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto value = rows[i].change ? rows[i].change->value.value_or("") : "";
      outcomes_[number].changes.push_back({i, rows[i].what.text, "", value, true});
    }
  }

  /// Before a file is written, its changes wait for that.
  static void settle(PlanOutcome& outcome, PlanState state) {
    outcome.state = state;
    for (auto& change : outcome.changes) {
      const bool isChange = state == PlanState::kChanged && change.isChange;
      change.state = isChange ? PlanState::kChanged : PlanState::kAlreadySo;
    }
  }

  void writeAll() {
    CopyProgress progress;
    auto report = reportFile();  // fails before anything is written
    bool isStopped = false;
    for (std::size_t i = 0; i < files_.size(); ++i) {
      if (!isToWrite(i)) continue;
      isStopped = isStopped || progress.isInterrupted();
      if (isStopped) {
        give(i, PlanState::kNotReached, "");
      } else {
        isStopped = !write(i, progress) && !options_.keepsGoing();
      }
    }
    finish(std::move(report));
    isInterrupted_ = progress.isInterrupted() && count(PlanState::kNotReached) != 0;
    if (isInterrupted_) printMessage(Platform::pathToUTF8(plan_.table()) + ": stopped; the same command does the rest");
  }

  bool isToWrite(std::size_t number) const {
    const auto state = outcomes_[number].state;
    return state == PlanState::kChanged || state == PlanState::kCopied;
  }

  /// @return false when that fails.
  bool write(std::size_t number, CopyProgress& progress) {
    const auto& file = files_[number];
    try {
      writeFile(number, progress);
      output_.print(oneLine(Platform::pathToUTF8(file.copy.value_or(file.file))) + ": written\n");
      return true;
    } catch (...) {
      const auto reason = currentExceptionText(file.file);
      printMessage(reason);
      give(number, progress.isInterrupted() ? PlanState::kNotReached : PlanState::kFailed, reason);
      return false;
    }
  }

  void writeFile(std::size_t number, CopyProgress& progress) {
    const auto& file = files_[number];
    const auto edited = editedAgain(file);
    DataIO::File::requireState(file.file, *states_[number], "cannot change");
    if (file.copy) std::filesystem::create_directories(file.copy->parent_path());
    const auto saving = options_.saving();
    const auto report = file.copy ? edited.file->saveCopy(*file.copy, saving, progress.progress())
                                  : edited.file->save(saving, progress.progress());
    warnOfDurability(file.copy.value_or(file.file), report.durability);
  }

  /// The check has printed all warnings.
  EditedPlanFile editedAgain(const PlannedFile& file) const {
    const SilentMessages silent;
    return edits_.edit(file, isInPlace(file));
  }

  std::unique_ptr<DataIO::File::AtomicFile> reportFile() const {
    if (!plan_.report()) return nullptr;
    return std::make_unique<DataIO::File::AtomicFile>(*plan_.report());
  }

  void finish(std::unique_ptr<DataIO::File::AtomicFile> report) {
    if (count(PlanState::kRefused) != 0 && !options_.keepsGoing()) leaveOthers();
    output_.print(planSummary(outcomes_, options_.isDryRun()) + "\n");
    if (report == nullptr) return;
    const auto text = planReport(files_, outcomes_, options_.isDryRun());
    report->write(reinterpret_cast<const uint8*>(text.data()), text.size());
    report->commit();
  }

  void leaveOthers() {
    for (std::size_t i = 0; i < files_.size(); ++i) {
      if (isToWrite(i)) give(i, PlanState::kNotReached, "");
    }
  }

  std::size_t count(PlanState state) const {
    std::size_t count = 0;
    for (const auto& outcome : outcomes_) count += outcome.state == state ? 1 : 0;
    return count;
  }

  void requireDone() const {
    const auto refused = count(PlanState::kRefused), failed = count(PlanState::kFailed);
    const auto of = " of " + std::to_string(files_.size()) + (files_.size() == 1 ? " file " : " files ");
    const auto fail = [&](const std::string& text) {
      throw OtherFileError(Platform::pathToUTF8(plan_.table()) + ": " + text);
    };
    if (failed != 0) {
      fail(std::to_string(failed) + of + "could not be written; the same command does the rest");
    }
    if (refused == 0) return;
    const auto number = std::to_string(refused) + of + (refused == 1 ? "is" : "are") + " refused";
    fail(number +
         (options_.keepsGoing() || options_.isDryRun() ? "" : "; nothing is written; --keep-going writes the others"));
  }

  const PlanOptions& plan_;
  const Plan& files_;
  const PlanEdits& edits_;
  const EditOptions& options_;
  PlanOutput output_;
  std::vector<PlanOutcome> outcomes_;
  std::vector<std::optional<FileState>> states_;  // as they were checked
  bool isInterrupted_ = false;
};

}  // namespace

void PlanOptions::add(CLI::App& command, const std::string& columns, const std::vector<std::string>& alone) {
  auto* plan = addFile(command, "--plan", table_,
                       "Edit many files, as a table (CSV) has them, whose first line is\n" + columns +
                           ". All is checked\nbefore anything is written; -o names a folder for copies")
                   ->type_name("TABLE.csv");
  for (const auto& name : alone) plan->excludes(command.get_option(name));
  addFile(command, "--report", report_, "Write a table (CSV) of what became of each row of the plan")
      ->type_name("REPORT.csv")
      ->needs(plan);
}

ExitCode runPlan(const PlanOptions& plan, const Plan& files, const PlanEdits& edits, const EditOptions& options) {
  return PlanRun(plan, files, edits, options).run();
}

}  // namespace Vantor::Tool
