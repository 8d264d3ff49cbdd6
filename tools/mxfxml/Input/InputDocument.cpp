#include "Input/InputDocument.h"

#include <system_error>
#include <utility>

#include "Core/Platform/Path.h"
#include "JSON/Text.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"
#include "XMLUtils/InputFile.h"

namespace Vantor::Tool {

namespace {

using AnyDocument = std::variant<LosslessXML::Document, JSON::Document>;

AnyDocument readStandardInput(DocumentFormat format) {
  auto text = StandardInput::instance().all();
  if (format == DocumentFormat::kJSON) return JSON::Document::fromText(std::move(text));
  return LosslessXML::Document::fromBytes(text.data(), text.size());
}

AnyDocument read(const Path& file, DocumentFormat format) {
  if (isStandardInput(file)) return readStandardInput(format);
  if (format == DocumentFormat::kJSON) return JSON::Document::fromFile(file);
  return LosslessXML::Document::fromFile(file);
}

std::optional<DocumentFormat> formatOfStart(const std::string& start) {
  if (XMLUtils::startsLikeXML(start)) return DocumentFormat::kXML;
  if (JSON::looksLikeJSON(start)) return DocumentFormat::kJSON;
  return std::nullopt;
}

}  // namespace

std::optional<DocumentFormat> documentFormatOf(const Path& file) {
  if (isStandardInput(file)) return formatOfStart(StandardInput::instance().start());
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
  if (const auto& description = json().description()) {
    sets.digest = description->digest;
    sets.start = description->start;
  }
  return file.read(sets);
}

void refuseUnknown(const Path& document, const std::vector<std::string>& unknown) {
  if (unknown.empty()) return;
  for (const auto& message : unknown) printMessage(oneLine(Platform::pathToUTF8(document) + ": " + message));
  throw CommandError(
      "the dictionary lacks names of the document; --own-dictionary and --dictionary FILE add definitions");
}

}  // namespace Vantor::Tool
