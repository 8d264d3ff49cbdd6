#pragma once

#include <string>
#include <vector>

#include "Core/Platform/Path.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

/// One line: where in the document, which set and property, and what is wrong.
std::string describe(const LosslessXML::Diagnostic& diagnostic);

using Diagnostics = std::vector<LosslessXML::Diagnostic>;

/// Writes a line for each diagnostic of a document to standard error: a warning, or with `--strict` what is wrong.
void printDiagnostics(const Path& document, const Diagnostics& diagnostics, bool isStrict);

/// "2 things are wrong with the document".
std::string countOf(const Diagnostics& diagnostics);

}  // namespace Vantor::Tool
