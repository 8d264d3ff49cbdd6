#include "DiagnosticText.h"

#include <cctype>

#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

/// Whether a namespace is none of those that the built-in definitions and documents have, as far as its start tells.
bool isPrivate(std::string uri) {
  for (char& character : uri) character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  const auto starts = [&uri](const std::string& text) { return uri.compare(0, text.size(), text) == 0; };
  return !uri.empty() && !starts("urn:smpte:") && !starts("http://www.smpte-ra.org");
}

}  // namespace

std::string describe(const XML2Partition::ImportDiagnostic& diagnostic) {
  std::string text = diagnostic.line == 0 ? "" : "line " + std::to_string(diagnostic.line) + ": ";
  if (!diagnostic.set.empty()) text += diagnostic.set + ": ";
  if (!diagnostic.property.empty()) text += diagnostic.property + ": ";
  text += diagnostic.message;
  // Definitions of a user's own may have the namespaces of the built-in ones.
  if ((diagnostic.isNewSet && !diagnostic.uri.empty()) || isPrivate(diagnostic.uri))
    text += "; --dictionary FILE adds definitions";
  return oneLine(text);
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
