#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace Vantor::Tool {

/// What the value of an option, or a positional argument, may be, for shells that complete command lines.
struct CompletionHint {
  enum class Kind {
    kNone,          ///< a file, or nothing that the program knows
    kNames,         ///< one of `names`
    kAssignment,    ///< Set.Property=VALUE
    kPropertyPath,  ///< Set.Property
    kSetPath,       ///< a set of the file
    kDefinition     ///< what `mxfxml dictionary` finds
  };
  Kind kind = Kind::kNone;
  std::vector<std::string> names = {};
};

/// Keeps what an option may be. Options are those of the one command line of this process.
void hint(const CLI::Option* option, CompletionHint what);
/// That of an option; of kind `kNone` for those of which nothing was kept.
const CompletionHint& hintOf(const CLI::Option* option);

}  // namespace Vantor::Tool
