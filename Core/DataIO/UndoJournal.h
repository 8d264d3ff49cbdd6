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
/// the first byte of the file is written, removed after the last one is on the medium.
///
/// The journal, numbers big-endian: the octets "vantor-j", a 32-bit version (2), a 32-bit count of places, the file's
/// 64-bit size, and 64 bits of a check that only this file has; for each place 64 bits of offset, 64 bits of length,
/// the old bytes and the new ones; a 64-bit check of all of this. Checks are CRC-64 of ECMA-182. That of the file
/// covers 16 samples of 8 KiB, or of the whole file if that has less, in which the octets of places are zero: sample i
/// starts at N - N / 15 * i, where N is the size less that of a sample.
///
/// A journal is believed for no other file: old bytes are put back only where every octet of every place is the old or
/// the new one, and the samples are right. A copy of the file will do, also on another disk.
///
/// One process at a time changes or recovers a file, which it locks for that; a second one is refused. Where the file
/// system has no locks, a change is still refused while there is a journal, but a recovery must not meet a change.
namespace Vantor::DataIO::File {

/// Bytes that take the place of as many others in a file.
struct NewBytes {
  uint64 offset = 0;
  Bytes bytes;
};

/// Where the journal of a file is: beside the file itself, also when a symbolic link is named, under the file's name
/// with ".vantor-journal" behind it.
Path journalPath(const Path& file);

/// Whether a change of the file was stopped before its end, so that recover() is due.
bool hasJournal(const Path& file);

/// Changes bytes of a file. When anything throws, the old bytes are put back before it goes on.
/// @param expected  the state of the file that the change was made for.
/// @param changes   in places that do not overlap.
/// @param write     writes them instead of this function, for tests that stop it.
/// @throws Exceptions::IOError when the file is being changed or has a journal, a further hard link, another state than
/// expected, is read-only, or the journal cannot be written: nothing of the file is changed then. Also when the
/// file cannot be written, and its message names what is left to do: nothing where the old bytes were put back, else
/// recover(). Also when the journal of a change that is done cannot be removed.
void changeInPlace(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                   const std::function<void(FileUpdate&)>& write = {});

enum class Recovery {
  kNoJournal,  ///< no change was stopped; nothing was done
  kRestored,   ///< the old bytes were put back, the journal is removed
  /// The journal was not whole, and the file has all old bytes that it holds, so the change had not begun to write the
  /// file; the journal is removed.
  kNeverBegun
};

/// Undoes a change that was stopped before its end. It may be stopped itself and called again.
/// @throws Exceptions::IOError when the file is missing, also where its journal is not, or no regular one, is being
/// changed, cannot be written, is another one than was being changed or was changed since, or the journal is not one
/// that this version knows or is damaged; file and journal stay as they are then.
Recovery recover(const Path& file);

}  // namespace Vantor::DataIO::File
