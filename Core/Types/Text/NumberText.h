#pragma once

#include "Core/Platform/Numbers.h"
#include "Core/Types/Boolean.h"
#include "Core/Types/ScalarType.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/Text/TypeText.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

template <class Type>
wstring printNumber(const SimpleDataType& value) {
  return Platform::toDecimal(static_cast<const Type&>(value).value());
}

/// Decimal digits, or hexadecimal ones behind 0x.
template <class Type>
ParsedValue parseNumber(std::u16string_view text) {
  const auto word = trimmed(text);
  const bool isHex = word.size() > 2 && word[0] == u'0' && lowerCaseOf(word[1]) == u'x' && word[2] != u'-';
  decltype(Type().value()) number{};
  const bool isNumber = isHex ? readWholeNumber(word.substr(2), number, 16) : readWholeNumber(word, number);
  return isNumber ? ParsedValue(std::make_unique<Type>(number)) : ParsedValue();
}

/// "true" or "false".
wstring printBoolean(const SimpleDataType& value);
/// true, yes, on, 1 and their opposites, in any case.
ParsedValue parseBoolean(std::u16string_view text);

}  // namespace Vantor::Types
