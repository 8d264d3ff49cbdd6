#pragma once

#include <optional>

#include "Core/MXF/PartitionChoice.h"
#include "DictionaryOptions.h"
#include "PlanRun.h"

namespace Vantor::Tool {

/// The rows of a plan as changes of properties. The options outlive this object.
class SetPlan final : public PlanEdits {
 public:
  SetPlan(const DictionaryOptions& dictionary, const std::optional<MXF::PartitionChoice>& partition)
      : dictionary_(dictionary), partition_(partition) {}

  EditedPlanFile edit(const PlannedFile& file, bool isInPlace) const override;
  Pairing pairing() const override { return Pairing::kByIdentifier; }

 private:
  const DictionaryOptions& dictionary_;
  const std::optional<MXF::PartitionChoice>& partition_;
};

}  // namespace Vantor::Tool
