#pragma once

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string>
#include <string_view>

#include "Core/Platform/Strings.h"
#include "Core/Platform/Types.h"

namespace Vantor::Types {

constexpr bool isDecimalDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
constexpr char16_t lowerCaseOf(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}
inline wstring lowerCaseOf(std::u16string_view text) {
  wstring lower(text);
  for (auto& unit : lower) unit = lowerCaseOf(unit);
  return lower;
}

/// Reads a text that is a number as a whole; false for any other text, and for a number that the type cannot hold.
template <class Integer>
bool readWholeNumber(std::u16string_view text, Integer& number, int base = 10) {
  const std::string digits = Platform::wstringToString(wstring(text));
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, number, base);
  return result.ec == std::errc() && result.ptr == end;
}

/// Takes numbers and marks off the front of a text.
class TextScanner {
 public:
  explicit TextScanner(std::u16string_view text) : rest_(text) {}

  /// Takes the digits at the front.
  std::u16string_view digits(std::size_t most = std::u16string_view::npos) {
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), isDecimalDigit);
    return take(std::min(static_cast<std::size_t>(end - rest_.begin()), most));
  }
  /// Takes the digits at the front as a number; false, with none taken, when there are none or too many.
  template <class Integer>
  bool number(Integer& number) {
    const auto before = rest_;
    if (readWholeNumber(digits(), number)) return true;
    rest_ = before;
    return false;
  }
  /// Takes one of these code units off the front; 0 when another one is there.
  char16_t mark(std::u16string_view marks) {
    if (rest_.empty() || marks.find(rest_.front()) == std::u16string_view::npos) return 0;
    return take(1).front();
  }
  void skipSpaces() {
    while (mark(u" \t\n\r") != 0) {
    }
  }
  bool isAtEnd() const { return rest_.empty(); }
  std::u16string_view rest() const { return rest_; }

 private:
  std::u16string_view take(std::size_t units) {
    const auto taken = rest_.substr(0, units);
    rest_.remove_prefix(units);
    return taken;
  }

  std::u16string_view rest_;
};

}  // namespace Vantor::Types
