#pragma once

#include <string>
#include <vector>

#include "Core/Platform/Path.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

/// Those of a document in XML.
struct Diagnostics {
  std::vector<LosslessXML::Diagnostic> listed = {};
  std::size_t further = 0;  ///< number of those that are not listed

  std::size_t size() const { return listed.size() + further; }
  bool empty() const { return size() == 0; }
};
Diagnostics diagnosticsOf(const LosslessXML::Import& import);

/// Messages about a document, a line each on standard error: errors or warnings. Ends with the number of those beyond
/// the limit.
class MessageList {
 public:
  MessageList(const Path& document, bool areErrors);
  /// @param most  that are printed.
  MessageList(const Path& document, bool areErrors, std::size_t most);

  void print(const std::string& message);
  /// @param further  number of those that were not handed to `print`.
  void finish(std::size_t further = 0) const;

 private:
  std::string start_;
  std::size_t most_;
  std::size_t count_ = 0;
};

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
