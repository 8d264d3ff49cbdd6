#include "Plan/ImportPlan.h"

namespace Vantor::Tool {

namespace {

/// A line of the report: a property by a path that `set` takes, or a set.
PlanChange changeOf(const PartitionDifference& difference) {
  if (!difference.property.empty()) {
    const auto set = difference.instanceUID.empty() ? difference.set : difference.instanceUID;
    return {0, set + "." + difference.property, difference.left, difference.right, true};
  }
  const bool isAdded = difference.kind == PartitionDifference::Kind::kAddedSet;
  const auto set = difference.set + (difference.instanceUID.empty() ? "" : " ") + difference.instanceUID;
  return {0, set, isAdded ? "" : "a set", isAdded ? "a set" : "", true};
}

}  // namespace

EditedPlanFile ImportPlan::edit(const PlannedFile& file, bool isInPlace) const {
  const auto& row = file.rows.front();
  const auto document = documentOf(table_, row);
  auto options = options_;
  options.resumes = !file.copy;
  const ImportEdit import(document, format_, file.file, options);
  EditedPlanFile edited{import.open(isInPlace), import.partition()};
  edited.isThere = import.merge(*edited.file).isThere;
  if (!edited.isThere) {
    for (const auto& difference : edited.file->compare().differences) edited.changes.push_back(changeOf(difference));
  }
  if (edited.changes.empty()) edited.changes.push_back({0, row.what.text});
  return edited;
}

}  // namespace Vantor::Tool
