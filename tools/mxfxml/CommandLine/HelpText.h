#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace Vantor::Tool {

/// Help texts in which the column of names has names alone: with which other options one goes, or does not, ends its
/// description.
class HelpText final : public CLI::Formatter {
 public:
  std::string make_option_opts(const CLI::Option* option) const override;
  std::string make_option_desc(const CLI::Option* option) const override;
};

/// What the parser calls the argument Set.Property=VALUE: newer ones take no '=' in a name.
constexpr const char* kAssignmentArgument = "Set.Property_VALUE";
/// A text of the parser, with the names of arguments as users know them.
std::string withArgumentNames(std::string text);

}  // namespace Vantor::Tool
