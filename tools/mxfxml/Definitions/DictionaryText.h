#pragma once

#include <string>
#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Definitions/DictionaryEntries.h"

/// Definitions as text for people.
namespace Vantor::Tool {

/// A row for every set: symbol, key, parent, and whether it is abstract.
std::string listOfSets(const Definitions& definitions);

/// Descriptions, an empty row between any two; empty for no entries.
std::string descriptionOf(const Definitions& definitions, const std::vector<DictionaryEntry>& entries);
/// The same for `entriesOf` what was asked for.
std::string descriptionOf(const Definitions& definitions, const std::string& asked);

/// The name of a label in the definitions, or else among the built-in ones; empty when neither has it.
std::string labelName(const Definitions& definitions, const Types::UniversalLabel& label);

}  // namespace Vantor::Tool
