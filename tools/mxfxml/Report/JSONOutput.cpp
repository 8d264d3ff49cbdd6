#include "Report/JSONOutput.h"

#include "JSON/PropertyValue.h"
#include "JSON/Text.h"
#include "Report/FindingText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

using JSON::Value;

/// Members without a value are left out.
void addText(const char* name, const std::string& text, Value& object) {
  if (!text.empty()) object.add(name, text);
}

void addValue(const char* name, const PartitionDifference::Property& property, Value& object) {
  if (property.element != nullptr) object.add(name, JSON::valueOf(*property.set, *property.element));
}

/// The texts are for people, the values for programs.
Value objectOf(const PartitionDifference& difference) {
  auto json = Value::object().add("kind", name(difference.kind)).add("set", difference.set);
  addText("instanceUID", difference.instanceUID, json);
  addText("property", difference.property, json);
  addText("left", difference.left, json);
  addText("right", difference.right, json);
  addValue("leftValue", difference.leftProperty, json);
  addValue("rightValue", difference.rightProperty, json);
  return json;
}

Value jsonOfInsignificant(const PartitionComparison& comparison) {
  auto json = Value::object();
  for (std::size_t i = 0; i < PartitionComparison::kInsignificantKinds; ++i) {
    const auto kind = static_cast<InsignificantDifference>(i);
    if (comparison.count(kind) != 0) json.add(name(kind), comparison.count(kind));
  }
  return json;
}

Value counts(uint64 compared, uint64 different) {
  return Value::object().add("compared", compared).add("different", different);
}

Value objectOf(const Edit::Rule& rule) {
  return Value::object()
      .add("rule", rule.code)
      .add("severity", nameOf(rule.severity))
      .add("sentence", rule.sentence)
      .add("source", rule.source);
}

Value objectOf(const Edit::Finding& finding) {
  auto json = Value::object().add("severity", nameOf(finding.rule->severity)).add("rule", finding.rule->code);
  auto partitions = Value::array();
  for (const auto partition : finding.partitions) partitions.append(uint64{partition});
  json.add("partitions", std::move(partitions));
  addText("set", finding.symbol, json);
  addText("instanceUID", finding.instanceUID, json);
  addText("property", finding.property, json);
  return json.add("text", Edit::describe(finding));
}

}  // namespace

CLI::Option* addJSON(CLI::App& command, bool& isJSON) {
  return command.add_flag("--json", isJSON, "Print one JSON object, as docs/json.md describes");
}

std::string formatName(const std::string& command) { return "mxfxml-" + command; }

Value formatted(const std::string& command) {
  return Value::object().add("format", formatName(command)).add("version", kFormatVersion);
}

void printJSON(const Value& value) { writeStandardOutput(JSON::toText(value) + "\n"); }

void addComparison(const PartitionComparison& comparison, Value& object) {
  auto differences = Value::array();
  for (const auto& difference : comparison.differences) differences.append(objectOf(difference));
  object.add("equal", comparison.isEqual()).add("differences", std::move(differences));
  object.add("insignificant", jsonOfInsignificant(comparison));
  object.add("sets", counts(comparison.sets, comparison.differingSets));
  object.add("properties", counts(comparison.properties, comparison.differingProperties));
}

Value jsonOf(const Diagnostics& diagnostics) {
  auto json = Value::array();
  for (const auto& diagnostic : diagnostics.listed) json.append(describeForUser(diagnostic));
  return json;
}

Value jsonOf(const std::vector<Edit::Finding>& findings) {
  auto json = Value::array();
  for (const auto& finding : findings) json.append(objectOf(finding));
  return json;
}

Value jsonOfRules() {
  auto json = Value::array();
  for (const auto* rule : Edit::rules()) json.append(objectOf(*rule));
  return json;
}

}  // namespace Vantor::Tool
