#pragma once

#include <string>
#include <vector>

#include "Core/Platform/Path.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

using Diagnostics = std::vector<LosslessXML::Diagnostic>;

/// One line, with the option that may help.
std::string describeForUser(const LosslessXML::Diagnostic& diagnostic);

/// Writes a line for each diagnostic of a document to standard error: a warning, or with `--strict` an error.
/// @throws CommandError with the number of errors, behind which `consequence` stands.
void printDiagnostics(const Path& document, const Diagnostics& diagnostics, bool isStrict,
                      const std::string& consequence = "");

/// "2 things are wrong with the document".
std::string countOf(const Diagnostics& diagnostics);
std::string countOfThings(std::size_t count);

}  // namespace Vantor::Tool
