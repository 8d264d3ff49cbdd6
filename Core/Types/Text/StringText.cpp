#include "Core/Types/Text/StringText.h"

#include <algorithm>

#include "Core/Platform/HexDigits.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

constexpr std::size_t kEscapedDigits = 4;

/// Takes the rest of an escape off the front, behind its backslash.
bool takeEscaped(std::u16string_view& rest, char16_t& unit) {
  if (rest.empty()) return false;
  unit = rest.front();
  rest.remove_prefix(1);
  if (unit == u'"' || unit == u'\\') return true;
  if (unit != u'u' || rest.size() < kEscapedDigits) return false;
  int number = 0;
  for (const char16_t digit : rest.substr(0, kEscapedDigits)) {
    const int value = Platform::hexDigit(digit);
    number = value < 0 || number < 0 ? -1 : number << 4 | value;
  }
  rest.remove_prefix(kEscapedDigits);
  unit = static_cast<char16_t>(number);
  return number >= 0;
}

/// The text in the quotes of one that is quoted as a whole.
bool unquote(std::u16string_view text, wstring& string) { return takeQuoted(text, string) && text.empty(); }

bool isHighSurrogate(char16_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

/// Whether every surrogate has its other half.
bool isWellFormed(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isLowSurrogate(text[i])) return false;
    if (isHighSurrogate(text[i]) && (++i == text.size() || !isLowSurrogate(text[i]))) return false;
  }
  return true;
}

}  // namespace

bool isTextType(Identifiers::Identifier type) {
  using namespace Identifiers;
  constexpr std::array kTexts = {kUTF16, kUTF16String, kUTF8String, kISO7String, kISO8String};
  return std::find(kTexts.begin(), kTexts.end(), type) != kTexts.end();
}

bool takeQuoted(std::u16string_view& rest, wstring& text) {
  text.clear();
  if (rest.empty() || rest.front() != u'"') return false;
  rest.remove_prefix(1);
  while (!rest.empty()) {
    char16_t unit = rest.front();
    rest.remove_prefix(1);
    if (unit == u'"') return true;
    if (unit == u'\\' && !takeEscaped(rest, unit)) return false;
    text += unit;
  }
  return false;
}

wstring printString(const SimpleDataType& value) {
  wstring text = textOfValue(value);
  wstring inner;
  return unquote(text, inner) ? quotedText(text) : text;
}

bool readString(std::u16string_view text, char16_t highest, wstring& string, std::string& reason) {
  if (!unquote(text, string)) string = wstring(text);
  const auto isLacking = [highest](char16_t unit) { return unit > highest; };
  if (std::any_of(string.begin(), string.end(), isLacking)) reason = "this encoding lacks a character of it";
  if (string.find(u'\0') != wstring::npos) reason = "it holds a NUL";
  if (highest == 0xffff && !isWellFormed(string)) reason = "it holds half a character";
  return reason.empty();
}

wstring printCodeUnit(const SimpleDataType& value) {
  const auto unit = static_cast<char16_t>(static_cast<const UTF16&>(value).value());
  const wstring text = unit == 0 ? wstring() : wstring(1, unit);
  if (isHighSurrogate(unit) || isLowSurrogate(unit))
    return u"\"\\u" + Platform::hexNumber<wstring>(static_cast<uint16>(unit)) + u"\"";
  const wstring quoted = quotedText(text);
  const bool isPlain = quoted.size() == text.size() + 2 && unit > u' ';
  return isPlain ? text : quoted;
}

ParsedValue parseCodeUnit(std::u16string_view text) {
  wstring string;
  if (!unquote(text, string)) string = wstring(text);
  if (string.size() > 1) return ParsedValue();
  return std::make_unique<UTF16>(string.empty() ? uint16{0} : static_cast<uint16>(string.front()));
}

}  // namespace Vantor::Types
