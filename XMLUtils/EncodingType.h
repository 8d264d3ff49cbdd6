#pragma once

#include <cstdint>

namespace Vantor {
namespace XMLUtils {

/// How a document is written. The names with "Indented" put every element on a line of its own, two spaces per level.
/// The numbers are part of the binary interface.
enum class EncodingType : int { kUTF8 = 0, kUTF8Indented = 1, kUTF16 = 2, kUTF16Indented = 3 };

inline bool isUTF16(EncodingType encoding) {
  return encoding == EncodingType::kUTF16 || encoding == EncodingType::kUTF16Indented;
}

}  // namespace XMLUtils
}  // namespace Vantor
