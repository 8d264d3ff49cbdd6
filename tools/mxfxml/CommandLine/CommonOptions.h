#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <utility>
#include <vector>

#include "CommandLine/CompletionHints.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Platform/Path.h"
#include "Terminal/Terminal.h"

/// Options of several subcommands. Parsing fills the variables, which have to live that long; a variable is left as it
/// is when its option is not given.
namespace Vantor::Tool {

/// Which standard stream "-" stands for in the place of a file.
enum class Dash { kNone, kInput, kOutput };

/// Why a text is no name of a file, or of a partition; empty when it may be one.
std::string whyNoFileName(const std::string& text);
/// The same where "-" may stand for a stream.
std::string whyNoFileOrDash(const std::string& text);
std::string whyNoPartition(const std::string& text);

/// The path that an argument names.
Path pathFrom(const std::string& argument, Dash dash);

/// An option with the name of a file, such as "-o,--output".
/// @param file  a Path or an optional one; gets what `inputPath` or `outputPath` makes of "-".
template <class File>
CLI::Option* addFile(CLI::App& command, const std::string& name, File& file, const std::string& description,
                     Dash dash = Dash::kNone) {
  const auto take = [&file, dash](const std::string& text) { file = pathFrom(text, dash); };
  return command.add_option_function<std::string>(name, take, description)
      ->type_name("FILE")
      ->check(dash == Dash::kNone ? whyNoFileName : whyNoFileOrDash);
}

/// A required file name in the place of the next positional argument.
inline void addFileArgument(CLI::App& command, const std::string& name, Path& file, const std::string& description,
                            Dash dash = Dash::kNone) {
  addFile(command, name, file, description, dash)->required()->type_name("");
}

/// --partition header|footer|best|N.
/// @param choice  a PartitionChoice, or an optional one for commands to which no choice means something else than the
///                header partition.
template <class Choice>
CLI::Option* addPartition(CLI::App& command, Choice& choice,
                          const std::string& description =
                              "header (default), footer, best for the one with the best\nmetadata, or a number in file "
                              "order from 0, which is the\nheader partition") {
  const auto take = [&choice](const std::string& text) { choice = MXF::PartitionChoice::parse(text); };
  auto* option = command.add_option_function<std::string>("--partition", take, description)
                     ->type_name("WHICH")
                     ->check(whyNoPartition);
  hint(option, {CompletionHint::Kind::kNames, {"header", "footer", "best"}});
  return option;
}

/// An option for one of some values by name.
/// @param kind  for messages, such as "'x' is no encoding: expected 'utf-8' or 'utf-16'".
template <class Value>
void addChoice(CLI::App& command, const std::string& option, Value& value, const std::string& kind,
               const std::vector<std::pair<std::string, Value>>& named, const std::string& description) {
  const auto take = [&value, named](const std::string& text) {
    for (const auto& [name, choice] : named) {
      if (name == text) value = choice;
    }
  };
  const auto whyNot = [named, kind](const std::string& text) {
    std::string expected;
    for (const auto& [name, choice] : named) {
      if (name == text) return std::string();
      expected += (expected.empty() ? "'" : " or '") + name + "'";
    }
    return "'" + text + "' is no " + kind + ": expected " + expected;
  };
  std::vector<std::string> names;
  for (const auto& one : named) names.push_back(one.first);
  hint(command.add_option_function<std::string>(option, take, description)->type_name("NAME")->check(whyNot),
       {CompletionHint::Kind::kNames, names});
}

/// The chosen partition in messages: "the header partition", "the footer partition" or "partition 2".
std::string describe(const MXF::PartitionChoice& choice);

/// The option --color.
void addColor(CLI::App& command, ColorChoice& choice);

/// Refuses to write over the file that is read, even through links. @throws OtherFileError naming the output.
void refuseSameFile(const Path& input, const Path& output);

}  // namespace Vantor::Tool
