#pragma once

#include "Core/DataIO/DataSink.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// The size of the smallest KLV fill item, in bytes: a key and a length field of one octet, which is 0.
constexpr uint64 kMinFillSize = 17;

/// Whether a gap of this many bytes can be filled: by nothing, or by one fill item.
constexpr bool canFill(uint64 size) { return size == 0 || size >= kMinFillSize; }

/// Fills a gap of `size` bytes with nothing or one fill item, whose value is zeros. Its length field has the customary
/// 4 octets, fewer where they do not fit, more where they do not suffice.
/// @throws Exceptions::InvalidLength unless canFill(); nothing is written then.
void writeFill(DataIO::DataSink& sink, uint64 size);

}  // namespace Vantor::MXF
