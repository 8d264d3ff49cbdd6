#include "SetPlan.h"

#include <algorithm>

#include "ErrorText.h"
#include "SetEdit.h"

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
std::vector<PlanChange> changesIn(const SetEdit::Result& result, const std::vector<PropertyPath>& changes,
                                  const Path& file) {
  const auto rowOf = [&](const PropertyPath* change) { return static_cast<std::size_t>(change - changes.data()); };
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

}  // namespace

EditedPlanFile SetPlan::edit(const PlannedFile& file, bool isInPlace) const {
  std::vector<PropertyPath> changes;
  for (const auto& row : file.rows) changes.push_back(*row.change);
  const EditTarget target{file.file, dictionary_, partition_};
  EditedPlanFile edited{openForSetting(target, isInPlace), partition_};
  const auto result = SetEdit(target, {}, false).run(edited.file->metadata(), changes);
  edited.changes = changesIn(result, changes, file.file);
  edited.refusals = result.failures.size();
  return edited;
}

}  // namespace Vantor::Tool
