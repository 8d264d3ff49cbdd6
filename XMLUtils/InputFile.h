#pragma once

#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// All bytes of a file that a document is to be read from.
/// @param path  see `Platform::pathFromWstring`.
/// @throws xercesc::SAXException naming the path and the system's reason when it is no file that can be read.
Bytes readInputFile(const wstring& path);

/// Whether a file is XML rather than something else that has markup nowhere near its start, a dictionary or an MXF
/// file: whether its first octet that is no white space, and no part of a byte order mark or a UTF-16 unit, begins
/// markup. A file that cannot be read is none.
bool looksLikeXML(const Path& path);

}  // namespace Vantor::XMLUtils
