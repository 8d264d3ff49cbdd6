#pragma once

#include <string>

namespace Vantor::Tool {

/// The version of the program, the edition of the registers that it has built in, and the XML libraries in use, a line
/// each.
std::string versionText();

}  // namespace Vantor::Tool
