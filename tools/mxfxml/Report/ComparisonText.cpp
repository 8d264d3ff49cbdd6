#include "Report/ComparisonText.h"

#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

std::string lineOf(const PartitionDifference& difference) {
  const auto other = difference.otherName.empty() ? "" : " (" + difference.otherName + ")";
  std::string line = std::string(name(difference.kind)) + ": " + difference.set;
  if (!difference.instanceUID.empty()) line += " " + difference.instanceUID;
  if (difference.property.empty()) return line + other;
  const auto valueOr = [](const std::string& value) { return value.empty() ? std::string("nothing") : value; };
  return line + ": " + difference.property + other + ": " + valueOr(difference.left) + " -> " +
         valueOr(difference.right);
}

std::string insignificantLine(const PartitionComparison& comparison) {
  std::string line;
  for (std::size_t i = 0; i < PartitionComparison::kInsignificantKinds; ++i) {
    const auto kind = static_cast<InsignificantDifference>(i);
    if (comparison.count(kind) == 0) continue;
    line += (line.empty() ? "" : ", ") + std::string(name(kind)) + " " + std::to_string(comparison.count(kind));
  }
  return line.empty() ? "" : "not counted as differences: " + line + "\n";
}

std::string compared(const std::string& what, uint64 count, uint64 different) {
  const std::string text = what + " compared " + std::to_string(count);
  return different == 0 ? text : text + ", different " + std::to_string(different);
}

}  // namespace

std::string differenceLines(const PartitionComparison& comparison) {
  std::string text;
  for (const auto& difference : comparison.differences) text += oneLine(lineOf(difference)) + "\n";
  return text;
}

std::string countLines(const PartitionComparison& comparison) {
  return insignificantLine(comparison) + compared("sets", comparison.sets, comparison.differingSets) + "; " +
         compared("properties", comparison.properties, comparison.differingProperties) + "\n";
}

std::string describe(const PartitionComparison& comparison) {
  return differenceLines(comparison) + countLines(comparison);
}

}  // namespace Vantor::Tool
