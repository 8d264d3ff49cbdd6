#include "CommandLine/RuleOptions.h"

#include <algorithm>

#include "CommandLine/CompletionHints.h"
#include "Core/Platform/NearestName.h"

namespace Vantor::Tool {

namespace {

std::vector<std::string> ruleCodes() {
  std::vector<std::string> codes;
  for (const auto* rule : Edit::rules()) codes.emplace_back(rule->code);
  return codes;
}

std::string whyNoRule(const std::string& code) {
  if (Edit::findRule(code) != nullptr) return "";
  return "'" + code + "' is no rule" + Platform::suggestion(code, ruleCodes());
}

}  // namespace

CLI::Option* RuleOptions::addIgnore(CLI::App& command, const std::string& description) {
  const auto take = [this](const std::vector<std::string>& codes) { ignored_.insert(codes.begin(), codes.end()); };
  auto* option = command
                     .add_option_function<std::vector<std::string>>(
                         "--ignore", take, description + "; may be given several times.\nSee mxfxml check --rules")
                     ->type_name("RULE")
                     ->allow_extra_args(false)
                     ->check(whyNoRule);
  hint(option, {CompletionHint::Kind::kNames, ruleCodes()});
  return option;
}

std::vector<Edit::Finding> RuleOptions::withoutIgnored(std::vector<Edit::Finding> findings) const {
  const auto isIgnored = [this](const Edit::Finding& finding) { return ignored_.count(finding.rule->code) != 0; };
  findings.erase(std::remove_if(findings.begin(), findings.end(), isIgnored), findings.end());
  return findings;
}

}  // namespace Vantor::Tool
