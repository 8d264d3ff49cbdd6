#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "CommandLine/CommonOptions.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

enum ExitCode : int {
  kSuccess = 0,  ///< also when a file was changed and only the summary could not be written
  /// Something is wrong with an input or an output, or the user has interrupted the writing of a copy; the last line on
  /// standard error has the reason. At other moments a signal ends the program as usual. Of commands that compare or
  /// check files: they differ, or there are findings.
  kFailure = 1,
  kWrongUsage = 2,  ///< the command line cannot be understood
  kTrouble = 2      ///< of commands that compare or check files: that could not be done
};

/// One subcommand of the program. Its constructor adds it and its options; after parsing, the chosen one is run.
class Command {
 public:
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  bool isChosen() const { return app_->parsed(); }
  std::string name() const { return app_->get_name(); }
  /// Puts the command under a title in the help of the program.
  void showUnder(const std::string& title) { app_->group(title); }
  /// The file that messages are about.
  const Path& input() const { return input_; }
  /// Does the whole task. When it throws, nothing was written to an output, unless the output failed or shows what is
  /// wrong.
  virtual ExitCode run() const = 0;
  /// How the program ends when `run` throws anything but a `UsageError`.
  virtual ExitCode failure() const { return kFailure; }

 protected:
  /// @param program  keeps the subcommand; lives longer than this object.
  Command(CLI::App& program, const std::string& name, const std::string& description)
      : app_(program.add_subcommand(name, description)) {}

  CLI::App& app() { return *app_; }
  const CLI::App& app() const { return *app_; }
  /// Command lines for the end of the help, a line each, without the program's name.
  void addExamples(const std::vector<std::string>& examples) {
    std::string text = "Examples:\n";
    for (const auto& example : examples) text += std::string("  ") + kProgramName + " " + example + "\n";
    app_->footer(text + "\n" + app_->get_footer());
  }
  /// @param dash  whether "-" is standard input.
  void addInput(const std::string& description, Dash dash = Dash::kNone) {
    addFileArgument(app(), "INPUT", input_, description, dash);
  }

 private:
  CLI::App* app_;
  Path input_;
};

/// `mxfxml export`: writes the header metadata of one partition as XML.
std::unique_ptr<Command> exportCommand(CLI::App& program);
/// `mxfxml import`: writes the header metadata of an XML document as an MXF file that holds nothing else, or merges the
/// edits of a document into the file that it was exported from.
std::unique_ptr<Command> importCommand(CLI::App& program);
/// `mxfxml verify`: writes the header metadata of one partition as XML in memory, reads it back, and prints what has
/// changed. Fails after printing if anything has.
std::unique_ptr<Command> verifyCommand(CLI::App& program);
/// `mxfxml info`: prints what people ask of a file first, or its partitions and sets.
std::unique_ptr<Command> infoCommand(CLI::App& program);
/// `mxfxml get`: prints values of properties alone. Ends with 1 when a file does not have one; a file that cannot be
/// read does not keep it from the others.
std::unique_ptr<Command> getCommand(CLI::App& program);
/// `mxfxml show`: prints the sets of a file, MXF or XML, as a tree.
std::unique_ptr<Command> showCommand(CLI::App& program);
/// `mxfxml set`: changes values of properties, or removes properties.
std::unique_ptr<Command> setCommand(CLI::App& program);
/// `mxfxml edit`: opens an export in the user's editor, shows what changed, and puts it back.
std::unique_ptr<Command> editCommand(CLI::App& program);
/// `mxfxml diff`: prints the differences between the header metadata of two files, MXF or XML. Fails after printing if
/// there are any.
std::unique_ptr<Command> diffCommand(CLI::App& program);
/// `mxfxml check`: prints what in the metadata and partition packs of files breaks a rule, or the rules. Ends with 1
/// after printing if there is more than notes; a file that cannot be read does not keep it from the others.
std::unique_ptr<Command> checkCommand(CLI::App& program);
/// `mxfxml recover`: undoes a change in place that was stopped half-way.
std::unique_ptr<Command> recoverCommand(CLI::App& program);
/// `mxfxml undo`: undoes the last in-place change of each file, if it kept its old bytes. Ends with 1 when one of them
/// cannot be put back, which does not keep it from the others.
std::unique_ptr<Command> undoCommand(CLI::App& program);
/// `mxfxml dictionary`: prints the sets that the dictionary knows, or what it knows under a name, a key or a tag.
std::unique_ptr<Command> dictionaryCommand(CLI::App& program);

}  // namespace Vantor::Tool
