#include "RecoverCommand.h"

#include "CommonOptions.h"
#include "StandardStreams.h"
#include "StoppedChange.h"

namespace Vantor::Tool {

RecoverCommand::RecoverCommand(CLI::App& program)
    : Command(program, "recover", "Undo a change in place that was stopped before its end") {
  addInput(app(), input(), "MXF file");
}

void RecoverCommand::run() const { writeStandardOutput(describe(DataIO::File::recover(input())) + "\n"); }

}  // namespace Vantor::Tool
