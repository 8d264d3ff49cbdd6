#include "FindingText.h"

#include "ErrorText.h"
#include "NearestName.h"

namespace Vantor::Tool {

namespace {

std::string nameOf(Edit::Severity severity) {
  switch (severity) {
    case Edit::Severity::kNote:
      return "note";
    case Edit::Severity::kWarning:
      return "warning";
    case Edit::Severity::kError:
      return "error";
  }
  return "?";
}

}  // namespace

std::string lineOf(const Edit::Finding& finding) {
  std::string line = nameOf(finding.rule->severity) + " " + finding.rule->code + ": ";
  if (!finding.set.empty()) line += finding.set + ": ";
  if (!finding.property.empty()) line += finding.property + ": ";
  return oneLine(line + describe(finding));
}

std::string whyNoRule(const std::string& code) {
  if (Edit::findRule(code) != nullptr) return "";
  std::vector<std::string> codes;
  for (const auto* rule : Edit::rules()) codes.emplace_back(rule->code);
  return "'" + code + "' is no rule" + suggestion(code, codes);
}

}  // namespace Vantor::Tool
