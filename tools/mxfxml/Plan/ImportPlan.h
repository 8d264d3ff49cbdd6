#pragma once

#include <optional>

#include "Editing/ImportEdit.h"
#include "Plan/PlanRun.h"

namespace Vantor::Tool {

/// The rows of a plan as documents, whose edits go into the files.
class ImportPlan final : public PlanEdits {
 public:
  /// @param format  of the documents; none for what each looks like.
  ImportPlan(Path table, std::optional<DocumentFormat> format, const ImportEdit::Options& options)
      : table_(std::move(table)), format_(format), options_(options) {}

  EditedPlanFile edit(const PlannedFile& file, bool isInPlace) const override;
  /// New sets of a document get other InstanceUIDs each time.
  Pairing pairing() const override { return Pairing::kByPlace; }

 private:
  Path table_;
  std::optional<DocumentFormat> format_;
  ImportEdit::Options options_;
};

}  // namespace Vantor::Tool
