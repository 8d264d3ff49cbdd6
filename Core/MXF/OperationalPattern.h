#pragma once

#include <string>

#include "Core/Types/UniversalLabel.h"

namespace Vantor::MXF {

/// Whether a label is one of operational patterns (ST 377-1), whichever.
bool isOperationalPattern(const Types::UniversalLabel& label);

/// The common name of an operational pattern's label: "OP1a" to "OP3c" (ST 377-1), "OP-Atom" (ST 390), "specialized
/// pattern" for others that ST 377-1 leaves room for, "unknown pattern" for anything else.
std::string operationalPatternName(const Types::UniversalLabel& label);

/// Whether a pattern asks for all essence, and so for all packages that have some, in the file itself. OP-Atom (ST 390)
/// and the patterns with external essence do not.
bool hasInternalEssence(const Types::UniversalLabel& pattern);

}  // namespace Vantor::MXF
