#include "StoppedChange.h"

#include "Core/Platform/Exceptions.h"
#include "ErrorText.h"

namespace Vantor::Tool {

using DataIO::File::Recovery;

std::string describe(Recovery recovery) {
  switch (recovery) {
    case Recovery::kNoJournal:
      return "no change of the file was stopped; there is nothing to put back";
    case Recovery::kRestored:
      return "the file is as it was before the change that was stopped";
    case Recovery::kNeverBegun:
      return "the change was stopped before it touched the file; its journal is removed";
  }
  return "";
}

void undoStoppedChange(const Path& file) {
  // A missing file is reported when it is opened.
  if (!DataIO::File::hasJournal(file)) return;
  try {
    const auto recovery = DataIO::File::recover(file);
    if (recovery == Recovery::kNoJournal) return;  // it belonged to a change that is done by now
    const bool isRestored = recovery == Recovery::kRestored;
    printMessage(file.u8string() + ": " +
                 (isRestored ? "a change that was stopped half-way is undone" : describe(recovery)));
  } catch (const Exceptions::IOError& error) {
    throw OtherFileError("a change that was stopped half-way cannot be undone: " + error.message());
  }
}

void refuseStoppedChange(const Path& file) {
  if (!DataIO::File::hasJournal(file)) return;
  throw OtherFileError(file.u8string() + ": a change of the file was stopped half-way; mxfxml recover " +
                       file.u8string() + " undoes it");
}

}  // namespace Vantor::Tool
