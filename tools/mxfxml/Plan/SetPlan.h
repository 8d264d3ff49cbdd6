#pragma once

#include <optional>
#include <vector>

#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/EditOptions.h"
#include "Core/MXF/PartitionChoice.h"
#include "Editing/SetEdit.h"
#include "Plan/PlanRun.h"

namespace Vantor::Tool {

/// The rows of a plan as changes of properties. The options outlive this object.
class SetPlan final : public PlanEdits {
 public:
  SetPlan(const DictionaryOptions& dictionary, const std::optional<MXF::PartitionChoice>& partition,
          const EditOptions& options)
      : dictionary_(dictionary), partition_(partition), options_(options) {}

  EditedPlanFile edit(const PlannedFile& file, bool isInPlace) const override;
  Pairing pairing() const override { return Pairing::kByIdentifier; }

 private:
  void make(const std::vector<Change>& changes, const EditTarget& target, bool isInPlace, EditedPlanFile& edited) const;
  bool wasSigned(const EditTarget& target, const std::vector<Change>& changes, EditedPlanFile& edited) const;

  const DictionaryOptions& dictionary_;
  const std::optional<MXF::PartitionChoice>& partition_;
  const EditOptions& options_;
};

}  // namespace Vantor::Tool
