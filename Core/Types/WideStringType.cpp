#include "Core/Types/WideStringType.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

#include "Core/DataIO/BigEndian.h"
#include "Core/KLV/IdentifierText.h"

namespace Vantor::Types {

namespace {

using Units = Templates::vector<uint16>;

/// @throws utf8::invalid_utf16 when a surrogate stands alone.
Bytes toUTF8(const uint16* begin, const uint16* end) {
  Bytes octets;
  utf8::utf16to8(begin, end, std::back_inserter(octets));
  return octets;
}

Bytes toBigEndian(const uint16* begin, const uint16* end) {
  Bytes octets(sizeof(uint16) * static_cast<std::size_t>(end - begin));
  uint8* to = octets.data();
  for (; begin != end; ++begin, to += sizeof(uint16)) DataIO::writeBigEndian<uint16>(to, *begin);
  return octets;
}

template <class Number>
bool isZero(Number number) {
  return number == 0;
}

/// Fills `text` with the part before the first NUL; false when that is ill-formed or anything but NULs follows.
bool decodeUTF8(const uint8* bytes, std::size_t size, Units& text) {
  const uint8* const end = bytes + size;
  const uint8* const textEnd = std::find(bytes, end, uint8{0});
  if (!std::all_of(textEnd, end, isZero<uint8>) || !utf8::is_valid(bytes, textEnd)) return false;
  utf8::utf8to16(bytes, textEnd, std::back_inserter(text));
  return true;
}

bool decodeBigEndian(const uint8* bytes, std::size_t size, Units& text) {
  if (size % sizeof(uint16) != 0) return false;
  text.resize(size / sizeof(uint16));
  for (uint16& unit : text) {
    unit = DataIO::readBigEndian<uint16>(bytes);
    bytes += sizeof(uint16);
  }
  const auto textEnd = std::find(text.begin(), text.end(), uint16{0});
  if (!std::all_of(textEnd, text.end(), isZero<uint16>)) return false;
  text.erase(textEnd, text.end());
  try {
    toUTF8(text.data(), text.data() + text.size());
  } catch (const utf8::invalid_utf16&) {
    return false;
  }
  return true;
}

}  // namespace

WideString::WideString(const wstring& text, Coding coding, const char* type)
    : terminated_(text.begin(), std::find(text.begin(), text.end(), u'\0')) {
  const uint16* const begin = terminated_.data();
  const uint16* const end = begin + terminated_.size();
  try {
    octets_ = toUTF8(begin, end);
  } catch (const utf8::invalid_utf16&) {
    KLV::raiseInvalidText(text, type);
  }
  if (coding == Coding::kUTF16BigEndian) octets_ = toBigEndian(begin, end);
  requireEncodable(octets_.size());
  terminated_.push_back(0);
}

bool WideString::hasSameValue(const SimpleDataType& other) const {
  return terminated_ == static_cast<const WideString&>(other).terminated_;
}

bool WideString::readFrom(const uint8* bytes, std::size_t size, Coding coding) {
  Units text;
  const bool isText = coding == Coding::kUTF8 ? decodeUTF8(bytes, size, text) : decodeBigEndian(bytes, size, text);
  if (!isText) return false;
  text.push_back(0);
  octets_.assign(bytes, bytes + size);
  terminated_.swap(text);
  return true;
}

}  // namespace Vantor::Types
