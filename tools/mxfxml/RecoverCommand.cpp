#include "CommandLine/Command.h"
#include "Input/StoppedChange.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

class RecoverCommand final : public Command {
 public:
  explicit RecoverCommand(CLI::App& program)
      : Command(program, "recover", "Undo a change in place that was stopped before its end") {
    addInput("MXF file");
    addExamples({"recover in.mxf"});
  }
  ExitCode run() const override {
    writeStandardOutput(describe(DataIO::File::recover(input())) + "\n");
    return kSuccess;
  }
};

}  // namespace

std::unique_ptr<Command> recoverCommand(CLI::App& program) { return std::make_unique<RecoverCommand>(program); }

}  // namespace Vantor::Tool
