#include "Editing/EditReport.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include "Core/Platform/Path.h"
#include "Editing/Uneditable.h"
#include "Report/ComparisonText.h"
#include "Report/DiagnosticText.h"
#include "Report/FindingText.h"
#include "Terminal/CopyProgress.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

constexpr std::size_t kMostNamed = 5;

std::string counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}
std::string sets(std::size_t count) { return counted(count, "set", "sets"); }
std::string properties(std::size_t count) { return counted(count, "property", "properties"); }

std::string reasonOf(const Edit::RejectedEdit& edit) {
  using Reason = Edit::RejectedEdit::Reason;
  switch (edit.reason) {
    case Reason::kSharedInstanceUID:
      return "another set has the same InstanceUID";
    case Reason::kNoInstanceUID:
      return "it has no InstanceUID";
    case Reason::kOtherKind:
      return "the document has a " + edit.theirs + " with its InstanceUID";
  }
  return "";
}

std::string keptText(const std::vector<Edit::MergePlace>& kept) {
  const auto count = static_cast<std::size_t>(
      std::count_if(kept.begin(), kept.end(), [](const Edit::MergePlace& place) { return place.property.empty(); }));
  std::string text = count == 0 ? "" : sets(count);
  if (count != 0 && count != kept.size()) text += " and ";
  if (count != kept.size()) text += properties(kept.size() - count);
  return text + " that the document lacks " + (kept.size() == 1 ? "is" : "are") +
         " kept, since parts of it could not be read";
}

std::string remarkOn(const Edit::UneditedPartition& partition) {
  const auto number = std::to_string(partition.number);
  const std::string start =
      "partition " + number + (partition.isBetter ? ", which is in a better state, has " : " has ");
  switch (partition.reason) {
    case Edit::UneditedPartition::Reason::kOtherMetadata:
      return start + "other metadata than the header partition, and keeps them; --partition " + number + " edits them";
    case Edit::UneditedPartition::Reason::kUnidentifiedSets:
      return start + "edited sets that no InstanceUID identifies, and keeps them; --partition " + number +
             " edits them";
    case Edit::UneditedPartition::Reason::kOtherInstanceUIDs:
      return start + "the metadata of the header partition under other InstanceUIDs, and keeps them; --partition " +
             number + " edits them, in an export of them";
  }
  return "";
}

/// "1 set changed (2 properties), 3 added": counts that are zero are left out.
std::string changesText(const Edit::Changes& changes) {
  std::string text;
  const auto add = [&text](std::size_t count, const std::string& what) {
    if (count == 0) return;
    text += text.empty() ? sets(count) : ", " + std::to_string(count);
    text += " " + what;
  };
  add(changes.changedSets, "changed (" + properties(changes.changedProperties) + ")");
  add(changes.addedSets, "added");
  add(changes.removedSets, "removed");
  return text;
}

/// What changed along with the edit: each property with the number of sets.
std::string followedText(const Edit::SaveReport& report) {
  std::map<std::string, std::size_t> counts;
  for (const auto& place : report.followed) ++counts[place.property];
  std::string text;
  for (const auto& [property, count] : counts) text += (text.empty() ? "" : ", ") + property + " of " + sets(count);
  if (!report.packs.empty()) {
    text += (text.empty() ? "" : ", ") + std::string("the labels of ") +
            counted(report.packs.size(), "partition pack", "partition packs");
  }
  return text.empty() ? "" : "; with it: " + text;
}

std::string editSummaryOf(const Edit::SaveReport& report, const std::string& verb) {
  if (report.changes.isNone()) return "nothing is edited";
  return changesText(report.changes) + followedText(report) + (report.isSigned ? "; signed; " : "; ") + verb + " to " +
         counted(report.partitions, "partition", "partitions, which repeat each other");
}

std::string hintOn(const Edit::EqualValue& value) {
  const auto other = value.otherName.empty() ? std::string() : " (" + value.otherName + ")";
  std::string text = "hint: the old " + value.property + other + ", " + value.value + ", is still in ";
  for (std::size_t i = 0; i < value.sets.size() && i < kMostNamed; ++i) text += (i == 0 ? "" : ", ") + value.sets[i];
  if (value.sets.size() > kMostNamed) text += " and " + sets(value.sets.size() - kMostNamed) + " more";
  return text;
}

std::string hintOn(const Edit::MovedTimecode& timecode) {
  const auto text = "hint: the " + timecode.property + " of the " + timecode.set + " now reads " + timecode.after +
                    ", was " + timecode.before;
  if (timecode.kept.empty()) return text + ", which its new base does not have";
  return text + "; set " + timecode.property + "=" + timecode.kept + ", too, to keep it";
}

/// Adds the way around to the message about a file that is not safe to edit.
template <class Action>
auto withWayAround(const Path& file, const EditOptions& options, Action&& action) -> decltype(action()) {
  try {
    return action();
  } catch (const Exceptions::ParseError& error) {
    const auto hint = options.isForced() ? "" : wayAround(file);
    if (hint.empty()) throw;
    throw CommandError(error.message() + hint);
  } catch (const Exceptions::IOError& error) {
    const auto hint = options.isForced() ? "" : wayAround(file);
    if (hint.empty()) throw;
    throw OtherFileError(error.message() + hint);
  }
}

