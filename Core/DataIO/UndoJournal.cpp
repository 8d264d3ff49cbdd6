#include "Core/DataIO/UndoJournal.h"

#include <optional>
#include <string>

#include "Core/DataIO/JournalFormat.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/Pieces.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using Exceptions::raise;

constexpr const char* kSuffix = ".vantor-journal";
constexpr const char* kUnfinishedSuffix = ".vantor-journal.tmp";
constexpr const char* kUndoSuffix = ".vantor-undo";

/// Behind symbolic links. The name itself for a file that is missing.
Path realPath(const Path& file) {
  std::error_code error;
  Path real = fs::canonical(file, error);
  if (error) real = fs::absolute(file, error);
  return error ? file : real;
}

Path journalOf(Path realFile) { return realFile += kSuffix; }
/// The journal while it is being written.
Path unfinishedJournalOf(Path realFile) { return realFile += kUnfinishedSuffix; }
Path undoFileOf(Path realFile) { return realFile += kUndoSuffix; }

/// False where the name would be too long.
bool isThere(const Path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

/// Throws when the file is not the one that a change was made for.
using CheckFile = std::function<void(const Path& realFile)>;

/// Writes the journal of a change that has not begun, to the medium. It gets its name when it is complete; an
/// incomplete one under that name is therefore damaged. None is left behind when this throws.
/// @param check  called when the journal is complete.
void writeJournal(const Path& realFile, const std::vector<NewBytes>& changes, Growth growth, const CheckFile& check) {
  const Path unfinished = unfinishedJournalOf(realFile);
  if (isThere(unfinished)) removeFromDisk(unfinished);  // of a change that never began: the file is locked
  FileDataSource old(realFile);
  NewFile output(unfinished);
  std::error_code ignored;
  fs::permissions(unfinished, fs::status(realFile).permissions(), ignored);
  writeJournal(output, old, changes, growth);
  check(realFile);
  output.commit(journalOf(realFile));
}

/// Writes only what differs, so that bytes which were never changed need not be writable.
void putBack(FileDataSource& journal, const Journal::Place& place, FileDataSource& present, FileUpdate& file) {
  uint64 offset = place.offset;
  forEachPiece(journal, place.oldBytes, place.size, [&](const Bytes& old) {
    if (readPiece(present, offset, old.size()) != old) file.write(offset, old.data(), old.size());
    offset += old.size();
  });
}

[[noreturn]] void refuseRecovery(const FileUpdate& file, const std::string& reason) {
  raise<IOError>("cannot recover '{}': {}; to keep it as it is, remove the journal '{}'",
                 Platform::pathToUTF8(file.path()), reason, Platform::pathToUTF8(journalOf(file.path())));
}

std::string sizes(uint64 now, uint64 before) {
  return "it has " + std::to_string(now) + " bytes, and had " + std::to_string(before) + " when ";
}

/// The change may have begun, since its journal was once complete.
[[noreturn]] void refuseDamagedJournal(const FileUpdate& file, bool hasBytesLeft) {
  const char* known = hasBytesLeft
                          ? "its journal is damaged; the file has the old bytes that are left there, but may be "
                            "changed where the others were"
                          : "its journal is damaged, and the file may be half changed: it lacks old bytes that "
                            "are left there";
  refuseRecovery(file, std::string(known) + "; if you have a copy from before, use that");
}

void putBack(const Path& journalFile, FileUpdate& file) {
  FileDataSource source(journalFile);
  FileDataSource present(file.path());
  const auto journal = readJournal(source);
  if (!journal) refuseDamagedJournal(file, hasBytesLeft(source, present));
  if (!journal->allowsSize(file.size())) {
    refuseRecovery(file, sizes(file.size(), journal->fileSize) + "its journal was written");
  }
  if (bytesInPlaces(*journal, source, present) == PlaceBytes::kOther) {
    refuseRecovery(file, "it is not the file whose change was stopped, or was changed since");
  }
  for (const auto& place : journal->places) putBack(source, place, present, file);
  file.flush();
}

void requireNoJournal(const Path& realFile) {
  if (!isThere(journalOf(realFile))) return;
  raise<IOError>("cannot change '{}': an earlier change was stopped; recover it first, from '{}'",
                 Platform::pathToUTF8(realFile), Platform::pathToUTF8(journalOf(realFile)));
}

/// @param task  what is to be done with the file.
void requireFile(const Path& realFile, const char* task) {
  std::error_code error;
  const auto status = fs::status(realFile, error);
  if (fs::is_regular_file(status)) return;
  const Path journal = journalOf(realFile);
  if (!fs::exists(status) && isThere(journal)) {
    raise<IOError>("cannot {} '{}': the file is gone; put it back, or remove '{}', which has old bytes of it", task,
                   Platform::pathToUTF8(realFile), Platform::pathToUTF8(journal));
  }
  raise<IOError>("cannot {} '{}': {}", task, Platform::pathToUTF8(realFile),
                 fs::exists(status) ? "it is no regular file" : "there is no such file");
}

/// @return whether the medium knows that the journal is gone.
Durability endChange(const Path& realFile, OldBytes oldBytes) {
  try {
    if (oldBytes == OldBytes::kKeep) return renameOnDisk(journalOf(realFile), undoFileOf(realFile));
    return removeFromDisk(journalOf(realFile));
  } catch (const IOError& error) {
    raise<IOError>(
        "the file has been changed, but has its journal still: '{}': {}; remove the journal to keep the change, or "
        "recover the file to undo it",
        Platform::pathToUTF8(realFile), error.message());
  }
}

/// After a change threw: goes back, and reports both.
[[noreturn]] void goBack(FileUpdate& file, const char* failure) {
  try {
    putBack(journalOf(file.path()), file);
    removeFromDisk(journalOf(file.path()));
  } catch (const std::exception& error) {
    raise<IOError>("{}; recover the file before anything else, as that has failed: {}", failure, error.what());
  }
  raise<IOError>("{}; the file is as it was", failure);
}

[[noreturn]] void refuseUndoing(const Path& realFile, const std::string& reason) {
  raise<IOError>("cannot undo the change of '{}': {}", Platform::pathToUTF8(realFile), reason);
}

/// Whether there is something to put back.
/// @throws IOError when the file is not what the change left.
bool canBeUndone(const Path& realFile) {
  FileDataSource source(undoFileOf(realFile));
  FileDataSource present(realFile);
  const auto kept = readJournal(source);
  if (!kept) refuseUndoing(realFile, "'" + source.name() + "', which has the old bytes, is damaged");
  if (!kept->allowsSize(present.size())) {
    refuseUndoing(realFile, sizes(present.size(), kept->fileSize) + "it was changed");
  }
  const auto bytes = bytesInPlaces(*kept, source, present);
  if (bytes == PlaceBytes::kOld || bytes == PlaceBytes::kNew) return bytes == PlaceBytes::kNew;
  refuseUndoing(realFile, "it was changed once more since, or is another file");
}

/// Makes the kept bytes the journal of a change that was stopped, and recovers the file.
void undo(FileUpdate& file) {
  const Path journal = journalOf(file.path());
  if (renameOnDisk(undoFileOf(file.path()), journal) == Durability::kAtomic) {
    renameOnDisk(journal, undoFileOf(file.path()));
    refuseUndoing(file.path(), "its folder cannot be flushed");
  }
  try {
    putBack(journal, file);
    removeFromDisk(journal);
  } catch (const std::exception& error) {
    raise<IOError>("the change is not undone yet: {}; recover the file to finish that", error.what());
  }
}

}  // namespace

