#include "Core/Comparison/ValueText.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "Core/Types/Visitors.h"

namespace Vantor {

namespace {

constexpr std::size_t kMostOctets = 32;
constexpr std::size_t kMostUnits = 80;
constexpr uint32 kMostItems = 4;

std::string sizeText(std::size_t size, const char* unit) { return "... (" + std::to_string(size) + " " + unit + ")"; }

std::string paddedText(const char* format, unsigned number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), format, number);
  return text.data();
}

bool isControl(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7f && unit < 0xa0) || unit == 0x2028 || unit == 0x2029;
}

wstring escaped(std::u16string_view text) {
  wstring result;
  for (const char16_t unit : text) {
    if (isControl(unit)) {
      result += Platform::stringToWstring("\\u" + Platform::hexNumber<std::string>(static_cast<uint16>(unit)));
    } else {
      if (unit == u'"' || unit == u'\\') result += u'\\';
      result += unit;
    }
  }
  return result;
}

std::string quoted(const wstring& text) {
  std::size_t units = std::min(text.size(), kMostUnits);
  if (units < text.size() && text[units] >= 0xdc00 && text[units] < 0xe000) --units;  // no half of a character
  const std::string shown = "\"" + Utils::wstringToString(escaped({text.data(), units})) + "\"";
  return units == text.size() ? shown : shown + sizeText(text.size(), "code units");
}

std::string textOf(const Types::SimpleDataType& value) { return octetsText(value.rawBuffer(), value.encodedSize()); }

template <class Derived, class Number>
std::string textOf(const Types::ScalarType<Derived, Number>& value) {
  return std::to_string(value.value());
}

template <class Derived>
std::string textOf(const Types::IdentifierType<Derived>& value) {
  return Utils::wstringToString(value.toString(kDottedForm));
}

std::string textOf(const Types::Boolean& value) { return value.value() ? "true" : "false"; }
std::string textOf(const Types::NarrowString& value) { return quoted(Platform::stringToWstring(value.value())); }
std::string textOf(const Types::WideString& value) { return quoted(Platform::utf16ToWstring(value.value())); }
std::string textOf(const Types::Reference& value) { return Utils::wstringToString(value.toString()); }

std::string textOf(const Types::Rational& value) {
  return std::to_string(value.numerator()) + "/" + std::to_string(value.denominator());
}

std::string textOf(const Types::VersionType& value) {
  return std::to_string(value.major()) + "." + std::to_string(value.minor());
}

std::string textOf(const Types::ProductVersion& value) {
  return std::to_string(value.major()) + "." + std::to_string(value.minor()) + "." + std::to_string(value.patch()) +
         "." + std::to_string(value.build()) + "." + std::to_string(static_cast<uint16>(value.releaseVersion()));
}

std::string textOf(const Types::Timestamp& value) {
  return paddedText("%04u-", value.year()) + paddedText("%02u-", value.month()) + paddedText("%02uT", value.day()) +
         paddedText("%02u:", value.hour()) + paddedText("%02u:", value.minute()) + paddedText("%02u.", value.second()) +
         paddedText("%03u", value.milliSecond());
}

std::string textOf(const Types::Collection& value) {
  const uint32 shown = std::min(value.size(), kMostItems);
  std::string text;
  for (uint32 i = 0; i < shown; ++i) text += (i == 0 ? "" : ", ") + valueText(value.at(i));
  if (shown < value.size()) text += sizeText(value.size(), "items");
  return "[" + text + "]";
}

/// Finds the text of each type by overload, so that a type that is added to the list is shown too.
class TextVisitor : public Types::Visitors::Visitor {
 public:
#define VANTOR_VISIT_TEXT(Type, number, octets) \
  void visit(const Types::Type& value) override { text = textOf(value); }
  VANTOR_FOR_EACH_TYPE(VANTOR_VISIT_TEXT)
#undef VANTOR_VISIT_TEXT
  std::string text;
};

}  // namespace

std::string valueText(const Types::SimpleDataType& value) {
  TextVisitor visitor;
  value.accept(visitor);
  return std::move(visitor.text);
}

std::string octetsText(const uint8* octets, std::size_t size) {
  if (size == 0) return "no octets";
  const auto text = Platform::hexText<std::string>(octets, std::min(size, kMostOctets));
  return size <= kMostOctets ? text : text + sizeText(size, "octets");
}

}  // namespace Vantor
