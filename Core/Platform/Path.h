#pragma once

#include <filesystem>
#include <string>

#include "Core/Platform/Types.h"

namespace Vantor {

/// The name of a file, in the system's own encoding.
using Path = std::filesystem::path;

namespace Platform {

/// The name of a file as UTF-16. Where names are octets, those that are no UTF-8 become the code units U+DC80 to
/// U+DCFF, which no text has alone, so that every name comes back.
wstring pathToWstring(const Path& path);
Path pathFromWstring(const wstring& name);

/// The name of a file as UTF-8, whatever character type a standard gives it. Where names are octets, these are they.
std::string pathToUTF8(const Path& path);
Path pathFromUTF8(const std::string& name);

}  // namespace Platform

}  // namespace Vantor
