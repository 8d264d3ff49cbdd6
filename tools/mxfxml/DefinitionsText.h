#pragma once

#include <string>
#include <string_view>

#include "Core/Dictionary/Definitions.h"

namespace Vantor {

/// Writes definitions in the dictionary format: enumerations, sets with their properties, labels. Chosen namespaces are
/// left out, since the registers have none.
/// @param comment  one line that names what the definitions were made from.
std::string textOf(const Definitions& definitions, std::string_view comment);

}  // namespace Vantor
