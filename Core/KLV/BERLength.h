#pragma once

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/DataSource.h"
#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// The length field of a KLV triplet (ST 336), coded by the basic encoding rules of ISO/IEC 8825-1.
struct BERLength {
  uint64 value = 0;  ///< in bytes
  uint8 octets = 0;  ///< of the length field itself, 1 to 9
};

/// The most octets that ST 377-1 allows a length field.
constexpr uint8 kMaxBEROctets = 9;

/// Reads a length field of 1 to 9 octets. The value is not compared with what is left in the source.
/// @throws Exceptions::ParseError with the offset of the field when it is cut short, has the indefinite form (0x80) or
/// more than 9 octets; the source stands behind the first octet then.
BERLength readBERLength(DataIO::DataSource& source);

/// How many octets writeBERLength() writes.
/// @param octets  0: the shortest of 1, 4 and 9, which are customary in MXF files. Else this number, or as few more as
///                the value needs.
/// @throws Exceptions::InvalidLength when more than 9 octets are asked for.
uint8 berOctets(uint64 value, uint8 octets = 0);

/// Writes a length field; `octets` as for berOctets().
/// @throws Exceptions::InvalidLength when more than 9 octets are asked for; nothing is written then.
void writeBERLength(DataIO::DataSink& sink, uint64 value, uint8 octets = 0);

}  // namespace Vantor::KLV