void printUnedited(const Path& file, const std::vector<Edit::UneditedPartition>& partitions) {
  for (const auto& partition : partitions) printMessage(Platform::pathToUTF8(file) + ": " + remarkOn(partition));
}

/// What the user permitted needs no line.
void printNotes(const Path& file, const Edit::SaveReport& report) {
  for (const auto& finding : report.findings) {
    if (finding.rule->severity == Edit::Severity::kNote)
      printMessage(Platform::pathToUTF8(file) + ": " + lineOf(finding));
  }
}

/// The file is written by now.
void printSummary(const std::string& summary, const Path& file, DataIO::File::Durability durability) {
  const auto print = [&file](const std::string& message) { printMessage(Platform::pathToUTF8(file) + ": " + message); };
  warnOfDurability(file, durability);
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return print(summary);
  try {
    writeStandardOutput(summary + "\n");
  } catch (const ReaderGone&) {
    // Nobody waits for the summary.
  } catch (const OtherFileError& failure) {
    print(std::string("warning: ") + failure.what() + "; the command is done: " + summary);
  }
}

}  // namespace

void printRemarks(const Path& file, const Edit::MergeReport& report) {
  const auto print = [&file](const std::string& remark) { printMessage(Platform::pathToUTF8(file) + ": " + remark); };
  const auto& kept = report.kept;
  if (!kept.empty()) print(keptText(kept));
  for (std::size_t i = 0; kept.size() <= kMostNamed && i < kept.size(); ++i) {
    print("kept: the " + (kept[i].property.empty() ? "" : kept[i].property + " of the ") + kept[i].set);
  }
  for (const auto& edit : report.rejected) print("an edit of the " + edit.set + " is rejected: " + reasonOf(edit));
}

void printRemarks(const Path& file, const std::vector<Edit::LongValue>& values) {
  for (const auto& value : values) {
    printMessage(Platform::pathToUTF8(file) + ": warning: set " + value.set + ": a value of " +
                 std::to_string(value.size) + " bytes needs BER-coded lengths, which many readers do not know");
  }
}

void printRemarks(const Path& file, const Edit::SaveReport& report) {
  printRemarks(file, report.longValues);
  for (const auto& unchecked : report.unchecked) {
    printMessage(Platform::pathToUTF8(file) + ": not checked: " + describe(unchecked));
  }
  printUnedited(file, report.unedited);
  for (const auto& timecode : report.movedTimecodes) printMessage(Platform::pathToUTF8(file) + ": " + hintOn(timecode));
  for (const auto& value : report.equalValues) printMessage(Platform::pathToUTF8(file) + ": " + hintOn(value));
}

void saveEdits(Edit::File& edited, const Path& file, const std::optional<Path>& copy, const EditOptions& options) {
  const auto saving = options.saving();
  CopyProgress progress;
  try {
    const auto report = withWayAround(file, options, [&] {
      return copy ? edited.saveCopy(*copy, saving, progress.progress()) : edited.save(saving, progress.progress());
    });
    printNotes(file, report);
    printRemarks(file, report);
    printSummary(editSummaryOf(report, "written"), copy.value_or(file), report.durability);
  } catch (const Edit::FileGetsWorse& refusal) {
    MessageList messages(file, true);
    for (const auto& finding : refusal.findings()) messages.print(lineOf(finding));
    messages.finish();
    printUnedited(file, edited.preview(saving).unedited);
    throw CommandError(refusalOf(refusal.findings()));
  }
}

std::string refusalOf(const std::vector<Edit::Finding>& findings) {
  std::set<const Edit::Rule*> rules;
  for (const auto& finding : findings) rules.insert(finding.rule);
  return "the edit would break " + counted(rules.size(), "rule", "rules") +
         " that the file keeps; nothing is written; --ignore RULE permits it";
}

void warnOfDurability(const Path& file, DataIO::File::Durability durability) {
  if (durability != DataIO::File::Durability::kAtomic) return;
  printMessage(Platform::pathToUTF8(file) +
               ": warning: the file is written, but its folder cannot be flushed, so that a power failure may undo it");
}

EditPreview previewOf(Edit::File& edited, const EditOptions& options, bool isCopy) {
  const auto saving = options.saving();
  auto report = isCopy ? edited.preview(saving) : edited.rehearse(saving);
  std::string text = differenceLines(edited.compare());
  for (const auto& finding : report.findings) text += lineOf(finding) + "\n";
  text += editSummaryOf(report, "would be written") + "\n";
  auto refused = Edit::refusedFindings(report, saving);
  return {std::move(text), std::move(report), std::move(refused)};
}

void previewEdits(Edit::File& edited, const Path& file, const EditOptions& options) {
  const auto preview = withWayAround(file, options, [&] { return previewOf(edited, options); });
  writeStandardOutput(preview.text);
  printRemarks(file, preview.report);
  if (!preview.refused.empty()) throw CommandError(refusalOf(preview.refused));
}

}  // namespace Vantor::Tool
