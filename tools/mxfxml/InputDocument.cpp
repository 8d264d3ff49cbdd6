#include "InputDocument.h"

#include <system_error>

#include "ErrorText.h"
#include "XMLUtils/InputFile.h"

namespace Vantor::Tool {

namespace {

std::variant<LosslessXML::Document, JSON::Document> read(const Path& file, DocumentFormat format) {
  if (format == DocumentFormat::kJSON) return JSON::Document::fromFile(file);
  return LosslessXML::Document::fromFile(file);
}

}  // namespace

std::optional<DocumentFormat> documentFormatOf(const Path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;  // opening a pipe may wait for its writer
  if (XMLUtils::looksLikeXML(file)) return DocumentFormat::kXML;
  if (JSON::isJSONFile(file)) return DocumentFormat::kJSON;
  return std::nullopt;
}

InputDocument::InputDocument(const Path& file, DocumentFormat format) : document_(read(file, format)) {}

std::optional<MetaMetadata::Vocabulary> InputDocument::vocabulary() const {
  return xml() == nullptr ? std::nullopt : xml()->vocabulary();
}

std::optional<std::string> InputDocument::partition() const {
  const auto partitionIn = [](const auto& document) -> std::optional<std::string> {
    if (!document.description()) return std::nullopt;
    return document.description()->partition;
  };
  return std::visit(partitionIn, document_);
}

bool InputDocument::isDescriptionDamaged() const { return xml() != nullptr && xml()->isDescriptionDamaged(); }

Diagnostics InputDocument::import(PartitionMetadata& partition, std::vector<std::string>& unknown) const {
  unknown.clear();
  if (xml() != nullptr) return xml()->import(partition).diagnostics;
  json().import(partition, &unknown);
  return {};
}

Edit::EditedDocument InputDocument::readFor(Edit::File& file, const Edit::MergeOptions& options) const {
  if (xml() != nullptr) return file.read(*xml(), options);
  Edit::SetsOfDocument sets{[this](PartitionMetadata& partition) { json().import(partition); }};
  if (json().description()) sets.digest = json().description()->digest;
  return file.read(sets);
}

void refuseUnknown(const Path& document, const std::vector<std::string>& unknown) {
  if (unknown.empty()) return;
  for (const auto& message : unknown) printMessage(oneLine(document.u8string() + ": " + message));
  throw CommandError(
      "the dictionary lacks names of the document; --own-dictionary and --dictionary FILE add definitions");
}

}  // namespace Vantor::Tool
