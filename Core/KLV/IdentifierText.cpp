#include "Core/KLV/IdentifierText.h"

#include <algorithm>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Raise.h"

namespace Vantor::KLV {

namespace {

constexpr std::size_t kUniversalLabelSize = 16;
constexpr std::size_t kUuidSize = 16;
constexpr std::size_t kShownUnits = 200;

/// One textual form; formatting and parsing walk it alike.
struct Form {
  std::u16string_view prefix;
  Platform::DigitCase digits;
  char16_t separator;
  bool (*separatesBefore)(std::size_t index);  ///< asked for the bytes from the second on
};

bool everyByte(std::size_t) { return true; }
bool everyFourBytes(std::size_t index) { return index % 4 == 0; }
bool fieldsOfUuid(std::size_t index) { return index == 4 || index == 6 || index == 8 || index == 10; }

constexpr auto kUpperCase = Platform::DigitCase::kUpper;
constexpr auto kLowerCase = Platform::DigitCase::kLower;
constexpr Form kDotted = {u"", kUpperCase, u'.', everyByte};
constexpr Form kUlUrn = {u"urn:smpte:ul:", kLowerCase, u'.', everyFourBytes};
constexpr Form kUuidUrn = {u"urn:uuid:", kLowerCase, u'-', fieldsOfUuid};
constexpr Form kUmidUrn = {u"urn:smpte:umid:", kLowerCase, u'.', everyFourBytes};

wstring format(const Form& form, const uint8* bytes, std::size_t size) {
  wstring text(form.prefix);
  text.reserve(form.prefix.size() + 3 * size);
  for (std::size_t i = 0; i < size; ++i) {
    if (i != 0 && form.separatesBefore(i)) text += form.separator;
    Platform::appendHex(text, bytes[i], form.digits);
  }
  return text;
}

char16_t lowerCase(char16_t unit) { return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit; }

bool parse(const Form& form, std::u16string_view text, uint8* bytes, std::size_t size) {
  std::size_t at = 0;
  const auto takes = [&](char16_t expected) { return at < text.size() && lowerCase(text[at++]) == expected; };
  if (!std::all_of(form.prefix.begin(), form.prefix.end(), takes)) return false;
  for (std::size_t i = 0; i < size; ++i, at += 2) {
    if (i != 0 && form.separatesBefore(i) && !takes(form.separator)) return false;
    const int octet = text.size() - at < 2 ? -1 : Platform::hexOctet(text[at], text[at + 1]);
    if (octet < 0) return false;
    bytes[i] = static_cast<uint8>(octet);
  }
  return at == text.size();
}

}  // namespace

wstring dottedText(const uint8* bytes, std::size_t size) { return format(kDotted, bytes, size); }
wstring ulUrn(const uint8* bytes) { return format(kUlUrn, bytes, kUniversalLabelSize); }
wstring uuidUrn(const uint8* bytes) { return format(kUuidUrn, bytes, kUuidSize); }
wstring umidUrn(const uint8* bytes, std::size_t size) { return format(kUmidUrn, bytes, size); }

bool parseDotted(std::u16string_view text, uint8* bytes, std::size_t size) { return parse(kDotted, text, bytes, size); }

bool parseUlUrn(std::u16string_view text, uint8* bytes) { return parse(kUlUrn, text, bytes, kUniversalLabelSize); }

bool parseUuidUrn(std::u16string_view text, uint8* bytes) { return parse(kUuidUrn, text, bytes, kUuidSize); }

bool parseUmidUrn(std::u16string_view text, uint8* bytes, std::size_t size) {
  return parse(kUmidUrn, text, bytes, size);
}

void raiseInvalidText(std::u16string_view text, const char* type) {
  const wstring shown(text.substr(0, kShownUnits));
  const char* const end = text.size() > kShownUnits ? "..." : "";
  const char* const article = *type == 'A' ? "an" : "a";  // "UUID" and its like start with a consonant
  Exceptions::raise<Exceptions::InvalidFormat>("'{}{}' is not the text of {} {}", shown, end, article, type);
}

}  // namespace Vantor::KLV
