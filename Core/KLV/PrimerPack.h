#pragma once

#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/KLV/Key.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// One row of a primer pack: which label a local tag stands for in this partition (ST 377-1).
struct PrimerEntry {
  uint16 tag = 0;
  Key label;

  friend bool operator==(const PrimerEntry& left, const PrimerEntry& right) {
    return left.tag == right.tag && left.label == right.label;
  }
};

/// The size of a row on the wire, in bytes: tag and label.
constexpr uint32 kPrimerEntrySize = 18;

/// Reads the value of a primer pack: a 32-bit count, the 32-bit row size 18 and the rows. Rows are returned in file
/// order; a tag that occurs twice is listed twice.
/// @param origin  the offset of the value's first byte in its file, for messages.
/// @throws Exceptions::ParseError with the offset when the row size is not 18 or count and bytes do not agree; nothing
/// is allocated then.
Templates::vector<PrimerEntry> readPrimerPack(const uint8* value, std::size_t size, uint64 origin = 0);

/// Writes the value of a primer pack, 8 + 18 * entries bytes; key and length are the caller's.
void writePrimerPack(DataIO::DataSink& sink, const Templates::vector<PrimerEntry>& entries);

}  // namespace Vantor::KLV
