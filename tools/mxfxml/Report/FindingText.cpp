#include "Report/FindingText.h"

#include <algorithm>

#include "Terminal/TextTable.h"

namespace Vantor::Tool {

namespace {

using Edit::Finding;
using Edit::Severity;

/// The partitions of a long recording do not fit on a line.
std::string textOf(const std::vector<std::size_t>& partitions) {
  constexpr std::size_t kMostNumbers = 4;
  std::string text = partitions.size() == 1 ? "partition " : "partitions ";
  const std::size_t shown = partitions.size() > kMostNumbers ? kMostNumbers - 1 : partitions.size();
  for (std::size_t i = 0; i < shown; ++i) text += (i == 0 ? "" : ", ") + std::to_string(partitions[i]);
  if (shown < partitions.size()) text += " and " + std::to_string(partitions.size() - shown) + " more";
  return text;
}

std::string countOf(const std::vector<Finding>& findings, Severity severity) {
  const auto count = std::count_if(findings.begin(), findings.end(),
                                   [severity](const Finding& finding) { return finding.rule->severity == severity; });
  if (count == 0) return "";
  return std::to_string(count) + " " + nameOf(severity) + (count == 1 ? "" : "s");
}

}  // namespace

std::string nameOf(Severity severity) {
  switch (severity) {
    case Severity::kNote:
      return "note";
    case Severity::kWarning:
      return "warning";
    case Severity::kError:
      return "error";
  }
  return "?";
}

std::string lineOf(const Finding& finding) {
  std::string text = nameOf(finding.rule->severity) + ": " + finding.rule->code + ": ";
  if (!finding.partitions.empty()) text += textOf(finding.partitions) + ": ";
  const auto other = finding.otherName.empty() ? std::string() : " (" + finding.otherName + ")";
  const bool isOfSet = finding.property.empty();
  if (!finding.set.empty()) text += finding.set + (isOfSet ? other : "") + ": ";
  if (!isOfSet) text += finding.property + other + ": ";
  return text + Edit::describe(finding);
}

std::string summaryOf(const std::vector<Finding>& findings) {
  std::string text;
  for (const auto severity : {Severity::kError, Severity::kWarning, Severity::kNote}) {
    const std::string count = countOf(findings, severity);
    if (!count.empty()) text += (text.empty() ? "" : ", ") + count;
  }
  return text.empty() ? "nothing found" : text;
}

std::string tableOfRules() {
  TextTable table(4);
  for (const auto* rule : Edit::rules()) {
    table.addRow({rule->code, nameOf(rule->severity), rule->sentence, rule->source});
  }
  return table.text();
}

}  // namespace Vantor::Tool
