#pragma once

#include <string_view>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// Reads all bytes of a file.
/// @param path  see `Platform::pathFromWstring`.
/// @throws Exceptions::LimitExceeded beyond `limits.documentSize`; xercesc::SAXException naming the path and the
/// system's reason when it cannot be read.
Bytes readInputFile(const wstring& path, const Limits& limits = {});

/// Whether a file looks like XML rather than a dictionary or an MXF file: its first byte is '<', apart from white
/// space, a byte order mark and the zeros of UTF-16 units. False for a file that cannot be read.
bool looksLikeXML(const Path& path);
/// The same for the first bytes of one.
bool startsLikeXML(std::string_view start);

}  // namespace Vantor::XMLUtils
