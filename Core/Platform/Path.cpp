#include "Core/Platform/Path.h"

#include <utf8.h>

#include "Core/Platform/Strings.h"

namespace Vantor::Platform {

#ifdef _WIN32

wstring pathToWstring(const Path& path) {
  const auto& name = path.native();
  return {name.begin(), name.end()};
}

Path pathFromWstring(const wstring& name) { return std::wstring(name.begin(), name.end()); }

#else

namespace {

constexpr char16_t kFirstEscape = 0xDC00;
constexpr char16_t kLowestEscaped = 0x80;
constexpr char16_t kHighestEscaped = 0xFF;

bool isEscape(char16_t unit) { return unit >= kFirstEscape + kLowestEscaped && unit <= kFirstEscape + kHighestEscaped; }
bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit < kFirstEscape; }

}  // namespace

wstring pathToWstring(const Path& path) {
  const std::string& name = path.native();
  wstring text;
  for (auto at = name.begin(); at != name.end();) {
    const auto invalid = utf8::find_invalid(at, name.end());
    text += Utils::stringToWstring(std::string(at, invalid));
    at = invalid;
    if (at != name.end()) text += static_cast<char16_t>(kFirstEscape + static_cast<unsigned char>(*at++));
  }
  return text;
}

Path pathFromWstring(const wstring& name) {
  std::string octets;
  for (std::size_t at = 0; at < name.size();) {
    std::size_t end = at;
    while (end < name.size() && (!isEscape(name[end]) || (end > at && isHighSurrogate(name[end - 1])))) ++end;
    octets += Utils::wstringToString(name.substr(at, end - at));
    at = end;
    if (at < name.size()) octets += static_cast<char>(name[at++] - kFirstEscape);
  }
  return octets;
}

#endif

std::string pathToUTF8(const Path& path) {
  const auto name = path.u8string();  // of char8_t from C++20 on
  return {name.begin(), name.end()};
}

Path pathFromUTF8(const std::string& name) {
#ifdef __cpp_lib_char8_t
  return std::u8string(name.begin(), name.end());
#else
  return std::filesystem::u8path(name);
#endif
}

}  // namespace Vantor::Platform
