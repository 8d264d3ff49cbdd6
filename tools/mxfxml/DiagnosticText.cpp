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

std::string describe(const LosslessXML::Diagnostic& diagnostic) {
  using Kind = LosslessXML::Diagnostic::Kind;
  const auto kind = diagnostic.kind;
  std::string text = LosslessXML::describe(diagnostic);
  const bool isUnknown = kind == Kind::kUnknownSet || kind == Kind::kSetOfOtherNamespace ||
                         kind == Kind::kUnknownProperty || kind == Kind::kUnknownExtension ||
                         kind == Kind::kUnknownAttribute;
  const std::string uri = isUnknown ? diagnostic.arguments.at(1) : "";
  // Definitions of a user's own may have the namespaces of the built-in ones.
  if ((kind == Kind::kUnknownSet && !uri.empty()) || isPrivate(uri)) text += "; --dictionary FILE adds definitions";
  return oneLine(text);
}

void printDiagnostics(const Path& document, const Diagnostics& diagnostics, bool isStrict) {
  for (const auto& diagnostic : diagnostics) {
    printMessage(document.u8string() + ": " + (isStrict ? "" : "warning: ") + Tool::describe(diagnostic));
  }
}

std::string countOf(const Diagnostics& diagnostics) {
  const auto count = std::to_string(diagnostics.size());
  return count + (count == "1" ? " thing is" : " things are") + " wrong with the document";
}

}  // namespace Vantor::Tool
