#pragma once

#include "Core/Platform/Types.h"

namespace Vantor::Tool {

/// The size of a document in bytes as the functions take it that read documents.
/// @throws CommandError with the size when it is over 4,294,967,295 bytes, of which they would read a part.
uint32 documentSize(uint64 bytes);

}  // namespace Vantor::Tool
