#include "Report/DiagnosticText.h"

#include <cctype>

#include "Core/Platform/Path.h"
#include "Registers/FileDefinitions.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

using DiagnosticKind = LosslessXML::Diagnostic::Kind;

/// Whether a namespace is neither of the built-in definitions, nor of documents, nor of a file's own definitions,
/// judged by its start.
bool isPrivate(std::string uri) {
  for (char& character : uri) character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  const auto starts = [&uri](const std::string& text) { return uri.compare(0, text.size(), text) == 0; };
  return !uri.empty() && !starts("urn:smpte:") && !starts("http://www.smpte-ra.org") && !starts("urn:vantor:own:");
}

/// Whether definitions of the user may be missing. They may be in the namespaces of the built-in ones.
bool lacksDefinition(const LosslessXML::Diagnostic& diagnostic) {
  switch (diagnostic.kind) {
    case DiagnosticKind::kUnknownSet:
      return !diagnostic.arguments[1].empty() && diagnostic.arguments[1] != "urn:SMPTE:Groups:MXF" &&
             diagnostic.arguments[1] != Registers::kOwnSets;
    case DiagnosticKind::kSetOfOtherNamespace:
    case DiagnosticKind::kUnknownProperty:
    case DiagnosticKind::kUnknownExtension:
    case DiagnosticKind::kUnknownAttribute:
      return isPrivate(diagnostic.arguments[1]);
    default:
      return false;
  }
}

}  // namespace

std::string describeForUser(const LosslessXML::Diagnostic& diagnostic) {
  const auto text = LosslessXML::describe(diagnostic);
  return oneLine(lacksDefinition(diagnostic) ? text + "; --dictionary FILE adds definitions" : text);
}

void printDiagnostics(const Path& document, const Diagnostics& diagnostics, bool isStrict,
                      const std::string& consequence) {
  for (const auto& diagnostic : diagnostics) {
    printMessage(Platform::pathToUTF8(document) + ": " + (isStrict ? "" : "warning: ") + describeForUser(diagnostic));
  }
  if (isStrict && !diagnostics.empty()) throw CommandError(countOf(diagnostics) + consequence);
}

std::string countOf(const Diagnostics& diagnostics) { return countOfThings(diagnostics.size()); }

std::string countOfThings(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " thing is" : " things are") + " wrong with the document";
}

}  // namespace Vantor::Tool
