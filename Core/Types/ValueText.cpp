#include "Core/Types/ValueText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <string>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/Types.h"

namespace Vantor::Types {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

constexpr std::size_t kShownUnits = 40;
constexpr std::u16string_view kWhiteSpace = u" \t\n\r";

bool isWhiteSpace(char16_t unit) { return kWhiteSpace.find(unit) != std::u16string_view::npos; }

wstring hexText(const SimpleDataType& value) {
  return Platform::hexText<wstring>(value.rawBuffer(), value.encodedSize());
}

// The text of a value, by overload, so that a type that is added to the list has one.

wstring textOf(const SimpleDataType& value) { return hexText(value); }
template <class Derived, class Number>
wstring textOf(const ScalarType<Derived, Number>& value) {
  return Platform::toDecimal(value.value());
}
template <class Derived>
wstring textOf(const IdentifierType<Derived>& value) {
  return value.toString(kDottedForm);
}
wstring textOf(const Boolean& value) { return value.value() ? u"1" : u"0"; }
wstring textOf(const UTF16& value) { return wstring(value.value() == 0 ? 0 : 1, static_cast<char16_t>(value.value())); }
wstring textOf(const NarrowString& value) { return Platform::stringToWstring(value.value()); }
wstring textOf(const WideString& value) { return Platform::utf16ToWstring(value.value()); }
wstring textOf(const Reference& value) { return value.toString(); }

class TextVisitor : public Visitors::Visitor {
 public:
#define VANTOR_VISIT_TEXT(Type, number, octets) \
  void visit(const Type& value) override { text = textOf(value); }
  VANTOR_FOR_EACH_TYPE(VANTOR_VISIT_TEXT)
#undef VANTOR_VISIT_TEXT
  wstring text;
};

// What `checkedText` does, by overload on a null pointer to the type.

template <class Number>
wstring checkedNumber(std::u16string_view text) {
  using Limits = std::numeric_limits<Number>;
  const auto word = trimmed(text);
  Number number{};
  if (readWholeNumber(word, number)) return wstring(word);
  raise<InvalidFormat>("{} is no whole number from {} to {}", excerpt(text), Limits::min(), Limits::max());
}

wstring checkedHex(std::u16string_view text) {
  wstring digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits), [](char16_t unit) { return !isWhiteSpace(unit); });
  if (!std::all_of(digits.begin(), digits.end(), [](char16_t unit) { return Platform::hexDigit(unit) >= 0; })) {
    raise<InvalidFormat>("{} is no run of octets: these are hexadecimal digits, two to an octet", excerpt(text));
  }
  if (digits.size() % 2 == 0) return digits;
  raise<InvalidFormat>("{} is no run of octets: the last of them lacks its second digit", excerpt(text));
}

wstring checked(const SimpleDataType*, std::u16string_view text) { return wstring(text); }
template <class Derived, class Number>
wstring checked(const ScalarType<Derived, Number>*, std::u16string_view text) {
  return checkedNumber<Number>(text);
}
wstring checked(const VersionType*, std::u16string_view text) { return checkedNumber<uint16>(text); }
template <class Derived>
wstring checked(const ByteString<Derived>*, std::u16string_view text) {
  return checkedHex(text);
}

template <class Derived>
wstring checked(const IdentifierType<Derived>*, std::u16string_view text) {
  const auto word = trimmed(text);
  if (std::none_of(word.begin(), word.end(), isWhiteSpace)) return wstring(word);
  raise<InvalidFormat>("{} is more than one identifier", excerpt(text));
}

wstring checked(const Boolean*, std::u16string_view text) {
  const auto word = trimmed(text);
  if (word == u"0" || word == u"false") return u"0";
  if (word == u"1" || word == u"true") return u"1";
  raise<InvalidFormat>("{} is neither 0 nor 1, neither false nor true", excerpt(text));
}

wstring checked(const UTF16*, std::u16string_view text) {
  if (text.size() > 1) raise<InvalidFormat>("{} is not one UTF-16 code unit", excerpt(text));
  return wstring(text);
}

template <class Derived>
wstring checked(const NarrowStringType<Derived>*, std::u16string_view text) {
  if (std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= Derived::kHighest; })) {
    return wstring(text);
  }
  raise<InvalidFormat>("{} is no ISO {}-bit text: it has characters that this encoding lacks", excerpt(text),
                       Derived::kHighest == 0x7f ? 7 : 8);
}

template <class Type>
const Type* kindOf() {
  return nullptr;
}

}  // namespace

wstring textOfValue(const SimpleDataType& value) {
  TextVisitor visitor;
  value.accept(visitor);
  return std::move(visitor.text);
}

auto_ptr<SimpleDataType> emptyValue(Identifiers::Identifier type) {
  using namespace Identifiers;
  constexpr std::array kTypes = {kUTF16String, kUTF8String, kISO7String, kISO8String,
                                 kDataStream,  kDataValue,  kUnknown};
  if (type == kUTF16) return std::make_unique<UTF16>();
  const bool hasOne = std::find(kTypes.begin(), kTypes.end(), type) != kTypes.end();
  return hasOne ? Factories::fromBytes(type, nullptr, 0) : nullptr;
}

std::u16string_view trimmed(std::u16string_view text) {
  const auto begin = text.find_first_not_of(kWhiteSpace);
  if (begin == std::u16string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kWhiteSpace) - begin + 1);
}

wstring excerpt(std::u16string_view text) {
  const wstring shown(text.substr(0, kShownUnits));
  return u"'" + shown + (text.size() > kShownUnits ? u"...'" : u"'");
}

wstring checkedText(Identifiers::Identifier type, std::u16string_view text) {
  switch (type) {
#define VANTOR_CHECK_CASE(Type, number, octets) \
  case Identifiers::k##Type:                    \
    return checked(kindOf<Type>(), text);
    VANTOR_FOR_EACH_TYPE(VANTOR_CHECK_CASE)
#undef VANTOR_CHECK_CASE
    case Identifiers::kNone:
      break;
  }
  return wstring(text);
}

wstring quotedText(std::u16string_view text) {
  const auto isControl = [](char16_t unit) {
    return unit < 0x20 || (unit >= 0x7f && unit < 0xa0) || unit == 0x2028 || unit == 0x2029;
  };
  wstring result = u"\"";
  for (const char16_t unit : text) {
    if (isControl(unit)) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04X", unsigned{unit});
      result += Platform::stringToWstring(escape.data());
    } else {
      if (unit == u'"' || unit == u'\\') result += u'\\';
      result += unit;
    }
  }
  return result + u'"';
}

}  // namespace Vantor::Types
