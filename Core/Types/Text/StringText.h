#pragma once

#include "Core/Types/NarrowStringType.h"
#include "Core/Types/Text/TypeText.h"
#include "Core/Types/WideStringType.h"

namespace Vantor::Types {

/// Whether values of the type are texts: strings, and a UTF16.
bool isTextType(Identifiers::Identifier type);

/// Takes a text as `quotedText` writes it off the front; false, with `rest` and `text` unspecified, when there is none.
bool takeQuoted(std::u16string_view& rest, wstring& text);

/// A text as it is, but for one that is a quoted text as a whole, which is quoted once more.
wstring printString(const SimpleDataType& value);
/// The text that a value is made of: that in the quotes of a text that is quoted as a whole, any other as it is.
/// @param reason  why it is none: it holds a NUL, at which values end, or a code unit above `highest`.
bool readString(std::u16string_view text, char16_t highest, wstring& string, std::string& reason);

/// In quotes, but for a unit that needs none.
wstring printCodeUnit(const SimpleDataType& value);
ParsedValue parseCodeUnit(std::u16string_view text);

template <class Type>
ParsedValue parseNarrowString(std::u16string_view text) {
  wstring string;
  ParsedValue parsed;
  const bool isRead = readString(text, Type::kHighest, string, parsed.reason);
  if (isRead) parsed.value = std::make_unique<Type>(Platform::wstringToString(string));
  return parsed;
}

template <class Type>
ParsedValue parseWideString(std::u16string_view text) {
  wstring string;
  ParsedValue parsed;
  const bool isRead = readString(text, 0xffff, string, parsed.reason);
  if (isRead) parsed.value = std::make_unique<Type>(string);
  return parsed;
}

}  // namespace Vantor::Types
