#include <algorithm>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "Core/Platform/Path.h"
#include "Input/StoppedChange.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

using DataIO::File::Undoing;

class UndoCommand final : public Command {
 public:
  explicit UndoCommand(CLI::App& program)
      : Command(program, "undo", "Undo the last in-place change of each file, if it kept its old bytes (--keep-undo)") {
    const auto take = [this](const std::vector<std::string>& names) {
      for (const auto& name : names) files_.push_back(Platform::pathFromUTF8(name));
    };
    app()
        .add_option_function<std::vector<std::string>>("INPUT", take, "MXF files")
        ->required()
        ->type_name("")
        ->check(whyNoFileName);
    addExamples({"undo in.mxf", "undo *.mxf"});
  }

  ExitCode run() const override {
    ExitCode highest = kSuccess;
    for (const auto& file : files_) highest = std::max(highest, undo(file));
    return highest;
  }

 private:
  /// A file that cannot be put back does not keep the command from the others.
  ExitCode undo(const Path& file) const {
    auto undoing = Undoing::kNothingKept;
    try {
      undoing = DataIO::File::undo(file);
      if (undoing == Undoing::kNothingKept) throw CommandError(describe(undoing));
    } catch (...) {
      printMessage(currentExceptionText(file));
      return kFailure;
    }
    const auto name = files_.size() > 1 ? oneLine(Platform::pathToUTF8(file)) + ": " : "";
    writeStandardOutput(name + describe(undoing) + "\n");
    return kSuccess;
  }

  std::vector<Path> files_;
};

}  // namespace

std::unique_ptr<Command> undoCommand(CLI::App& program) { return std::make_unique<UndoCommand>(program); }

}  // namespace Vantor::Tool
