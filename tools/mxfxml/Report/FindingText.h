#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Edit/Check.h"

/// Findings as text for people.
namespace Vantor::Tool {

/// "error", "warning" or "note".
std::string nameOf(Edit::Severity severity);

/// Severity, rule, partitions, set, property and sentence, on one line without its end.
std::string lineOf(const Edit::Finding& finding);

/// "1 error, 2 warnings", or "nothing found".
std::string summaryOf(const std::vector<Edit::Finding>& findings);

/// Every rule with its severity, sentence and source, in columns.
std::string tableOfRules();

}  // namespace Vantor::Tool
