#pragma once

#include <optional>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// Reads and writes journals, whose format UndoJournal.h describes; for UndoJournal.cpp.
namespace Vantor::DataIO::File {

/// Writes the journal of a change that has not begun, to the medium.
/// @throws Exceptions::IOError when it cannot be written, or the file has another state by then; no journal is left
/// behind.
void writeJournal(const Path& journal, const Path& file, const FileState& expected,
                  const std::vector<NewBytes>& changes);

/// A complete journal, as the places of its parts.
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

/// None when the journal is incomplete.
/// @throws Exceptions::IOError when it is no journal, or one of another version.
std::optional<Journal> readJournal(SeekableSource& source);

/// Whether a file of the journal's size is the one that was being changed: every byte in the places is the old or the
/// new one, and the bytes around them are as they were.
bool isFileOf(const Journal& journal, SeekableSource& source, SeekableSource& file);

/// Whether the file itself has all old bytes of an incomplete journal, so that nothing is lost without it.
bool hasNothingElse(SeekableSource& journal, SeekableSource& file);

}  // namespace Vantor::DataIO::File
