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
  /// @param unknown  receives a message for each name in JSON that the dictionary lacks, from the last time that this
  /// is
  ///                 called; the metadata may have definitions of their own.
  Diagnostics import(PartitionMetadata& partition, std::vector<std::string>& unknown) const;
  /// The same for a document that was exported from a file.
  Edit::EditedDocument readFor(Edit::File& file, const Edit::MergeOptions& options) const;

 private:
  const LosslessXML::Document* xml() const { return std::get_if<LosslessXML::Document>(&document_); }
  const JSON::Document& json() const { return std::get<JSON::Document>(document_); }

  std::variant<LosslessXML::Document, JSON::Document> document_;
};

/// Prints the messages of an import, a line each. @throws CommandError when there are any.
void refuseUnknown(const Path& document, const std::vector<std::string>& unknown);

}  // namespace Vantor::Tool
