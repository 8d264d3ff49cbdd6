#include "Command.h"
#include "StandardStreams.h"
#include "StoppedChange.h"

namespace Vantor::Tool {

namespace {

class UndoCommand final : public Command {
 public:
  explicit UndoCommand(CLI::App& program)
      : Command(program, "undo", "Undo the last change in place that kept its old bytes (--keep-undo)") {
    addInput("MXF file");
  }
  ExitCode run() const override {
    writeStandardOutput(describe(DataIO::File::undo(input())) + "\n");
    return kSuccess;
  }
};

}  // namespace

std::unique_ptr<Command> undoCommand(CLI::App& program) { return std::make_unique<UndoCommand>(program); }

}  // namespace Vantor::Tool
