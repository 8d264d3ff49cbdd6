#pragma once

#include "LosslessXML.h"

namespace Vantor::LosslessXML {

/// The English of a diagnostic, without its place.
std::string textOf(const Diagnostic& diagnostic);

}  // namespace Vantor::LosslessXML
