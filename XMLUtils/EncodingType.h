#pragma once

#include <cstdint>

namespace Vantor {
namespace XMLUtils {

/// How a document is written. The names with "Indented" put every element on a line of its own, two spaces per level.
/// The numbers are part of the binary interface.
enum class EncodingType : int { kUTF8 = 0, kUTF8Indented = 1, kUTF16 = 2, kUTF16Indented = 3 };

}  // namespace XMLUtils
}  // namespace Vantor
