#pragma once

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// All bytes of a file that a document is to be read from.
/// @param path  see `Platform::pathFromWstring`.
/// @throws xercesc::SAXException naming the path and the system's reason when it is no file that can be read.
Bytes readInputFile(const wstring& path);

}  // namespace Vantor::XMLUtils
