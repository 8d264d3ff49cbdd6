#pragma once

#include "Terminal/Terminal.h"
#include "Terminal/TreeText.h"

namespace Vantor::Tool {

/// How to show trees on standard output as it is.
inline TreeStyle treeStyleFor(ColorChoice color) { return {terminalColumns(), takesUTF8(), wantsColor(color), false}; }

/// What stands before the target of a reference.
inline const char* arrowOf(const TreeStyle& style) { return style.hasBoxes ? "→" : "->"; }

}  // namespace Vantor::Tool
