#pragma once

#include <string>
#include <string_view>

#include "Core/Types/SimpleDataType.h"

/// Values as people write them: one row for each type, of how it is read and printed, with an example. Documents have
/// forms of their own (Core/Types/ValueText.h).
namespace Vantor::Types {

/// What a text is as a value of some type.
struct ParsedValue {
  template <class Type>
  ParsedValue(auto_ptr<Type> read)  // NOLINT(google-explicit-constructor): a value is a result
      : value(std::move(read)) {}
  /// No value, for a reason: "the hour is beyond 23". Without one, the text has just another form.
  explicit ParsedValue(std::string why = {}) : reason(std::move(why)) {}

  auto_ptr<SimpleDataType> value;  ///< null when the text is none
  std::string reason;
  bool hasExamples = false;  ///< whether the reason lists what may be meant, so that no other examples are needed
};

/// One row: how people write the values of a type. `docs/values.md` lists what is read.
struct TypeText {
  Identifiers::Identifier type;
  const char* noun;      ///< completes "'x' is not "
  const char* examples;  ///< completes "; for example "; each is read
  /// The whole value, which `parse` reads back as the same octets; texts without their final NULs.
  wstring (*print)(const SimpleDataType& value);
  /// Ignores white space around everything but texts.
  ParsedValue (*parse)(std::u16string_view text);
};

/// The examples of a UUID.
inline constexpr const char* kUUIDExamples =
    "urn:uuid:5a1fbd9c-3a52-4cd2-9e3f-0123456789ab or 5A.1F.BD.9C.3A.52.4C.D2.9E.3F.01.23.45.67.89.AB";

/// The row of a type; null for kArray, kBatch and kNone.
const TypeText* typeText(Identifiers::Identifier type);

/// The text of a value; collections as "[a, b]", with texts in quotes.
wstring printValue(const SimpleDataType& value);

/// The value that a text is. White space around everything but texts is ignored.
/// @throws InvalidFormat "'x' is not a rate; for example 25, 30000/1001 or 29.97"; always for kArray, kBatch and kNone.
auto_ptr<SimpleDataType> parseValue(Identifiers::Identifier type, std::u16string_view text);

/// Throws what `parseValue` throws.
/// @param reason    follows in parentheses; may be empty.
/// @param examples  as in a row; may be empty.
[[noreturn]] void refuseText(std::u16string_view text, std::string_view noun, std::string_view reason,
                             std::string_view examples);

}  // namespace Vantor::Types
