#include "XMLBuilder/HexText.h"

namespace Vantor::XMLBuilder {

wstring hexText(const uint8* bytes, std::size_t count) {
  constexpr const char16_t* kDigits = u"0123456789ABCDEF";
  wstring text(2 * count, u'0');
  for (std::size_t i = 0; i < count; ++i) {
    text[2 * i] = kDigits[bytes[i] >> 4];
    text[2 * i + 1] = kDigits[bytes[i] & 0x0F];
  }
  return text;
}

}  // namespace Vantor::XMLBuilder
