#pragma once

#include <CLI/CLI.hpp>
#include <set>
#include <string>
#include <vector>

#include "Edit/Check.h"

namespace Vantor::Tool {

/// The option --ignore, for commands that check files. Filled during parsing; lives as long as the subcommand.
class RuleOptions {
 public:
  CLI::Option* addIgnore(CLI::App& command, const std::string& description);

  /// The codes of the ignored rules.
  const std::set<std::string>& ignored() const { return ignored_; }

  /// The findings of rules that are not ignored.
  std::vector<Edit::Finding> withoutIgnored(std::vector<Edit::Finding> findings) const;

 private:
  std::set<std::string> ignored_;
};

}  // namespace Vantor::Tool
