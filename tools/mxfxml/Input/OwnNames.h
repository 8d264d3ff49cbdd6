#pragma once

#include <string>

#include "Core/MetaMetadata/Dictionary.h"

namespace Vantor::Tool {

/// What to add to a message about a name that a dictionary lacks and the definitions of the file have:
/// "; 'X' is defined by the file's own dictionary: add --own-dictionary". Empty where they do not help.
/// @param own       null where the file defines nothing.
/// @param path      of sets (`SetPath`), valid.
/// @param property  of these sets; empty for none.
std::string ownNameHint(const MetaMetadata::Dictionary& used, const MetaMetadata::Dictionary* own,
                        const std::string& path, const std::string& property);

}  // namespace Vantor::Tool
