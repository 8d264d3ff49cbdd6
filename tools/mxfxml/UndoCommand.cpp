#include "CommandLine/Command.h"
#include "Input/StoppedChange.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

class UndoCommand final : public Command {
 public:
  explicit UndoCommand(CLI::App& program)
      : Command(program, "undo", "Undo the last change in place that kept its old bytes (--keep-undo)") {
    addInput("MXF file");
    addExamples({"undo in.mxf"});
  }
  ExitCode run() const override {
    const auto undoing = DataIO::File::undo(input());
    if (undoing == DataIO::File::Undoing::kNothingKept) throw CommandError(describe(undoing));
    writeStandardOutput(describe(undoing) + "\n");
    return kSuccess;
  }
};

}  // namespace

std::unique_ptr<Command> undoCommand(CLI::App& program) { return std::make_unique<UndoCommand>(program); }

}  // namespace Vantor::Tool
