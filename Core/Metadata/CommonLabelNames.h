#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Names that people know labels by and the register of labels (ST 400) does not have: those that ffprobe and MediaInfo
/// print for colors, and the tag symbols that ST 377-4 gives to audio channels and soundfield groups.
namespace Vantor {

/// The symbols of the labels with a common name, one for each kind of property. Case and punctuation do not count.
/// An empty symbol stands for a name that several labels share in common use, which therefore means none of them.
std::vector<std::string_view> symbolsOfCommonName(std::string_view name);

}  // namespace Vantor
