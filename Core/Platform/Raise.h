#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Core/Platform/Exceptions.h"

/// The one way to throw: `raise<Exceptions::ParseError>("the set {} ends at offset {}", name, offset)`.
namespace Vantor::Exceptions {

/// The source and the line that an exception reports as its origin.
struct SourcePlace {
  const char* file;
  int line;
};

/// A format of libfmt whose replacement fields are all `{}` or numbered, and the place in the source that it stands at.
class Format {
 public:
  // The compiler fills in file and line where the format is written.
  Format(const char* text, const char* file = __builtin_FILE(), int line = __builtin_LINE())
      : text_(text), place_{file, line} {}
  /// A place that callers rely on instead.
  Format(const char* text, SourcePlace place) : text_(text), place_(place), isFixed_(true) {}

  const char* text() const { return text_; }
  /// The source's name from the root of the repository, without extension; a place that callers rely on as it stands.
  std::string file() const;
  int line() const { return place_.line; }

 private:
  const char* text_;
  SourcePlace place_;
  bool isFixed_ = false;
};

inline std::string argumentText(std::string text) { return text; }
inline std::string argumentText(std::string_view text) { return std::string(text); }
inline std::string argumentText(const char* text) { return text; }
std::string argumentText(const wstring& text);
template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
std::string argumentText(Number number) {
  static_assert(!std::is_same_v<Number, bool> && !std::is_same_v<Number, char>, "say what it is in words");
  return std::to_string(number);
}

/// The message of a format with its arguments.
std::string formatted(const char* format, const std::vector<std::string>& arguments);

/// Throws an exception of the kind, which keeps the format and the arguments beside its message.
template <class Kind, class... Arguments>
[[noreturn]] void raise(const Format& format, const Arguments&... arguments) {
  std::vector<std::string> texts = {argumentText(arguments)...};
  Kind exception(formatted(format.text(), texts), format.file(), format.line());
  exception.setDetails(format.text(), std::move(texts));
  throw exception;
}

}  // namespace Vantor::Exceptions
