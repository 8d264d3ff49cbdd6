#pragma once

#include <cstddef>

#include "Core/Platform/Types.h"

namespace Vantor::XMLBuilder {

/// Bytes as text: two upper-case hexadecimal digits each, nothing between them.
wstring hexText(const uint8* bytes, std::size_t count);

}  // namespace Vantor::XMLBuilder
