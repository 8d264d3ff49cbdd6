#include "CommandLine/CompletionHints.h"

#include <unordered_map>
#include <utility>

namespace Vantor::Tool {

namespace {

std::unordered_map<const CLI::Option*, CompletionHint>& hints() {
  static std::unordered_map<const CLI::Option*, CompletionHint> all;
  return all;
}

}  // namespace

void hint(const CLI::Option* option, CompletionHint what) { hints()[option] = std::move(what); }

const CompletionHint& hintOf(const CLI::Option* option) {
  static const CompletionHint none;
  const auto found = hints().find(option);
  return found == hints().end() ? none : found->second;
}

}  // namespace Vantor::Tool
