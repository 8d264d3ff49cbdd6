#pragma once

#include <string>

#include "Core/Dictionary/Definitions.h"

/// Definitions as text for people.
namespace Vantor::Tool {

/// A row for every set: symbol, key, parent, and whether it is abstract.
std::string listOfSets(const Definitions& definitions);

/// Everything with this symbol or name in XML, this key, or this static local tag.
/// @param asked  a key as `parseRegisterKey` takes it, four hexadecimal digits, perhaps behind "0x", or a name, with or
///        without a prefix.
/// @return empty when there is nothing.
std::string descriptionOf(const Definitions& definitions, const std::string& asked);

/// The names that differ from this one in case only, for a message; empty when there are none.
std::string similarNames(const Definitions& definitions, const std::string& wanted);

/// The name of a label in the definitions, or else among the built-in ones; empty when neither has it.
std::string labelName(const Definitions& definitions, const Types::UniversalLabel& label);

}  // namespace Vantor::Tool
