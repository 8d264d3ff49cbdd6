#include "DiagnosticText.h"

#include "ErrorText.h"

namespace Vantor::Tool {

std::string describe(const XML2Partition::ImportDiagnostic& diagnostic) {
  std::string text = diagnostic.line == 0 ? "" : "line " + std::to_string(diagnostic.line) + ": ";
  if (!diagnostic.set.empty()) text += diagnostic.set + ": ";
  if (!diagnostic.property.empty()) text += diagnostic.property + ": ";
  return oneLine(text + diagnostic.message);
}

void printDiagnostics(const Path& document, const Diagnostics& diagnostics, bool isStrict) {
  for (const auto& diagnostic : diagnostics) {
    printMessage(document.u8string() + ": " + (isStrict ? "" : "warning: ") + describe(diagnostic));
  }
}

std::string countOf(const Diagnostics& diagnostics) {
  const auto count = std::to_string(diagnostics.size());
  return count + (count == "1" ? " thing is" : " things are") + " wrong with the document";
}

}  // namespace Vantor::Tool
