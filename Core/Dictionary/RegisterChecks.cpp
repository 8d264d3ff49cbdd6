#include "Core/Dictionary/RegisterChecks.h"

#include <algorithm>
#include <charconv>

namespace Vantor {

namespace {

constexpr const char* kSource = "Core/Dictionary/RegisterChecks";

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSymbolStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool isSymbolRest(char c) { return isSymbolStart(c) || isDigit(c) || c == '-' || c == '.'; }

bool isSymbol(const std::string& text) {
  return !text.empty() && isSymbolStart(text.front()) && std::all_of(text.begin(), text.end(), isSymbolRest);
}

bool isNumber(const std::string& text) {
  int64 number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

const std::string& checkedSymbol(const Registers& registers, const std::string& symbol, const Origin& origin) {
  if (isSymbol(symbol)) return symbol;
  registers.refuse(
      origin, "'" + symbol + "' is no symbol; begin with a letter or '_' and go on with these, digits, '-' and '.'",
      kSource, __LINE__);
}

const std::string& checkedNumber(const Registers& registers, const std::string& number, const Origin& origin) {
  if (isNumber(number)) return number;
  registers.refuse(origin, "the value '" + number + "' of an enumeration is no number; write a decimal number", kSource,
                   __LINE__);
}

}  // namespace Vantor
