#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace Vantor::Tool {

/// What a shell may put in the place of the last word of a command line: commands, options, names that options take,
/// and sets, properties and values by the file that the line names, or by the dictionary.
/// @param words  of the command line without the program's name; the last one may be empty, or begun.
/// @return whole words that begin with the last one, without doubles. Empty where files may follow, or nothing.
std::vector<std::string> completionsOf(const CLI::App& program, const std::vector<std::string>& words);

}  // namespace Vantor::Tool
