#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Core/Platform/Allocator.h"

namespace Vantor {

using int8 = std::int8_t;
using int16 = std::int16_t;
using int32 = std::int32_t;
using int64 = std::int64_t;
using uint8 = std::uint8_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;

/// The library's text: UTF-16 code units, on every platform 16 bits wide whatever `wchar_t` is there.
using wstring = std::basic_string<char16_t, std::char_traits<char16_t>, Platform::StdAllocator<char16_t>>;

/// The owner of one object that the core library hands over or takes.
template <class T>
using auto_ptr = std::unique_ptr<T>;

/// A shared, atomically counted owner; what it points at is released with the last copy.
template <class T>
using SharedPtr = std::shared_ptr<T>;

}  // namespace Vantor
