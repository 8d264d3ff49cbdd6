#pragma once

#include "Core/Types/UniversalLabel.h"

namespace Vantor::MXF {

/// Whether a label is one of operational patterns (ST 377-1), whichever.
bool isOperationalPattern(const Types::UniversalLabel& label);

/// Whether a pattern asks for all essence, and so for all packages that have some, in the file itself. OP-Atom (ST 390)
/// and the patterns with external essence do not.
bool hasInternalEssence(const Types::UniversalLabel& pattern);

}  // namespace Vantor::MXF
