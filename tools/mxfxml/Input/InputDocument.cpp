#include "Input/InputDocument.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <system_error>
#include <utility>

#include "CommandLine/LimitOptions.h"
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
  if (format == DocumentFormat::kJSON) return JSON::Document::fromText(std::move(text), limits());
  return LosslessXML::Document::fromBytes(text.data(), text.size(), limits());
}

AnyDocument read(const Path& file, DocumentFormat format) {
  if (isStandardInput(file)) return readStandardInput(format);
  if (format == DocumentFormat::kJSON) return JSON::Document::fromFile(file, limits());
  return LosslessXML::Document::fromFile(file, limits());
}

std::optional<DocumentFormat> formatOfStart(const std::string& start) {
  if (XMLUtils::startsLikeXML(start)) return DocumentFormat::kXML;
  if (JSON::looksLikeJSON(start)) return DocumentFormat::kJSON;
  return std::nullopt;
}

/// Numbers of sets without InstanceUID by their kind.
using CountsByName = std::map<std::string, std::size_t>;

CountsByName unidentifiedIn(const PartitionMetadata& metadata) {
  CountsByName counts;
  for (const auto* set : metadata.sets()) {
    if (set->instanceUID() == nullptr) ++counts[set->name()];
  }
  return counts;
}

JSON::Diagnostic surplusOf(const std::string& kind, std::size_t inDocument, std::size_t inFile) {
  JSON::Diagnostic diagnostic{JSON::Diagnostic::Kind::kMoreWithoutInstanceUID};
  diagnostic.arguments = {std::to_string(inDocument), std::to_string(inFile)};
  diagnostic.place.pointer = "/sets";
  diagnostic.set = kind;
  return diagnostic;
}

/// A set without InstanceUID is no problem where the file has it so. Of a kind of which the document has more than the
/// file, one diagnostic stands for all of them.
void joinUnidentified(const PartitionMetadata& metadata, JSON::Diagnostics& diagnostics) {
  const auto inFile = unidentifiedIn(metadata);
  CountsByName inDocument;
  const auto isOfKindInFile = [&](const JSON::Diagnostic& diagnostic) {
    const bool isMissing = diagnostic.kind == JSON::Diagnostic::Kind::kMissingInstanceUID;
    if (!isMissing || inFile.count(diagnostic.set) == 0) return false;
    ++inDocument[diagnostic.set];
    return true;
  };
  diagnostics.erase(std::remove_if(diagnostics.begin(), diagnostics.end(), isOfKindInFile), diagnostics.end());
  for (const auto& [kind, count] : inDocument) {
    const auto present = inFile.at(kind);
    if (count > present) diagnostics.push_back(surplusOf(kind, count, present));
  }
}

/// None for a file that cannot be read.
std::optional<std::string> startOf(const Path& file) {
  if (isStandardInput(file)) return StandardInput::instance().start();
  constexpr std::size_t kShownBytes = 256;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  std::string start(kShownBytes, '\0');
  stream.read(start.data(), kShownBytes);
  start.resize(static_cast<std::size_t>(stream.gcount()));
  return start;
}

/// By a mark, or by a first character of ASCII.
bool isUTF16(std::string_view start) {
  if (start.size() < 2) return false;
  const auto isASCII = [](char character) { return character >= ' ' && character <= '~'; };
  const bool hasMark = start.substr(0, 2) == "\xFF\xFE" || start.substr(0, 2) == "\xFE\xFF";
  return hasMark || (start[0] == '\0' && isASCII(start[1])) || (isASCII(start[0]) && start[1] == '\0');
}

/// Whether there are control characters, such as NUL, beside white space.
bool isBinary(std::string_view start) {
  constexpr std::string_view kWhiteSpace = "\t\n\r\f";
  return std::any_of(start.begin(), start.end(), [kWhiteSpace](char character) {
    return static_cast<unsigned char>(character) < 0x20 && kWhiteSpace.find(character) == kWhiteSpace.npos;
  });
}

/// The first word, or as much of it as 16 bytes have of whole characters.
std::string firstWord(const std::string& start, std::size_t first) {
  const auto isTrail = [&start](std::size_t at) {
    return at < start.size() && (static_cast<unsigned char>(start[at]) & 0xC0) == 0x80;
  };
  auto end = std::min(start.find_first_of(" \t\r\n", first), first + 16);
  while (end > first + 1 && isTrail(end)) --end;
  return oneLine(start.substr(first, end - first));
}

/// What a file that looks like no document is.
std::string describeStart(const std::string& start) {
  constexpr std::string_view kPartitionPack = "\x06\x0E\x2B\x34\x02\x05\x01\x01\x0D\x01\x02";
  const auto first = start.find_first_not_of(" \t\r\n");
  if (start.empty()) return "the file is empty";
  if (first == start.npos) return "the file has only white space";
  if (start.compare(0, kPartitionPack.size(), kPartitionPack) == 0) return "this is an MXF file";
  if (isUTF16(start)) return "this is text in UTF-16, and no XML; JSON is read in UTF-8";
  if (isBinary(start)) return "this is a binary file";
  return "the file begins with '" + firstWord(start, first) + "'";
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

DocumentFormat requiredFormatOf(const Path& file) {
  if (const auto format = documentFormatOf(file)) return *format;
  std::error_code error;
  if (!isStandardInput(file) && !std::filesystem::is_regular_file(file, error)) return DocumentFormat::kXML;
  const auto start = startOf(file);
  if (!start) return DocumentFormat::kXML;  // whose reader has the reason
  throw CommandError(describeStart(*start) + "; metadata in XML begin with '<', in JSON with '{'");
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

void InputDocument::import(PartitionMetadata& partition, InputProblems& problems) const {
  problems = {};
  if (xml() != nullptr) {
    problems.diagnostics = diagnosticsOf(xml()->import(partition));
  } else {
    json().import(partition, &problems.unknown, &problems.jsonDiagnostics);
  }
}

Edit::EditedDocument InputDocument::readFor(Edit::File& file, const Edit::MergeOptions& options,
                                            InputProblems& problems) const {
  problems = {};
  if (xml() != nullptr) {
    auto edited = file.read(*xml(), options);
    problems.diagnostics = diagnosticsOf(edited.import);
    return edited;
  }
  auto& found = problems.jsonDiagnostics;
  Edit::SetsOfDocument sets{[&](PartitionMetadata& partition) { json().import(partition, nullptr, &found); }};
  if (const auto& description = json().description()) {
    sets.digest = description->digest;
    sets.start = description->start;
  }
  auto edited = file.read(sets);
  joinUnidentified(file.metadata(), found);
  return edited;
}

void refuseUnknown(const Path& document, const std::vector<std::string>& unknown) {
  if (unknown.empty()) return;
  MessageList messages(document, true);
  for (const auto& message : unknown) messages.print(message);
  messages.finish();
  throw CommandError(
      "the dictionary lacks names of the document; --own-dictionary and --dictionary FILE add definitions");
}

void printDiagnostics(const Path& document, const InputProblems& problems, bool areErrors,
                      const std::string& consequence) {
  MessageList messages(document, areErrors);
  for (const auto& diagnostic : problems.jsonDiagnostics) messages.print(describe(diagnostic));
  messages.finish();
  printDiagnostics(document, problems.diagnostics, areErrors, consequence);
  if (areErrors && problems.count() != 0) throw CommandError(countOfThings(problems.count()) + consequence);
}

}  // namespace Vantor::Tool
