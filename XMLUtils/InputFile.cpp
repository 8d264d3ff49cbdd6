#include "XMLUtils/InputFile.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <xercesc/sax/SAXException.hpp>

#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"

namespace Vantor::XMLUtils {

using namespace std::string_view_literals;

namespace {

[[noreturn]] void throwUnreadable(const wstring& path,
                                  const std::string& reason = std::generic_category().message(errno)) {
  throw xercesc::SAXException((u"cannot read " + path + u": " + Vantor::Utils::stringToWstring(reason)).c_str());
}

}  // namespace

bool looksLikeXML(const Path& path) {
  std::array<char, 256> start{};
  std::ifstream file(path, std::ios::binary);
  file.read(start.data(), start.size());
  return startsLikeXML(std::string_view(start.data(), static_cast<std::size_t>(file.gcount())));
}

bool startsLikeXML(std::string_view start) {
  const auto first = start.find_first_not_of("\0 \t\r\n\xEF\xBB\xBF\xFE\xFF"sv);
  return first != start.npos && start[first] == '<';
}

Bytes readInputFile(const wstring& path, const Limits& limits) {
  constexpr std::size_t kChunk = std::size_t{1} << 20;
  const auto name = Platform::pathFromWstring(path);
  std::error_code error;
  if (std::filesystem::exists(name, error) && !std::filesystem::is_regular_file(name, error)) {
    errno = EISDIR;
    if (std::filesystem::is_directory(name, error)) throwUnreadable(path);
    throwUnreadable(path, "it is no regular file, and a pipe or device may have no end; save it to a file first");
  }
  errno = 0;
  std::ifstream file(name, std::ios::binary);
  if (!file) throwUnreadable(path);
  Bytes bytes;
  while (file) {
    const auto size = bytes.size();
    bytes.resize(size + kChunk);
    file.read(reinterpret_cast<char*>(bytes.data() + size), kChunk);
    bytes.resize(size + static_cast<std::size_t>(file.gcount()));
    if (bytes.size() > limits.documentSize) refuseBeyond(&Limits::documentSize, limits.documentSize);
  }
  if (file.bad()) throwUnreadable(path);
  return bytes;
}

}  // namespace Vantor::XMLUtils
