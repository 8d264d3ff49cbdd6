#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Path.h"
#include "Edit/File.h"
#include "JSON/Document.h"
#include "LosslessXML.h"
#include "Report/DiagnosticText.h"

namespace Vantor::Tool {

enum class DocumentFormat { kXML, kJSON };

/// By the first character of a regular file or of standard input; none for a file that looks like neither.
std::optional<DocumentFormat> documentFormatOf(const Path& file);
/// The format of a document. Pipes count as XML, since opening one may wait for its writer.
/// @throws CommandError with what the file is, as far as it shows, for one that looks like no document.
DocumentFormat requiredFormatOf(const Path& file);

/// What is wrong with a document, or may not be meant.
struct InputProblems {
  Diagnostics diagnostics = {};            ///< of XML
  JSON::Diagnostics jsonDiagnostics = {};  ///< of JSON
  std::vector<std::string> unknown = {};   ///< messages about names in JSON that the dictionary lacks

  /// Of the diagnostics.
  std::size_t count() const { return diagnostics.size() + jsonDiagnostics.size(); }
};

/// A document of either form, whose sets are not read yet.
class InputDocument {
 public:
  /// @throws what `LosslessXML::Document::fromFile` and `JSON::Document::fromFile` throw.
  InputDocument(const Path& file, DocumentFormat format);

  bool isJSON() const { return xml() == nullptr; }
  /// None for JSON, whose names are those of the registers.
  std::optional<MetaMetadata::Vocabulary> vocabulary() const;
  /// The partition that it was exported from; none for a document that does not describe itself.
  std::optional<std::string> partition() const;
  bool isDescriptionDamaged() const;

  /// Makes the sets of the document. What is wrong with JSON is an exception.
  /// @param problems  get those of this time: the metadata may have definitions of their own, with which it is called
  ///                  again.
  void import(PartitionMetadata& partition, InputProblems& problems) const;
  /// The same for a document that was exported from a file. Sets without InstanceUID are no problem,
  /// unless there are more of a kind than in the file. @param problems  gets diagnostics.
  Edit::EditedDocument readFor(Edit::File& file, const Edit::MergeOptions& options, InputProblems& problems) const;

 private:
  const LosslessXML::Document* xml() const { return std::get_if<LosslessXML::Document>(&document_); }
  const JSON::Document& json() const { return std::get<JSON::Document>(document_); }

  std::variant<LosslessXML::Document, JSON::Document> document_;
};

/// Prints the messages about unknown names, a line each. @throws CommandError when there are any.
void refuseUnknown(const Path& document, const std::vector<std::string>& unknown);
/// Prints the diagnostics, a line each: warnings, or errors.
/// @throws CommandError with the number of errors, behind which `consequence` stands.
void printDiagnostics(const Path& document, const InputProblems& problems, bool areErrors,
                      const std::string& consequence = "");

}  // namespace Vantor::Tool
