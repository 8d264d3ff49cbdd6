#pragma once

#include <string>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Path.h"

/// What to do about a change in place that was stopped half-way, and about one that kept its old bytes.
namespace Vantor::Tool {

/// The outcome of a recovery, in a sentence.
std::string describe(DataIO::File::Recovery recovery);
/// The same for a finished change.
std::string describe(DataIO::File::Undoing undoing);

/// For commands that change the file or put edits into a copy: undoes the change, with a message on standard error.
/// @throws OtherFileError naming the file and why the change cannot be undone, also when it is under way; nothing is
/// done then.
void undoStoppedChange(const Path& file);

/// For commands that only read the file, and for those that replace it, since the journal would seem to belong to the
/// new file.
/// @throws OtherFileError naming the file and what to do: recover it, or wait where a change is under way.
void refuseStoppedChange(const Path& file);

}  // namespace Vantor::Tool
