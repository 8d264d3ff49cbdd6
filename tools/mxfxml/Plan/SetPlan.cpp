#include "Plan/SetPlan.h"

#include <algorithm>

#include "Editing/EarlierEdit.h"
#include "Editing/SetEdit.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

std::string reasonOf(const SetEdit::Failure& failure, const Path& file) {
  try {
    std::rethrow_exception(failure.reason);
  } catch (...) {
    return currentExceptionText(file);
  }
}

/// What became of the rows, in their order.
/// @param changes  of the rows, in their order; the result points to them.
std::vector<PlanChange> changesIn(const SetEdit::Result& result, const std::vector<Change>& changes, const Path& file) {
  const auto rowOf = [&](const Change* change) { return static_cast<std::size_t>(change - changes.data()); };
  std::vector<PlanChange> all;
  for (const auto& made : result.made) {
    all.push_back({rowOf(made.change), made.change->choice, made.before.value_or(""), made.after.value_or(""),
                   made.before != made.after});
  }
  for (const auto& failure : result.failures) {
    all.push_back({rowOf(failure.change), failure.change->choice, "", failure.change->value.value_or(""), true,
                   PlanState::kRefused, reasonOf(failure, file)});
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const PlanChange& left, const PlanChange& right) { return left.row < right.row; });
  return all;
}

/// All changes, the later one of two with one property refused.
std::vector<PlanChange> changesWith(const GivenTwice& twice, const std::vector<Change>& changes,
                                    const PlannedFile& file) {
  std::vector<PlanChange> all;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    all.push_back({i, changes[i].choice, "", changes[i].value.value_or(""), true});
  }
  const auto one = &twice.first() - changes.data(), other = &twice.second() - changes.data();
  const auto first = std::min(one, other), second = std::max(one, other);
  const auto& row = file.rows[static_cast<std::size_t>(first)];
  auto& refused = all[static_cast<std::size_t>(second)];
  refused.state = PlanState::kRefused;
  refused.reason = "'" + refused.path + "' of '" + row.file.text + "' is the property of line " +
                   std::to_string(row.what.line) + ", too, which has it as '" + row.what.text + "'";
  return all;
}

}  // namespace

/// Whether an earlier run made these changes and signed them. It added an Identification, which paths do not count.
bool SetPlan::wasSigned(const EditTarget& target, const std::vector<Change>& changes, EditedPlanFile& edited) const {
  if (lastSignature(edited.file->metadata()) == nullptr) return false;
  const auto before = openForSetting(target, false);
  before->metadata().remove(*lastSignature(before->metadata()));
  const auto result = SetEdit(target, {}, false).run(before->metadata(), changes);
  const bool isNone = std::all_of(result.made.begin(), result.made.end(),
                                  [](const SetEdit::Made& made) { return made.before == made.after; });
  if (!result.failures.empty() || !isNone) return false;
  edited.changes = changesIn(result, changes, target.file);
  return true;
}

EditedPlanFile SetPlan::edit(const PlannedFile& file, bool isInPlace) const {
  std::vector<Change> changes;
  for (const auto& row : file.rows) changes.emplace_back(*row.change);
  const EditTarget target{file.file, dictionary_, partition_, options_.isForced()};
  EditedPlanFile edited{openForSetting(target, isInPlace), partition_};
  try {
    make(changes, target, !file.copy, edited);
  } catch (const GivenTwice& twice) {
    edited.changes = changesWith(twice, changes, file);
    edited.refusals = 1;
  }
  return edited;
}

void SetPlan::make(const std::vector<Change>& changes, const EditTarget& target, bool isInPlace,
                   EditedPlanFile& edited) const {
  edited.isThere = options_.isSigned() && isInPlace && wasSigned(target, changes, edited);
  if (edited.isThere) return;
  const auto result = SetEdit(target, {}, false).run(edited.file->metadata(), changes);
  edited.changes = changesIn(result, changes, target.file);
  edited.refusals = result.failures.size();
}

}  // namespace Vantor::Tool
