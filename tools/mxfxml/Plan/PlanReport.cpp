#include "Plan/PlanReport.h"

#include <algorithm>

#include "Terminal/CSV.h"

namespace Vantor::Tool {

namespace {

const char* stateName(PlanState state, bool isDryRun) {
  switch (state) {
    case PlanState::kNotReached:
      return "not reached";
    case PlanState::kChanged:
      return isDryRun ? "would be changed" : "changed";
    case PlanState::kCopied:
      return "copied";
    case PlanState::kAlreadySo:
      return "already so";
    case PlanState::kRefused:
      return "refused";
    case PlanState::kFailed:
      return "failed";
  }
  return "";
}

}  // namespace

std::string planSummary(const std::vector<PlanOutcome>& outcomes, bool isDryRun) {
  std::string text;
  for (const auto state : {PlanState::kChanged, PlanState::kCopied, PlanState::kAlreadySo, PlanState::kRefused,
                           PlanState::kFailed, PlanState::kNotReached}) {
    const auto count = std::count_if(outcomes.begin(), outcomes.end(),
                                     [&](const PlanOutcome& outcome) { return outcome.state == state; });
    if (count == 0) continue;
    const auto number = std::to_string(count);
    text += text.empty() ? number + (count == 1 ? " file " : " files ") : ", " + number + " ";
    text += stateName(state, isDryRun);
  }
  return text.empty() ? "no files" : text;
}

std::string planReport(const Plan& files, const std::vector<PlanOutcome>& outcomes, bool isDryRun) {
  std::string text = csvLine({"file", "path", "old value", "new value", "state", "reason"});
  for (std::size_t i = 0; i < files.size(); ++i) {
    for (const auto& change : outcomes[i].changes) {
      text += csvLine({files[i].rows[change.row].file.text, change.path, change.before, change.after,
                       stateName(change.state, isDryRun), change.reason});
    }
  }
  return text;
}

}  // namespace Vantor::Tool
