#pragma once

#include <string>

namespace Vantor::Tool {

/// What a piece of text is, by which it has a colour. All of them can be read on dark and on light.
enum class Style { kPlain, kName, kDim, kReference, kMark, kAdded, kRemoved, kChanged };

/// The text with the codes of its colour (ECMA-48) around it, where there are colours.
std::string styled(const std::string& text, Style style, bool hasColor);

}  // namespace Vantor::Tool
