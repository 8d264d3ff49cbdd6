#pragma once

#include <string>

#include "XML2Partition.h"

namespace Vantor::Tool {

/// One line: where in the document, which set and property, and what is wrong.
std::string describe(const XML2Partition::ImportDiagnostic& diagnostic);

}  // namespace Vantor::Tool
