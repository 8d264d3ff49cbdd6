#pragma once

#include <optional>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Types.h"

/// The bytes of journals, for UndoJournal.cpp: docs/undo-format.md describes them.
namespace Vantor::DataIO::File {

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
  Growth growth = Growth::kNone;

  /// Whether the file of the journal may have so many bytes.
  bool allowsSize(uint64 size) const { return growth == Growth::kAllowed ? size >= fileSize : size == fileSize; }
};

/// Writes the whole journal of a change of a file that still has its old bytes.
void writeJournal(DataSink& sink, SeekableSource& file, const std::vector<NewBytes>& changes, Growth growth);

/// None when the journal is cut off or damaged.
/// @throws Exceptions::IOError when it is no journal, or one of another version.
std::optional<Journal> readJournal(SeekableSource& source);

/// What a file has in the places of a journal.
enum class PlaceBytes {
  kOld,    ///< all old bytes
  kNew,    ///< all new ones, some of which differ from the old ones
  kMixed,  ///< every byte is the old or the new one
  kOther   ///< neither; also in a file of another size, or with other bytes around the places
};
/// @param source  of the journal.
PlaceBytes bytesInPlaces(const Journal& journal, SeekableSource& source, SeekableSource& file);

/// Whether a file has all old bytes that are left in a journal which is cut off or damaged.
bool hasBytesLeft(SeekableSource& journal, SeekableSource& file);

}  // namespace Vantor::DataIO::File
