#include "ComparisonText.h"

#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

std::string lineOf(const PartitionDifference& difference) {
  std::string line = std::string(name(difference.kind)) + ": " + difference.set;
  if (!difference.instanceUID.empty()) line += " " + difference.instanceUID;
  if (difference.property.empty()) return line;
  const auto valueOr = [](const std::string& value) { return value.empty() ? std::string("nothing") : value; };
  return line + ": " + difference.property + ": " + valueOr(difference.left) + " -> " + valueOr(difference.right);
}

std::string insignificantLine(const PartitionComparison& comparison) {
  std::string line;
  for (std::size_t i = 0; i < PartitionComparison::kInsignificantKinds; ++i) {
    const auto kind = static_cast<InsignificantDifference>(i);
    line += (line.empty() ? "" : ", ") + std::string(name(kind)) + " " + std::to_string(comparison.count(kind));
  }
  return "not counted as differences: " + line;
}

std::string summaryLine(const PartitionComparison& comparison) {
  return "sets compared " + std::to_string(comparison.sets) + ", different " +
         std::to_string(comparison.differingSets) + "; properties compared " + std::to_string(comparison.properties) +
         ", different " + std::to_string(comparison.differingProperties);
}

}  // namespace

std::string describe(const PartitionComparison& comparison) {
  std::string text;
  for (const auto& difference : comparison.differences) text += oneLine(lineOf(difference)) + "\n";
  return text + insignificantLine(comparison) + "\n" + summaryLine(comparison) + "\n";
}

}  // namespace Vantor::Tool
