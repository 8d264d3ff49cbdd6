#include "Edit/Check.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

namespace Vantor::Edit {

namespace {

using Theme = const RuleTable& (*)();

constexpr std::array<Theme, 10> kThemes = {valueRules,   requiredRules,  referenceRules, trackRules,  packageRules,
                                           essenceRules, partitionRules, labelRules,     primerRules, historyRules};

template <class Visit>
void forEachRow(Visit&& visit) {
  for (const auto theme : kThemes) {
    for (const auto& row : theme()) visit(row);
  }
}

/// By partition, then by the place of the set.
std::tuple<std::size_t, std::size_t> placeOf(const CheckedFile& file, const Found& found) {
  const auto& partitions = found.finding.partitions;
  if (partitions.empty()) return {0, 0};
  const auto* model = file.modelOf(partitions.front());
  return {partitions.front(), found.set == nullptr || model == nullptr ? 0 : 1 + model->placeOf(found.set)};
}

std::vector<Finding> inOrder(const CheckedFile& file, std::vector<Found> found) {
  std::vector<std::pair<std::tuple<std::size_t, std::size_t>, std::size_t>> order;
  for (std::size_t i = 0; i < found.size(); ++i) order.emplace_back(placeOf(file, found[i]), i);
  std::sort(order.begin(), order.end());
  std::vector<Finding> findings;
  findings.reserve(found.size());
  for (const auto& [place, number] : order) findings.push_back(std::move(found[number].finding));
  return findings;
}

using Key = std::tuple<const Rule*, std::string, std::string>;
Key keyOf(const Finding& finding) { return {finding.rule, finding.set, finding.property}; }

}  // namespace

std::string describe(const Finding& finding) {
  std::string text;
  auto argument = finding.arguments.begin();
  for (const char* at = finding.rule->sentence; *at != '\0'; ++at) {
    if (*at != '{') {
      text += *at;
      continue;
    }
    while (*at != '}') ++at;
    if (argument != finding.arguments.end()) text += *argument++;
  }
  return text;
}

std::vector<const Rule*> rules() {
  std::vector<const Rule*> rules;
  forEachRow([&rules](const RuleRow& row) { rules.push_back(&row.rule); });
  std::sort(rules.begin(), rules.end(), [](const Rule* left, const Rule* right) {
    return std::string_view(left->code) < std::string_view(right->code);
  });
  return rules;
}

const Rule* findRule(std::string_view code) {
  const Rule* found = nullptr;
  forEachRow([&](const RuleRow& row) {
    if (row.rule.code == code) found = &row.rule;
  });
  return found;
}

std::vector<Finding> check(const FileState& state) {
  const CheckedFile file(state);
  std::vector<Found> found;
  forEachRow([&](const RuleRow& row) {
    Report aboutFile(row.rule, {}, found);
    if (row.onFile != nullptr) return row.onFile(file, aboutFile);
    for (const auto& model : file.models()) {
      Report report(row.rule, model.partitions(), found);
      row.onMetadata(model, report);
    }
  });
  return inOrder(file, std::move(found));
}

std::vector<Finding> newFindings(const std::vector<Finding>& before, std::vector<Finding> after) {
  std::map<Key, std::set<std::size_t>> known;
  for (const auto& finding : before) {
    known[keyOf(finding)].insert(finding.partitions.begin(), finding.partitions.end());
  }
  const auto isKnown = [&known](const Finding& finding) {
    const auto at = known.find(keyOf(finding));
    if (at == known.end()) return false;
    const auto& partitions = finding.partitions;
    return std::all_of(partitions.begin(), partitions.end(),
                       [&](std::size_t partition) { return at->second.count(partition) != 0; });
  };
  after.erase(std::remove_if(after.begin(), after.end(), isKnown), after.end());
  return after;
}

}  // namespace Vantor::Edit
