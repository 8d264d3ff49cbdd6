#pragma once

#include <string>
#include <string_view>

#include "Core/Dictionary/Definitions.h"

namespace Vantor {

/// Writes definitions in the dictionary format: enumerations, sets with their properties, labels. Chosen namespaces
/// stand above the first definition that is in them.
/// @param comment  one line that names what the definitions were made from.
/// @param first    the place in `Definitions::sources()` from which on to write: what comes from earlier sources is
/// left
///                 out, and the properties that their sets got later are written as extensions.
std::string textOf(const Definitions& definitions, std::string_view comment, uint32 first = 0);

}  // namespace Vantor
