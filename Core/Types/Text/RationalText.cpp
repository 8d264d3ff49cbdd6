#include "Core/Types/Text/RationalText.h"

#include <array>
#include <limits>
#include <numeric>
#include <optional>

#include "Core/Platform/Numbers.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

constexpr std::size_t kMostDecimals = 9;

wstring printQuotient(const Rational& value, char16_t mark) {
  return Platform::toDecimal(value.numerator()) + mark + Platform::toDecimal(value.denominator());
}

/// Of "29.97" the number 2997 and the divisor 100.
struct Decimal {
  uint64 number = 0;
  uint64 divisor = 1;
};

std::optional<Decimal> decimalIn(std::u16string_view text) {
  TextScanner scanner(text);
  Decimal decimal;
  const auto whole = scanner.digits();
  const bool hasPoint = scanner.mark(u".") != 0;
  const auto decimals = scanner.digits();
  if (whole.empty() || !hasPoint || decimals.empty() || !scanner.isAtEnd()) return std::nullopt;
  if (whole.size() > kMostDecimals || decimals.size() > kMostDecimals) return std::nullopt;
  for (const char16_t digit : wstring(whole) + wstring(decimals)) decimal.number = decimal.number * 10 + (digit - u'0');
  for (std::size_t i = 0; i < decimals.size(); ++i) decimal.divisor *= 10;
  return decimal;
}

/// Whether the decimal is `base` * 1000 / 1001, cut or rounded to its digits.
bool isSlowed(const Decimal& decimal, uint64 base) {
  const uint64 scaled = base * 1000 * decimal.divisor;
  return decimal.divisor >= 100 && (decimal.number == scaled / 1001 || decimal.number == (scaled * 2 + 1001) / 2002);
}

auto_ptr<Rational> rationalOf(const Decimal& decimal) {
  constexpr uint64 kMost = std::numeric_limits<int32>::max();
  for (const uint64 base : {24u, 30u, 48u, 60u, 72u, 96u, 120u}) {
    if (isSlowed(decimal, base)) return std::make_unique<Rational>(static_cast<int32>(base * 1000), 1001);
  }
  const uint64 divisor = std::gcd(decimal.number, decimal.divisor);
  const uint64 numerator = decimal.number / divisor, denominator = decimal.divisor / divisor;
  if (numerator > kMost || denominator > kMost) return nullptr;
  return std::make_unique<Rational>(static_cast<int32>(numerator), static_cast<int32>(denominator));
}

/// A whole number as a decimal, too; of few digits, so that products fit.
std::optional<Decimal> shortDecimalIn(std::u16string_view text) {
  if (text.size() > kMostDecimals) return std::nullopt;
  Decimal whole;
  return readWholeNumber(text, whole.number) ? whole : decimalIn(text);
}

/// The quotient of "1.85:1"; null for other texts.
auto_ptr<Rational> quotientOf(std::u16string_view left, std::u16string_view right) {
  const auto numerator = shortDecimalIn(left), denominator = shortDecimalIn(right);
  if (!numerator || !denominator || denominator->number == 0) return nullptr;
  const uint64 above = numerator->number * denominator->divisor, below = denominator->number * numerator->divisor;
  const uint64 divisor = std::gcd(above, below);
  constexpr uint64 kMost = std::numeric_limits<int32>::max();
  if (above / divisor > kMost || below / divisor > kMost) return nullptr;
  return std::make_unique<Rational>(static_cast<int32>(above / divisor), static_cast<int32>(below / divisor));
}

}  // namespace

wstring printRational(const SimpleDataType& value) {
  const auto& rational = static_cast<const Rational&>(value);
  return rational.denominator() == 1 ? Platform::toDecimal(rational.numerator()) : printQuotient(rational, u'/');
}

wstring printRatio(const SimpleDataType& value) { return printQuotient(static_cast<const Rational&>(value), u':'); }

ParsedValue parseRational(std::u16string_view text) {
  const auto word = trimmed(text);
  if (const auto decimal = decimalIn(word)) return rationalOf(*decimal);
  const auto mark = word.find_first_of(u"/:");
  if (mark != std::u16string_view::npos && word.find(u'.') != std::u16string_view::npos) {
    return quotientOf(trimmed(word.substr(0, mark)), trimmed(word.substr(mark + 1)));
  }
  int32 numerator = 0;
  int32 denominator = 1;
  if (!readWholeNumber(trimmed(word.substr(0, mark)), numerator)) return ParsedValue();
  if (mark == std::u16string_view::npos) return std::make_unique<Rational>(numerator, denominator);
  if (!readWholeNumber(trimmed(word.substr(mark + 1)), denominator)) return ParsedValue();
  return std::make_unique<Rational>(numerator, denominator);
}

}  // namespace Vantor::Types
