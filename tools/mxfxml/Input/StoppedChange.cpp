#include "Input/StoppedChange.h"

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

using DataIO::File::OpenChange;
using DataIO::File::Recovery;
using DataIO::File::Undoing;

namespace {

OpenChange requireNoChangeUnderWay(const Path& file) {
  if (isStandardInput(file) || isStandardOutput(file)) return OpenChange::kNone;
  const auto change = DataIO::File::openChange(file);
  if (change != OpenChange::kUnderWay) return change;
  throw OtherFileError(Platform::pathToUTF8(file) +
                       ": another program is changing the file at the moment; try again later");
}

}  // namespace

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

std::string describe(Undoing undoing) {
  switch (undoing) {
    case Undoing::kNothingKept:
      return "no change of the file has kept its old bytes; there is nothing to put back";
    case Undoing::kUndone:
      return "the file is as it was before its last change";
    case Undoing::kWasUndone:
      return "the file is as it was before its last change already; the kept bytes are removed";
  }
  return "";
}

void undoStoppedChange(const Path& file) {
  // A missing file is reported when it is opened.
  if (requireNoChangeUnderWay(file) == OpenChange::kNone) return;
  try {
    if (DataIO::File::recover(file) != Recovery::kRestored) return;  // it belonged to a change that is done by now
    printMessage(Platform::pathToUTF8(file) + ": a change that was stopped half-way is undone");
  } catch (const Exceptions::IOError& error) {
    throw OtherFileError("a change that was stopped half-way cannot be undone: " + error.message());
  }
}

void refuseStoppedChange(const Path& file) {
  if (requireNoChangeUnderWay(file) == OpenChange::kNone) return;
  throw OtherFileError(Platform::pathToUTF8(file) + ": a change of the file was stopped half-way; mxfxml recover " +
                       Platform::pathToUTF8(file) + " undoes it");
}

}  // namespace Vantor::Tool
