#pragma once

#include <cstddef>
#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// Upper-case hexadecimal pairs joined by points, 3 * size - 1 code units; nothing for no bytes.
wstring dottedText(const uint8* bytes, std::size_t size);
/// The lower-case URN of 16 bytes as a universal label: "urn:smpte:ul:" and four groups of eight digits.
wstring ulUrn(const uint8* bytes);
/// The lower-case URN of 16 bytes as a UUID (RFC 4122): "urn:uuid:" and 8-4-4-4-12 digits.
wstring uuidUrn(const uint8* bytes);
/// The lower-case URN of a UMID of `size` bytes, 32 or 64: "urn:smpte:umid:" and size / 4 groups of eight digits.
wstring umidUrn(const uint8* bytes, std::size_t size);

/// Readers of the texts above, in upper or lower case. Each demands the whole text and fills all of the 16 or `size`
/// bytes, or returns false, with `bytes` unspecified.
bool parseDotted(std::u16string_view text, uint8* bytes, std::size_t size);
bool parseUlUrn(std::u16string_view text, uint8* bytes);
bool parseUuidUrn(std::u16string_view text, uint8* bytes);
bool parseUmidUrn(std::u16string_view text, uint8* bytes, std::size_t size);

/// @throws Exceptions::InvalidFormat "'<text>' is not the text of a <type>", or "an AUID"; the text is cut after 200
/// code units.
[[noreturn]] void raiseInvalidText(std::u16string_view text, const char* type);

}  // namespace Vantor::KLV
