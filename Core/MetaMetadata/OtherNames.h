#pragma once

#include <string_view>
#include <vector>

namespace Vantor::MetaMetadata {

/// The symbols of what people have other words for: those that ffprobe and mediainfo print, and those of delivery
/// specifications. They are hints for messages; no look-up takes them for names.
/// @param name  whatever its case, punctuation and blanks do not count: "product_version", "Frame rate".
/// @return symbols of sets and properties in the built-in dictionary, the likeliest first; none for any other name.
std::vector<std::string_view> symbolsMeantBy(std::string_view name);

}  // namespace Vantor::MetaMetadata
