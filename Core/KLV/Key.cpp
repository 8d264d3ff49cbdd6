#include "Core/KLV/Key.h"

#include <algorithm>

#include "Core/DataIO/DataSource.h"
#include "Core/KLV/IdentifierText.h"
#include "Core/Platform/SeededHash.h"
#include "Core/Platform/Strings.h"

namespace Vantor::KLV {

Key::Key(const uint8* bytes) { std::copy_n(bytes, kSize, octets_.begin()); }

Key::Key(const wstring& text, StringRepresentationEncodingType) {
  if (parseDotted(text, octets_.data(), kSize) || parseUlUrn(text, octets_.data())) return;
  raiseInvalidText(text, "KLV key");
}

Key::Key(const uint16* text, StringRepresentationEncodingType form) : Key(Platform::utf16ToWstring(text), form) {}

wstring Key::toString(StringRepresentationEncodingType form) const {
  return form == kUrnForm ? ulUrn(rawBuffer()) : dottedText(rawBuffer(), kSize);
}

Key Key::read(DataIO::DataSource& source) {
  Key key;
  source.read(key.octets_.data(), kSize);
  return key;
}

std::size_t KeyHash::operator()(const Key& key) const noexcept {
  return static_cast<std::size_t>(Platform::seededHash(DataIO::readBigEndian<uint64>(key.rawBuffer()),
                                                       DataIO::readBigEndian<uint64>(key.rawBuffer() + 8)));
}

}  // namespace Vantor::KLV
