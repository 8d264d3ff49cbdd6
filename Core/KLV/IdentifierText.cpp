#include "Core/KLV/IdentifierText.h"

#include <string>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"

namespace Vantor::KLV {

namespace {

constexpr std::size_t kUniversalLabelSize = 16;
constexpr std::size_t kUuidSize = 16;
constexpr std::size_t kShownUnits = 200;

/// One textual form; formatting and parsing walk it alike.
struct Form {
  std::u16string_view prefix;
  const char16_t* digits;
  char16_t separator;
  bool (*separatesBefore)(std::size_t index);  ///< asked for the bytes from the second on
};

bool everyByte(std::size_t) { return true; }
bool everyFourBytes(std::size_t index) { return index % 4 == 0; }
bool fieldsOfUuid(std::size_t index) { return index == 4 || index == 6 || index == 8 || index == 10; }

constexpr const char16_t* kUpperCase = u"0123456789ABCDEF";
constexpr const char16_t* kLowerCase = u"0123456789abcdef";
constexpr Form kDotted = {u"", kUpperCase, u'.', everyByte};
constexpr Form kUlUrn = {u"urn:smpte:ul:", kLowerCase, u'.', everyFourBytes};
constexpr Form kUuidUrn = {u"urn:uuid:", kLowerCase, u'-', fieldsOfUuid};
constexpr Form kUmidUrn = {u"urn:smpte:umid:", kLowerCase, u'.', everyFourBytes};

wstring format(const Form& form, const uint8* bytes, std::size_t size) {
  wstring text(form.prefix);
  text.reserve(form.prefix.size() + 3 * size);
  for (std::size_t i = 0; i < size; ++i) {
    if (i != 0 && form.separatesBefore(i)) text += form.separator;
    text += form.digits[bytes[i] >> 4];
    text += form.digits[bytes[i] & 0x0F];
  }
  return text;
}

char16_t lowerCase(char16_t unit) { return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit; }

int hexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  const char16_t letter = lowerCase(unit);
  return letter >= u'a' && letter <= u'f' ? letter - u'a' + 10 : -1;
}

/// Takes one unit off the front when it is the expected one, in either case.
bool take(std::u16string_view& text, char16_t expected) {
  if (text.empty() || lowerCase(text.front()) != expected) return false;
  text.remove_prefix(1);
  return true;
}

bool takeByte(std::u16string_view& text, uint8& byte) {
  if (text.size() < 2) return false;
  const int high = hexDigit(text[0]);
  const int low = hexDigit(text[1]);
  if (high < 0 || low < 0) return false;
  byte = static_cast<uint8>(high << 4 | low);
  text.remove_prefix(2);
  return true;
}

bool parse(const Form& form, std::u16string_view text, uint8* bytes, std::size_t size) {
  for (const char16_t unit : form.prefix) {
    if (!take(text, unit)) return false;
  }
  for (std::size_t i = 0; i < size; ++i) {
    if (i != 0 && form.separatesBefore(i) && !take(text, form.separator)) return false;
    if (!takeByte(text, bytes[i])) return false;
  }
  return text.empty();
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

void throwInvalidText(std::u16string_view text, const char* type, const char* file, int line) {
  std::string shown = Utils::wstringToString(wstring(text.substr(0, kShownUnits)));
  if (text.size() > kShownUnits) shown += "...";
  const std::string article = *type == 'A' ? "an " : "a ";  // "UUID" and its like start with a consonant
  throw Exceptions::InvalidFormat("'" + shown + "' is not the text of " + article + type, file, line);
}

}  // namespace Vantor::KLV
