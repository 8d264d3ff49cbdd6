#include "RecoverCommand.h"

#include "CommonOptions.h"
#include "Core/DataIO/UndoJournal.h"
#include "StandardStreams.h"

namespace Vantor::Tool {

namespace {

const char* textOf(DataIO::File::Recovery recovery) {
  switch (recovery) {
    case DataIO::File::Recovery::kNoJournal:
      return "no change of the file was stopped; there is nothing to put back";
    case DataIO::File::Recovery::kRestored:
      return "the file is as it was before the change that was stopped";
    case DataIO::File::Recovery::kNeverBegun:
      return "the change was stopped before it touched the file; its journal is removed";
  }
  return "";
}

}  // namespace

RecoverCommand::RecoverCommand(CLI::App& program)
    : Command(program, "recover", "Undo a change in place that was stopped before its end") {
  addInput(app(), input(), "MXF file");
}

void RecoverCommand::run() const { writeStandardOutput(std::string(textOf(DataIO::File::recover(input()))) + "\n"); }

}  // namespace Vantor::Tool
