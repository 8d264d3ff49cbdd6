#pragma once

#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/KLV/Keys.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// @throws Exceptions::InvalidFormat naming the key when it is not one for which isLocalSet() or isSwappedUUID() holds.
LocalSetCoding localSetCoding(const Key& key);

/// One item of a local set. The value points into the set's own bytes.
struct LocalSetItem {
  uint16 tag = 0;
  const uint8* value = nullptr;
  std::size_t size = 0;    ///< of the value, in bytes
  uint8 lengthOctets = 0;  ///< of the item's length field: 2, or 1 to 9 with BER lengths
};

/// Splits a set's value into its items, in file order; a tag that occurs twice is listed twice.
/// @param value   the set's value without key and length; the items point into it.
/// @param origin  the offset of the value's first byte in its file, for messages.
/// @throws Exceptions::ParseError with the offset and the tag when an item is cut short or runs past the end.
Templates::vector<LocalSetItem> readLocalSet(LocalSetCoding coding, const uint8* value, std::size_t size,
                                             uint64 origin = 0);

/// Writes tag, length and value.
/// @param lengthOctets  of the length field: with BER lengths as for writeBERLength(), else without effect.
/// @throws Exceptions::InvalidLength naming the tag when the size does not fit a 2-byte length, or as writeBERLength();
/// nothing is written then.
void writeLocalSetItem(DataIO::DataSink& sink, LocalSetCoding coding, uint16 tag, const uint8* value, std::size_t size,
                       uint8 lengthOctets = 0);

}  // namespace Vantor::KLV
