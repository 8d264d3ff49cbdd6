#include "RuleOptions.h"

#include <algorithm>

#include "NearestWord.h"

namespace Vantor::Tool {

namespace {

std::string whyNoRule(const std::string& code) {
  if (Edit::findRule(code) != nullptr) return "";
  std::vector<std::string> codes;
  for (const auto* rule : Edit::rules()) codes.emplace_back(rule->code);
  return "'" + code + "' is no rule; the nearest one is '" + nearestWord(code, codes) + "'";
}

}  // namespace

void RuleOptions::addIgnore(CLI::App& command) {
  const auto take = [this](const std::vector<std::string>& codes) {
    for (const auto& code : codes) ignored_.insert(Edit::findRule(code));
  };
  command
      .add_option_function<std::vector<std::string>>(
          "--ignore", take, "Leave out what breaks this rule; may be given several times.\nSee mxfxml check --rules")
      ->type_name("RULE")
      ->allow_extra_args(false)
      ->check(whyNoRule);
}

std::vector<Edit::Finding> RuleOptions::withoutIgnored(std::vector<Edit::Finding> findings) const {
  const auto isIgnored = [this](const Edit::Finding& finding) { return ignored_.count(finding.rule) != 0; };
  findings.erase(std::remove_if(findings.begin(), findings.end(), isIgnored), findings.end());
  return findings;
}

}  // namespace Vantor::Tool
