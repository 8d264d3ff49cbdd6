#pragma once

#include <list>
#include <vector>

#include "Core/Platform/Types.h"

namespace Vantor {

/// Standard containers whose memory comes from one of the core library's allocation policies.
namespace Templates {

template <class T, class Policy = Platform::malloc_alloc>
using list = std::list<T, Platform::StdAllocator<T, Policy>>;

template <class T, class Policy = Platform::malloc_alloc>
using vector = std::vector<T, Platform::StdAllocator<T, Policy>>;

}  // namespace Templates

/// A run of octets as they stand in a file.
using Bytes = Templates::vector<uint8>;

}  // namespace Vantor
