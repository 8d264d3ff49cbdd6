#pragma once

#include <string>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Path.h"

/// What to do about a file that a change in place left half-way.
namespace Vantor::Tool {

/// What a recovery found and did, in a sentence.
std::string describe(DataIO::File::Recovery recovery);

/// For commands that change the file or put edits into a copy: undoes the change, and tells so on standard error.
/// @throws OtherFileError naming the file and why the change cannot be undone; nothing is done then.
void undoStoppedChange(const Path& file);

/// For commands that only read the file, and for those that replace it by another one, which would seem to be what the
/// journal belongs to. A journal that is not whole counts, too: somebody may be writing it.
/// @throws OtherFileError naming the file and the way out.
void refuseStoppedChange(const Path& file);

}  // namespace Vantor::Tool
