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
/// The journal, numbers big-endian: the bytes "vantor-j", a 32-bit version (2), a 32-bit count of places, the file's
/// 64-bit size, and a 64-bit check of the file; for each place 64 bits of offset, 64 bits of length, the old bytes and
/// the new ones; a 64-bit check of all of this. Checks are CRC-64 of ECMA-182. That of the file covers 16 samples of 8
/// KiB, or of the whole file if that is smaller, with zeros for the bytes of the places: with N for the file's size
/// less that of a sample, sample i starts at N - N / 15 * i.
///
/// A journal applies to no other file: old bytes are put back only where every byte of every place is the old or the
/// new one, and the samples match. A copy of the file, even on another disk, passes.
///
/// One process at a time changes or recovers a file, under a lock; a second one is refused. Where the file system has
/// no locks, a change is still refused while there is a journal, but callers must keep recovery and change apart.
namespace Vantor::DataIO::File {

/// Bytes that take the place of as many others in a file.
struct NewBytes {
  uint64 offset = 0;
  Bytes bytes;
};

/// The journal's path: beside the file itself, even if a symbolic link is named, with ".vantor-journal" appended to the
/// file's name.
Path journalPath(const Path& file);

/// Whether a change of the file was stopped before its end, so that recover() is due.
bool hasJournal(const Path& file);

/// Changes bytes of a file. When anything throws, the old bytes are put back first.
/// @param expected  the state of the file that the change was made for.
/// @param changes   in places that do not overlap.
/// @param write     writes them in place of this function, for tests that stop it.
/// @throws Exceptions::IOError, with the file unchanged, when the file is being changed, has a journal, a further hard
/// link or another state than expected, or is read-only, and when the journal cannot be written. Also when the file
/// cannot be written; the message names what is left to do: nothing if the old bytes were put back, else recover().
/// Also when the journal of a finished change cannot be removed.
void changeInPlace(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                   const std::function<void(FileUpdate&)>& write = {});

enum class Recovery {
  kNoJournal,  ///< no change was stopped; nothing was done
  kRestored,   ///< the old bytes were put back, the journal is removed
  /// The journal was incomplete, and the file still had all its old bytes, so the change had not begun to write the
  /// file; the journal is removed.
  kNeverBegun
};

/// Undoes a change that was stopped before its end. It may be stopped itself and called again.
/// @throws Exceptions::IOError when the file is missing (with or without a journal), no regular file, being changed, or
/// cannot be written; when it is not the file that was being changed, or was changed since; when the journal is damaged
/// or of an unknown version. File and journal stay as they are then.
Recovery recover(const Path& file);

}  // namespace Vantor::DataIO::File
