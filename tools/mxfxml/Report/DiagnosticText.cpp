#include "Report/DiagnosticText.h"

#include <cctype>

#include "Core/Platform/Path.h"
#include "Registers/FileDefinitions.h"
#include "Terminal/ErrorText.h"
#include "Terminal/RunLimits.h"

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

Diagnostics diagnosticsOf(const LosslessXML::Import& import) {
  Diagnostics diagnostics{import.diagnostics};
  for (const auto& [kind, count] : import.furtherDiagnostics) diagnostics.further += count;
  return diagnostics;
}

MessageList::MessageList(const Path& document, bool areErrors, std::size_t most)
    : start_(Platform::pathToUTF8(document) + ": " + (areErrors ? "" : "warning: ")), most_(most) {}

MessageList::MessageList(const Path& document, bool areErrors)
    : MessageList(document, areErrors, static_cast<std::size_t>(limits().diagnostics)) {}

void MessageList::print(const std::string& message) {
  if (++count_ <= most_) printMessage(start_ + message);
}

void MessageList::finish(std::size_t further) const {
  if (count_ > most_) further += count_ - most_;
  if (further != 0) printMessage(start_ + "and " + std::to_string(further) + " more; --limit diagnostics=N prints N");
}

void printDiagnostics(const Path& document, const Diagnostics& diagnostics, bool isStrict,
                      const std::string& consequence) {
  MessageList messages(document, isStrict, diagnostics.listed.size());
  for (const auto& diagnostic : diagnostics.listed) messages.print(describeForUser(diagnostic));
  messages.finish(diagnostics.further);
  if (isStrict && !diagnostics.empty()) throw CommandError(countOf(diagnostics) + consequence);
}

std::string countOf(const Diagnostics& diagnostics) { return countOfThings(diagnostics.size()); }

std::string countOfThings(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " thing is" : " things are") + " wrong with the document";
}

}  // namespace Vantor::Tool
