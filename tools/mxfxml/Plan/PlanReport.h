#pragma once

#include <string>
#include <vector>

#include "Plan/PlanRun.h"

namespace Vantor::Tool {

/// What became of a file of a plan.
struct PlanOutcome {
  PlanState state = PlanState::kNotReached;
  std::vector<PlanChange> changes = {};
};

/// "2 files changed, 1 already so, 3 not reached"; counts that are zero are left out.
std::string planSummary(const std::vector<PlanOutcome>& outcomes, bool isDryRun);

/// The report as a table (CSV): a line for each change, with the header
/// "file,path,old value,new value,state,reason".
std::string planReport(const Plan& files, const std::vector<PlanOutcome>& outcomes, bool isDryRun);

}  // namespace Vantor::Tool
