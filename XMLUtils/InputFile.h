#pragma once

#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// All bytes of a file that a document is to be read from.
/// @param path  see `Platform::pathFromWstring`.
/// @throws xercesc::SAXException naming the path and the system's reason when it cannot be read.
Bytes readInputFile(const wstring& path);

/// Whether a file looks like XML rather than a dictionary or an MXF file: its first octet that is neither white space
/// nor part of a byte order mark or a UTF-16 unit is '<'. False for a file that cannot be read.
bool looksLikeXML(const Path& path);

}  // namespace Vantor::XMLUtils