Path journalPath(const Path& file) { return journalOf(realPath(file)); }

bool hasJournal(const Path& file) { return isThere(journalPath(file)); }

OpenChange openChange(const Path& file) {
  const Path real = realPath(file);
  if (!isThere(journalOf(real))) return OpenChange::kNone;
  const bool isUnderWay = isLocked(real);
  if (!isThere(journalOf(real))) return OpenChange::kNone;  // it has ended by now
  return isUnderWay ? OpenChange::kUnderWay : OpenChange::kStopped;
}

void requireNoOpenChange(const Path& file, const char* failure) {
  const auto change = openChange(file);
  if (change == OpenChange::kStopped) requireNoStoppedChange(file, failure);
  if (change != OpenChange::kUnderWay) return;
  raise<IOError>("{} '{}': another program is changing it at the moment; try again later", failure,
                 Platform::pathToUTF8(file));
}

void requireNoStoppedChange(const Path& file, const char* failure) {
  if (!hasJournal(file)) return;
  raise<IOError>("{} '{}': an earlier change of it was stopped half-way; recover it first", failure,
                 Platform::pathToUTF8(file));
}

namespace {

Durability change(const Path& file, const std::vector<NewBytes>& changes, Growth growth, const CheckFile& check,
                  const std::function<void(FileUpdate&)>& write, OldBytes oldBytes) {
  FileUpdate update(realPath(file));
  update.lock();  // before looking for a journal, so that no other process takes ours for that of a stopped change
  requireNoJournal(update.path());
  requireOneName(update.path());
  writeJournal(update.path(), changes, growth, check);
  try {
    if (write) {
      write(update);
    } else {
      for (const auto& change : changes) update.write(change.offset, change.bytes.data(), change.bytes.size());
    }
    update.flush();
  } catch (const std::exception& error) {
    goBack(update, error.what());
  }
  return endChange(update.path(), oldBytes);
}

void requirePresent(const Path& file, const std::vector<NewBytes>& changes, const std::vector<Bytes>& present) {
  FileDataSource source(file);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    Memory::MemoryFile expected(present[i].data(), present[i].size());
    if (haveSameBytes(expected, 0, source, changes[i].offset, present[i].size())) continue;
    raise<IOError>("cannot change '{}': another program has changed the bytes from offset {} on meanwhile; begin anew",
                   source.name(), changes[i].offset);
  }
}

}  // namespace

