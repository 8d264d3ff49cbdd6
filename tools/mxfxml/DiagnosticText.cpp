#include "DiagnosticText.h"

#include "ErrorText.h"

namespace Vantor::Tool {

std::string describe(const XML2Partition::ImportDiagnostic& diagnostic) {
  std::string text = diagnostic.line == 0 ? "" : "line " + std::to_string(diagnostic.line) + ": ";
  if (!diagnostic.set.empty()) text += diagnostic.set + ": ";
  if (!diagnostic.property.empty()) text += diagnostic.property + ": ";
  return oneLine(text + diagnostic.message);
}

}  // namespace Vantor::Tool
