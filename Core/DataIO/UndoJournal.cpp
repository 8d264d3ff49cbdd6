#include "Core/DataIO/UndoJournal.h"

#include <string>

#include "Core/DataIO/JournalFormat.h"
#include "Core/DataIO/Pieces.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using Exceptions::raise;

constexpr const char* kSuffix = ".vantor-journal";

/// Behind symbolic links. The name itself for a file that is missing.
Path realPath(const Path& file) {
  std::error_code error;
  Path real = fs::canonical(file, error);
  if (error) real = fs::absolute(file, error);
  return error ? file : real;
}

Path journalOf(Path realFile) { return realFile += kSuffix; }

/// False where the journal's name would be too long.
bool isThere(const Path& journal) {
  std::error_code error;
  return fs::exists(journal, error);
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
  raise<IOError>("cannot recover '{}': {}; to keep it as it is, remove the journal '{}'", file.path().u8string(),
                 reason, journalOf(file.path()).u8string());
}

void requireFileOf(const Journal& journal, FileDataSource& source, FileDataSource& present, const FileUpdate& file) {
  if (journal.fileSize != file.size()) {
    refuseRecovery(file, "it has " + std::to_string(file.size()) + " bytes, and had " +
                             std::to_string(journal.fileSize) + " when its journal was written");
  }
  if (!isFileOf(journal, source, present)) {
    refuseRecovery(file, "it is not the file whose change was stopped, or was changed since");
  }
}

/// Returns false, and does nothing, when the change had not begun to write the file.
bool putBack(const Path& journalFile, FileUpdate& file) {
  FileDataSource source(journalFile);
  FileDataSource present(file.path());
  const auto journal = readJournal(source);
  if (!journal) {
    if (hasNothingElse(source, present)) return false;
    refuseRecovery(file, "its journal is damaged, and the file may be half changed");
  }
  requireFileOf(*journal, source, present, file);
  for (const auto& place : journal->places) putBack(source, place, present, file);
  file.flush();
  return true;
}

void requireNoJournal(const Path& realFile) {
  if (!isThere(journalOf(realFile))) return;
  raise<IOError>("cannot change '{}': an earlier change was stopped; recover it first, from '{}'", realFile.u8string(),
                 journalOf(realFile).u8string());
}

void requireFile(const Path& realFile) {
  std::error_code error;
  const auto status = fs::status(realFile, error);
  if (fs::is_regular_file(status)) return;
  const Path journal = journalOf(realFile);
  if (!fs::exists(status) && isThere(journal)) {
    raise<IOError>("cannot recover '{}': the file is gone; put it back, or remove '{}', which has old bytes of it",
                   realFile.u8string(), journal.u8string());
  }
  raise<IOError>("cannot recover '{}': {}", realFile.u8string(),
                 fs::exists(status) ? "it is no regular file" : "there is no such file");
}

void writeAll(const std::vector<NewBytes>& changes, FileUpdate& file) {
  for (const auto& change : changes) file.write(change.offset, change.bytes.data(), change.bytes.size());
}

void endChange(const Path& realFile) {
  try {
    removeFromDisk(journalOf(realFile));
  } catch (const IOError& error) {
    raise<IOError>(
        "the file has been changed, but has its journal still: '{}': {}; remove the journal to keep the change, or "
        "recover the file to undo it",
        realFile.u8string(), error.message());
  }
}

/// After a change threw: goes back, and reports both.
[[noreturn]] void undo(FileUpdate& file, const char* failure) {
  try {
    putBack(journalOf(file.path()), file);
    removeFromDisk(journalOf(file.path()));
  } catch (const std::exception& error) {
    raise<IOError>("{}; recover the file before anything else, as that has failed: {}", failure, error.what());
  }
  raise<IOError>("{}; the file is as it was", failure);
}

}  // namespace

Path journalPath(const Path& file) { return journalOf(realPath(file)); }

bool hasJournal(const Path& file) { return isThere(journalPath(file)); }

void changeInPlace(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                   const std::function<void(FileUpdate&)>& write) {
  FileUpdate update(realPath(file));
  update.lock();  // before looking for a journal, so that no other process takes ours for that of a stopped change
  requireNoJournal(update.path());
  requireOneName(update.path());
  writeJournal(journalOf(update.path()), update.path(), expected, changes);
  try {
    if (write) write(update);
    if (!write) writeAll(changes, update);
    update.flush();
  } catch (const std::exception& error) {
    undo(update, error.what());
  }
  endChange(update.path());
}

Recovery recover(const Path& file) {
  const Path real = realPath(file);
  const Path journal = journalOf(real);
  requireFile(real);
  if (!isThere(journal)) return Recovery::kNoJournal;
  FileUpdate update(real);
  update.lock();
  if (!isThere(journal)) return Recovery::kNoJournal;  // it belonged to a change that is done by now
  const bool isRestored = putBack(journal, update);
  removeFromDisk(journal);
  return isRestored ? Recovery::kRestored : Recovery::kNeverBegun;
}

}  // namespace Vantor::DataIO::File
