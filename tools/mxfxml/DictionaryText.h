#pragma once

#include <string>

#include "Core/Dictionary/Definitions.h"

/// Definitions as text for people.
namespace Vantor::Tool {

/// A row for every set: symbol, key, parent, and whether it is abstract.
std::string listOfSets(const Definitions& definitions);

/// A name without the prefix that documents have.
std::string withoutPrefix(const std::string& name);

/// Everything with this symbol, name in XML or common name, this key, or this static local tag.
/// @param asked  a key or a tag in a spelling of `KLV::identifierDigits`, or a name, with or without a prefix.
/// @return empty when there is nothing.
std::string descriptionOf(const Definitions& definitions, const std::string& asked);

/// The name of a label in the definitions, or else among the built-in ones; empty when neither has it.
std::string labelName(const Definitions& definitions, const Types::UniversalLabel& label);

}  // namespace Vantor::Tool
