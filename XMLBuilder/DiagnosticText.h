#pragma once

#include "LosslessXML.h"

namespace Vantor::LosslessXML {

/// What a diagnostic means, without its place.
std::string textOf(const Diagnostic& diagnostic);

}  // namespace Vantor::LosslessXML
