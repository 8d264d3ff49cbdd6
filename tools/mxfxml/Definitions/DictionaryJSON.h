#pragma once

#include <vector>

#include "Definitions/DictionaryEntries.h"
#include "Definitions/DictionarySearch.h"
#include "JSON/Value.h"

/// Definitions as JSON: docs/mxf-metadata.schema.json.
namespace Vantor::Tool {

/// Every set: symbol, key, parent, and whether it is abstract.
JSON::Value jsonOfSets(const Definitions& definitions);
/// Entries with all that the definitions have about them.
JSON::Value jsonOfEntries(const Definitions& definitions, const std::vector<DictionaryEntry>& entries);
JSON::Value jsonOfMatches(const std::vector<DictionarySearch::Match>& matches);

}  // namespace Vantor::Tool