Durability changeInPlace(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                         const std::function<void(FileUpdate&)>& write, OldBytes oldBytes) {
  const auto check = [&](const Path& realFile) { requireState(realFile, expected, "cannot change"); };
  return change(file, changes, Growth::kNone, check, write, oldBytes);
}

Durability changeGrowingFile(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                             const std::vector<Bytes>& present, OldBytes oldBytes) {
  const auto check = [&](const Path& realFile) {
    requireGrownFrom(realFile, expected, "cannot change");
    requirePresent(realFile, changes, present);
  };
  requireGrownFrom(file, expected, "cannot change");  // before the old bytes are read
  return change(file, changes, Growth::kAllowed, check, {}, oldBytes);
}

void requireGrownFrom(const Path& file, const FileState& expected, const char* failure) {
  const auto now = stateOf(file);
  if (now.identity == expected.identity && now.size >= expected.size) return;
  raise<IOError>("{} '{}': another program has replaced or shortened it meanwhile; begin anew", failure,
                 Platform::pathToUTF8(file));
}

Recovery recover(const Path& file) {
  const Path real = realPath(file);
  const Path journal = journalOf(real), unfinished = unfinishedJournalOf(real);
  requireFile(real, "recover");
  if (!isThere(journal) && !isThere(unfinished)) return Recovery::kNoJournal;
  FileUpdate update(real);
  update.lock();
  const bool wasWriting = isThere(unfinished);
  if (wasWriting) removeFromDisk(unfinished);
  // It may have belonged to a change that is done by now.
  if (!isThere(journal)) return wasWriting ? Recovery::kNeverBegun : Recovery::kNoJournal;
  putBack(journal, update);
  removeFromDisk(journal);
  return Recovery::kRestored;
}

Path undoPath(const Path& file) { return undoFileOf(realPath(file)); }

Undoing undo(const Path& file) {
  const Path real = realPath(file);
  requireFile(real, "undo the change of");
  if (!isThere(undoFileOf(real))) {
    requireNoOpenChange(real, "cannot undo the change of");  // perhaps that was an undoing
    return Undoing::kNothingKept;
  }
  FileUpdate update(real);
  update.lock();
  requireNoJournal(real);
  requireOneName(real);
  if (canBeUndone(real)) {
    undo(update);
    return Undoing::kUndone;
  }
  removeFromDisk(undoFileOf(real));
  return Undoing::kWasUndone;
}

}  // namespace Vantor::DataIO::File
