#pragma once

#include <functional>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/DataIO/FileUpdate.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// Changes of files in place that can be undone when the process is killed, or the machine loses its power, at any
/// moment. As long as a change is under way, a journal with the old bytes stands beside the file: on the medium before
/// the first byte of the file is written, removed after the last one is on the medium. On request it is kept instead,
/// under another name, and undoes the change later. docs/undo-format.md describes its bytes.
///
/// A journal applies to no other file: old bytes are put back only where every byte of every place is the old or the
/// new one, and samples of the rest of the file match. A copy of the file, even on another disk, passes.
///
/// One process at a time changes or recovers a file, under a lock; a second one is refused. Where the file system has
/// no locks, callers must keep changes, recovery and undoing of a file apart; a change is still refused while there is
/// a journal.
namespace Vantor::DataIO::File {

/// Bytes that take the place of as many others in a file.
struct NewBytes {
  uint64 offset = 0;
  Bytes bytes;
};

/// The journal's path: beside the file itself, even if a symbolic link is named, with ".vantor-journal" appended to the
/// file's name.
Path journalPath(const Path& file);

/// Whether a change of the file is under way, or was stopped before its end. Not while its journal is being written:
/// the file still has its old bytes then.
bool hasJournal(const Path& file);

/// A change of a file that has not come to its end.
enum class OpenChange {
  kNone,
  kUnderWay,  ///< by another program, or another object of this one
  kStopped    ///< half-way, so that recover() is due; where the file system has no locks, perhaps under way
};
OpenChange openChange(const Path& file);

/// @param failure  what cannot be done with the file, such as "cannot edit".
/// @throws Exceptions::IOError naming the file and what to do, when a change of it is under way or was stopped.
void requireNoOpenChange(const Path& file, const char* failure);
/// The same for who holds the lock of the file: only a stopped change can have left a journal then.
void requireNoStoppedChange(const Path& file, const char* failure);

/// What becomes of the old bytes when a change is done.
enum class OldBytes {
  kDrop,
  /// They stay beside the file, in place of those of an earlier change, until undo() puts them back or the user removes
  /// them. They take twice the room of the changed places.
  kKeep
};

/// Whether a file may become longer while it is changed, by its writer.
enum class Growth { kNone, kAllowed };

/// Changes bytes of a file. When anything throws, the old bytes are put back first.
/// @param expected  the state of the file that the change was made for.
/// @param changes   in places that do not overlap.
/// @param write     writes them in place of this function, for tests that stop it.
/// @return kAtomic when the change is done and on the medium, but the folder cannot be flushed, so that the journal may
/// be there again after a power failure, and undo the change.
/// @throws Exceptions::IOError, with the file unchanged, when the file is being changed, has a journal, a further hard
/// link or another state than expected, or is read-only, and when the journal cannot be written. Also when the file
/// cannot be written; the message names what is left to do: nothing if the old bytes were put back, else recover().
/// Also when the journal of a finished change cannot be removed or renamed.
Durability changeInPlace(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                         const std::function<void(FileUpdate&)>& write = {}, OldBytes oldBytes = OldBytes::kDrop);

/// The same for a file whose writer may still be at work. Its size and time may be others than expected, unless it has
/// become shorter or another file has its name; recover() and undo() permit that, too.
/// @param present  the bytes in the places of the changes that the change was made for, in their order.
/// @throws Exceptions::IOError as above, and when other bytes are there.
Durability changeGrowingFile(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                             const std::vector<Bytes>& present, OldBytes oldBytes = OldBytes::kDrop);
/// @param failure  what cannot be done with the file otherwise, such as "cannot change".
/// @throws Exceptions::IOError when the file has become shorter, or another one has its name.
void requireGrownFrom(const Path& file, const FileState& expected, const char* failure);

enum class Recovery {
  kNoJournal,  ///< no change was stopped; nothing was done
  kRestored,   ///< the old bytes were put back, the journal is removed
  /// The change was stopped while its journal was being written, before it touched the file; that is removed.
  kNeverBegun
};

/// Undoes a change that was stopped before its end. It may be stopped itself and called again.
/// @throws Exceptions::IOError when the file is missing (with or without a journal), no regular file, being changed, or
/// cannot be written; when it is not the file that was being changed, or was changed since; when the journal is
/// damaged, whatever the file looks like, or of an unknown version. File and journal stay as they are then.
Recovery recover(const Path& file);

/// The path of old bytes that a change keeps: like that of the journal, with ".vantor-undo".
Path undoPath(const Path& file);

enum class Undoing {
  kNothingKept,  ///< no change kept old bytes, and none is under way or was stopped; nothing was done
  kUndone,       ///< the old bytes were put back; they are kept no more
  kWasUndone     ///< the file had them already; they are kept no more
};

/// Undoes the last change that kept its old bytes. When it is stopped, recover() finishes it.
/// @throws Exceptions::IOError, with everything as it was, when the file is not what that change left, byte for byte in
/// the changed places and by samples elsewhere; when it is missing, being changed, has a journal or a further hard
/// link, or cannot be written; when the kept bytes are damaged. Also when writing fails half-way: then recover() is
/// due.
Undoing undo(const Path& file);

}  // namespace Vantor::DataIO::File
