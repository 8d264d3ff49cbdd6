#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/Completion.h"
#include "CommandLine/HelpText.h"
#include "CommandLine/LimitOptions.h"
#include "CommandLine/VersionText.h"
#include "Core/Platform/NearestName.h"
#include "Core/Platform/System.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

int runCommand(const Command& command) {
  try {
    return withinMemory(limits(), [&] { return command.run(); });
  } catch (const UsageError& error) {
    printMessage(std::string(error.what()) + "; see " + kProgramName + " " + command.name() + " --help");
    return kWrongUsage;
  } catch (const ReaderGone&) {
    return command.failure();
  } catch (...) {
    printMessage(currentExceptionText(command.input()));
    return command.failure();
  }
}

int refuse(const CLI::App& program, const std::string& reason) {
  std::string help = kProgramName;
  for (const CLI::App* chosen : program.get_subcommands()) help += " " + chosen->get_name();
  printMessage(reason + "; see " + help + " --help");
  return kWrongUsage;
}

void describeProgram(CLI::App& program) {
  program.description("Shows, edits and converts the header metadata of MXF files.");
  program.footer(
      "Exit codes: 0 done, 1 something is wrong with a file, 2 wrong usage; of diff and check:\n"
      "0 nothing found, 1 differences or findings, 2 trouble or wrong usage; of get: 0 found,\n"
      "1 a file lacks a value, 2 trouble or wrong usage.");
  program.set_version_flag("--version", versionText(), "Print the version, and what it is made with");
  program.formatter(std::make_shared<HelpText>());  // which commands that are added later have, too
  program.require_subcommand(1);
  program.allow_windows_style_options(false);
}

/// Refuses a first word that is no command, instead of a parser that knows only what it did not expect.
std::optional<int> refuseUnknownCommand(const CLI::App& program, const std::vector<std::string>& arguments) {
  const auto first = std::find_if(arguments.begin(), arguments.end(),
                                  [](const std::string& word) { return !word.empty() && word[0] != '-'; });
  if (first == arguments.end()) return std::nullopt;
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands({})) names.push_back(command->get_name());
  if (std::find(names.begin(), names.end(), *first) != names.end()) return std::nullopt;
  return refuse(program, "there is no command '" + *first + "'" + Platform::suggestion(*first, names));
}

std::string listOf(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += (i == 0 ? "" : i + 1 < names.size() ? ", " : " and ") + names[i];
  }
  return text;
}

std::vector<std::string> longOptionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const auto& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// "; info and get have it", for an option that other commands have; else those of the command that may be meant.
std::string hintOnOption(const CLI::App& program, const CLI::App& command, const std::string& option) {
  std::vector<std::string> others;
  for (const CLI::App* other : program.get_subcommands({})) {
    if (other->get_option_no_throw(option) != nullptr) others.push_back(other->get_name());
  }
  const auto near = Platform::suggestion(option, longOptionsOf(command));
  if (others.empty() || !near.empty()) return near;
  return "; " + listOf(others) + (others.size() == 1 ? " has it" : " have it");
}

/// Why an argument is left over that no option and no place of the command takes.
std::string whyLeftOver(const CLI::App& program, const CLI::ExtrasError& error) {
  const auto chosen = program.get_subcommands();
  const CLI::App& command = chosen.empty() ? program : *chosen.front();
  for (const auto& argument : command.remaining()) {
    if (argument.size() < 2 || argument[0] != '-') continue;
    const auto option = argument.substr(0, argument.find('='));
    return command.get_name() + " has no option '" + option + "'" + hintOnOption(program, command, option);
  }
  return error.what();
}

/// @return the exit code when nothing is left to do; none when a subcommand is to be run.
std::optional<int> parse(CLI::App& program, std::vector<std::string> arguments) {
  try {
    // The parser takes arguments from the end of the list.
    std::reverse(arguments.begin(), arguments.end());
    program.parse(std::move(arguments));
    return std::nullopt;
  } catch (const CLI::CallForHelp&) {
    writeStandardOutput(withArgumentNames(program.help()));
  } catch (const CLI::CallForVersion& version) {
    writeStandardOutput(std::string(version.what()) + "\n");
  } catch (const CLI::ExtrasError& error) {
    return refuse(program, whyLeftOver(program, error));
  } catch (const CLI::ParseError& error) {
    return refuse(program, withArgumentNames(error.what()));
  }
  return kSuccess;
}

using AddCommand = std::unique_ptr<Command> (*)(CLI::App& program);
struct CommandGroup {
  const char* title;
  std::vector<AddCommand> commands;
};

/// In the order of the help.
std::vector<std::unique_ptr<Command>> addCommands(CLI::App& program) {
  const CommandGroup groups[] = {
      {"Look", {infoCommand, getCommand, showCommand, diffCommand, checkCommand, dictionaryCommand}},
      {"Edit", {setCommand, editCommand, undoCommand, recoverCommand}},
      {"Convert", {exportCommand, importCommand, verifyCommand}}};
  std::vector<std::unique_ptr<Command>> commands;
  for (const auto& group : groups) {
    for (const auto& add : group.commands) {
      commands.push_back(add(program));
      commands.back()->showUnder(group.title);
    }
  }
  return commands;
}

/// What the scripts of shells call: prints what may follow, a word each line. No command to show.
constexpr const char* kComplete = "__complete";
int complete(const CLI::App& program, const std::vector<std::string>& arguments) {
  std::string text;
  for (const auto& word : completionsOf(program, {arguments.begin() + 1, arguments.end()})) text += word + "\n";
  writeStandardOutput(text);
  return kSuccess;
}

/// @param arguments  in UTF-8, without the program's name.
int run(std::vector<std::string> arguments) {
  CLI::App program("", kProgramName);
  describeProgram(program);
  const auto commands = addCommands(program);
  if (!arguments.empty() && arguments.front() == kComplete) return complete(program, arguments);
  if (const auto exitCode = refuseUnknownCommand(program, arguments)) return *exitCode;
  if (const auto exitCode = parse(program, std::move(arguments))) return *exitCode;
  for (const auto& command : commands) {
    if (command->isChosen()) return runCommand(*command);
  }
  return kWrongUsage;  // not reached: the parser demanded one of them
}

int runProgram(std::vector<std::string> arguments) {
  try {
    Platform::System::prepareStandardStreams();
    return run(std::move(arguments));
  } catch (const ReaderGone&) {
    return kFailure;
  } catch (...) {
    printMessage(currentExceptionText());
    return kFailure;
  }
}

}  // namespace

}  // namespace Vantor::Tool

int main(int argc, char** argv) {
  return Vantor::Tool::runProgram(Vantor::Platform::System::programArguments(argc, argv));
}
