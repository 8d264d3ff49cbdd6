#include "Edit/Check.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

namespace Vantor::Edit {

namespace {

using Theme = const RuleTable& (*)();

constexpr std::array kThemes = {Theme(valueRules), descriptorRules, requiredRules, referenceRules,
                                trackRules,        packageRules,    essenceRules,  partitionRules,
                                labelRules,        patternRules,    primerRules,   historyRules};

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

/// Equal findings about one set are equivalent.
struct IsLess {
  bool operator()(const Found* left, const Found* right) const { return partsOf(*left) < partsOf(*right); }

 private:
  using Parts = std::tuple<const MetadataSet*, const Rule*, const std::string&, const std::vector<std::string>&,
                           const std::vector<std::size_t>&>;
  static Parts partsOf(const Found& found) {
    const auto& finding = found.finding;
    return {found.set, finding.rule, finding.property, finding.arguments, finding.partitions};
  }
};

/// Each once.
std::vector<Finding> inOrder(const CheckedFile& file, std::vector<Found> found) {
  std::vector<std::pair<std::tuple<std::size_t, std::size_t>, std::size_t>> order;
  std::set<const Found*, IsLess> seen;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (seen.insert(&found[i]).second) order.emplace_back(placeOf(file, found[i]), i);
  }
  std::sort(order.begin(), order.end());
  std::vector<Finding> findings;
  findings.reserve(found.size());
  for (const auto& [place, number] : order) findings.push_back(std::move(found[number].finding));
  return findings;
}

/// Findings that are not taken yet, counted by rule, set, property and partition.
class Untaken {
 public:
  explicit Untaken(const std::vector<Finding>& findings) {
    for (const auto& finding : findings) {
      for (const auto partition : partitionsOf(finding)) {
        auto& counts = counts_[{finding.rule, finding.set, finding.property, partition}];
        ++counts.all;
        ++counts.byArguments[finding.arguments];
      }
    }
  }

  /// Takes one with the same arguments in each of the partitions; nothing when one of them has none.
  bool takeSame(const Finding& finding) {
    return takeIf(finding, [&](const Counts& counts) { return counts.byArguments.count(finding.arguments) != 0; });
  }
  /// The same, with any arguments.
  bool takeLike(const Finding& finding) {
    return takeIf(finding, [](const Counts& counts) { return counts.all != 0; });
  }

 private:
  using Place = std::tuple<const Rule*, std::string, std::string, std::size_t>;
  struct Counts {
    std::size_t all = 0;
    std::map<std::vector<std::string>, std::size_t> byArguments;
  };

  /// A finding about the file has a place of its own.
  static std::vector<std::size_t> partitionsOf(const Finding& finding) {
    constexpr auto kWholeFile = std::numeric_limits<std::size_t>::max();
    return finding.partitions.empty() ? std::vector<std::size_t>{kWholeFile} : finding.partitions;
  }

  template <class HasOne>
  bool takeIf(const Finding& finding, HasOne&& hasOne) {
    std::vector<Counts*> taken;
    for (const auto partition : partitionsOf(finding)) {
      const auto found = counts_.find({finding.rule, finding.set, finding.property, partition});
      if (found == counts_.end() || !hasOne(found->second)) return false;
      taken.push_back(&found->second);
    }
    for (auto* counts : taken) take(*counts, finding.arguments);
    return true;
  }

  static void take(Counts& counts, const std::vector<std::string>& arguments) {
    --counts.all;
    const auto same = counts.byArguments.find(arguments);
    if (same != counts.byArguments.end() && --same->second == 0) counts.byArguments.erase(same);
  }

  std::map<Place, Counts> counts_;
};

template <class IsKnown>
void removeKnown(std::vector<Finding>& findings, IsKnown&& isKnown) {
  findings.erase(std::remove_if(findings.begin(), findings.end(), isKnown), findings.end());
}

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

std::vector<Finding> newFindings(const std::vector<Finding>& before, std::vector<Finding> after,
                                 const IsChanged& isChanged) {
  Untaken untaken(before);
  removeKnown(after, [&](const Finding& finding) { return untaken.takeSame(finding); });
  removeKnown(after, [&](const Finding& finding) {
    return !(isChanged && isChanged(finding.set, finding.property)) && untaken.takeLike(finding);
  });
  return after;
}

}  // namespace Vantor::Edit
