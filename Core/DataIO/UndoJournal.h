#pragma once

#include <functional>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/DataIO/FileUpdate.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// Changes of files in place that can be undone when the process is killed, or the machine loses its power, at any
/// moment. As long as a change is under way, a journal with the old bytes stands beside the file: on the medium before
/// the first byte of the file is written, removed after the last one is on the medium.
///
/// The journal, numbers big-endian: the octets "mxfxml-j", a 32-bit version (1), a 32-bit count of places, the file's
/// 64-bit size; for each place 64 bits of offset, 64 bits of length and the old bytes; a 64-bit check (CRC-64 of
/// ECMA-182) of all of this.
///
/// One process at a time changes or recovers a file, which it locks for that; a second one is refused. Where the file
/// system has no locks, a change is still refused while there is a journal, but a recovery must not meet a change.
namespace Vantor::DataIO::File {

/// A run of bytes in a file.
struct Place {
  uint64 offset = 0;
  uint64 size = 0;
  uint64 end() const { return offset + size; }
};

/// Where the journal of a file is: beside the file itself, also when a symbolic link is named, under the file's name
/// with ".mxfxml-journal" behind it.
Path journalPath(const Path& file);

/// Whether a change of the file was stopped before its end, so that recover() is due.
bool hasJournal(const Path& file);

/// Changes bytes of a file by a function, which writes nowhere but in these places. When anything throws, the old bytes
/// are put back before it goes on.
/// @param expected  the state of the file that the change was made for.
/// @throws Exceptions::IOError when the file is being changed or has a journal, a further hard link, another state than
/// expected, is not to be written, or the journal cannot be written: nothing of the file is changed then. Also when the
/// file cannot be written, and the text tells whether the old bytes were put back or recover() is due; and when the
/// journal of a change that is done cannot be removed, which the text tells, too.
void changeInPlace(const Path& file, const FileState& expected, const std::vector<Place>& places,
                   const std::function<void(FileUpdate&)>& change);

enum class Recovery {
  kNoJournal,  ///< no change was stopped; nothing was done
  kRestored,   ///< the old bytes were put back, the journal is removed
  /// The journal was not whole, so the change had not begun to write the file; the journal is removed.
  kNeverBegun
};

/// Undoes a change that was stopped before its end. It may be stopped itself and called again.
/// @throws Exceptions::IOError when the file is missing, also where its journal is not, or no regular one, is being
/// changed, cannot be written or has another size than the change found, or the journal is not one that this version
/// knows; file and journal stay as they are then.
Recovery recover(const Path& file);

}  // namespace Vantor::DataIO::File
