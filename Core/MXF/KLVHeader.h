#pragma once

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Key.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// Key and length of a KLV triplet in a file, and where they stand.
struct KLVHeader {
  KLV::Key key;
  KLV::BERLength length;
  uint64 offset = 0;       ///< of the key, from the start of the file
  uint64 valueOffset = 0;  ///< of the value; never behind the end of the file
};

/// The next 16 bytes, or what is left of them in the file followed by zeros; the source does not move.
KLV::Key peekKey(DataIO::SeekableSource& source);

/// Reads key and length; the source then stands at the value, which is not checked yet.
/// @throws Exceptions::ParseError with the offset when they are cut short or the length is not a BER length.
KLVHeader readKLVHeader(DataIO::DataSource& source);
/// The same for a key that was read already.
KLVHeader readKLVHeader(DataIO::DataSource& source, const KLV::Key& key);

/// Writes a key and the length of the value that follows. @param octets  of the length field, as for
/// KLV::writeBERLength().
void writeKLVHeader(DataIO::DataSink& sink, const KLV::Key& key, uint64 length, uint8 octets);

/// Whether the file holds the whole value.
bool valueFits(const KLVHeader& klv, const DataIO::SeekableSource& source);

/// Moves behind the KLV whose header was read. One that runs past the end of the file takes the source to the end.
void skipValue(const KLVHeader& klv, DataIO::SeekableSource& source);

}  // namespace Vantor::MXF
