#pragma once

#include <string>

#include "Core/Types/UniversalLabel.h"

namespace Vantor::Tool {

/// The common name of an operational pattern's label: "OP1a" to "OP3c" (ST 377-1), "OP-Atom" (ST 390), "specialized
/// pattern" for others that ST 377-1 leaves room for, "unknown pattern" for anything else.
std::string operationalPatternName(const Types::UniversalLabel& label);

}  // namespace Vantor::Tool
