#pragma once

#include <optional>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// The bytes of a journal, which UndoJournal.h describes, and what they hold of a file; for UndoJournal.cpp.
namespace Vantor::DataIO::File {

/// Writes the journal of a change that has not begun, to the medium.
/// @throws Exceptions::IOError when it cannot be written, or the file has another state by then; there is none then.
void writeJournal(const Path& journal, const Path& file, const FileState& expected,
                  const std::vector<NewBytes>& changes);

/// A whole journal, by where its parts are.
struct Journal {
  struct Place {
    uint64 offset = 0;  ///< in the file
    uint64 size = 0;
    uint64 oldBytes = 0;  ///< where they are in the journal; the new ones are behind them
  };
  uint64 fileSize = 0;
  uint64 surroundings = 0;
  std::vector<Place> places;
};

/// None when the journal is not whole.
/// @throws Exceptions::IOError when it is no journal, or one of another version.
std::optional<Journal> readJournal(SeekableSource& source);

/// Whether a file of the journal's size is the one that was being changed: every byte in the places is the old or the
/// new one, and the bytes around them are as they were.
bool isFileOf(const Journal& journal, SeekableSource& source, SeekableSource& file);

/// Whether a journal that is not whole has no old bytes but those that the file has anyway, so that nothing is lost
/// with it.
bool hasNothingElse(SeekableSource& journal, SeekableSource& file);

}  // namespace Vantor::DataIO::File
