#include "XMLUtils/InputFile.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <xercesc/sax/SAXException.hpp>

#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"

namespace Vantor::XMLUtils {

namespace {

[[noreturn]] void throwUnreadable(const wstring& path, const wstring& reason) {
  throw xercesc::SAXException((u"cannot read " + path + u": " + reason).c_str());
}

[[noreturn]] void throwUnreadable(const wstring& path) {
  throwUnreadable(path, Vantor::Utils::stringToWstring(std::generic_category().message(errno)));
}

}  // namespace

bool looksLikeXML(const Path& path) {
  std::array<char, 256> start{};
  std::ifstream file(path, std::ios::binary);
  file.read(start.data(), start.size());
  for (std::streamsize i = 0; i < file.gcount(); ++i) {
    const auto octet = static_cast<unsigned char>(start[static_cast<std::size_t>(i)]);
    const bool isMark = octet == 0xEF || octet == 0xBB || octet == 0xBF || octet == 0xFE || octet == 0xFF;
    if (octet != 0 && octet != ' ' && octet != '\t' && octet != '\r' && octet != '\n' && !isMark) return octet == '<';
  }
  return false;
}

Bytes readInputFile(const wstring& path) {
  constexpr std::size_t kChunk = std::size_t{1} << 20;
  const auto name = Platform::pathFromWstring(path);
  std::error_code error;
  if (std::filesystem::exists(name, error) && !std::filesystem::is_regular_file(name, error)) {
    errno = EISDIR;
    if (std::filesystem::is_directory(name, error)) throwUnreadable(path);
    throwUnreadable(path, u"it is no regular file, and a pipe or device may have no end; save it to a file first");
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
  }
  if (file.bad()) throwUnreadable(path);
  return bytes;
}

}  // namespace Vantor::XMLUtils
