#include "Input/ExportForm.h"

#include <memory>

#include "CommandLine/CommonOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Edit/Scope.h"
#include "Input/OwnNames.h"
#include "LosslessXML.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

std::string hintOn(const PartitionMetadata& metadata, const ExportForm& form, const DictionaryOptions& dictionary,
                   const Path& file) {
  const auto own = dictionary.tryLoadOwn(DictionaryOptions::partitionOf(file, form.partition));
  return ownNameHint(*metadata.partitionDictionary().dictionary(), own.get(), *form.start, "");
}

/// None where the document has all sets: those that the Preface shows.
std::optional<JSON::Selection> selectionFrom(const MetadataSet* start, const PartitionMetadata& metadata) {
  if (start == nullptr || start == metadata.preface()) return std::nullopt;
  const auto* instanceUID = start->instanceUID();
  if (instanceUID == nullptr || metadata.findByInstanceUID(*instanceUID).size() != 1) {
    throw CommandError("the " + start->fullName() + " has no InstanceUID of its own, by which an import would find it");
  }
  Edit::DocumentForm form;
  form.isNested = false;
  form.start = *instanceUID;
  const auto scope = std::make_shared<Edit::Scope>(metadata, metadata, form);
  return JSON::Selection{*instanceUID, [scope](const MetadataSet& set) { return scope->shows(set); }};
}

void writeJSON(const PartitionMetadata& metadata, const ExportForm& form, const MetadataSet* start,
               DataIO::DataSink& sink) {
  const auto selection = selectionFrom(start, metadata);
  JSON::writeDocument(metadata, form.partition.text(), sink, selection ? &*selection : nullptr, limits());
}

}  // namespace

void addFormat(CLI::App& command, DocumentFormat& format) {
  addChoice(command, "--format", format, "format", {{"xml", DocumentFormat::kXML}, {"json", DocumentFormat::kJSON}},
            "xml (default), or json with all sets and properties");
  command
      .add_flag_callback(
          "--json", [&format] { format = DocumentFormat::kJSON; }, "Short for --format json")
      ->excludes(command.get_option("--format"));
}

void addStart(CLI::App& command, std::optional<std::string>& start) {
  auto* option = command
                     .add_option("--start", start,
                                 "Start from this set: an InstanceUID or its\nbeginning, or what mxfxml info --sets "
                                 "lists")
                     ->type_name("ID|NAME");
  hint(option, {CompletionHint::Kind::kSetPath});
}

const MetadataSet* startOf(const PartitionMetadata& metadata, const ExportForm& form,
                           const DictionaryOptions& dictionary, const Path& file) {
  try {
    if (form.start) return &metadata.find(*form.start);
  } catch (const Exceptions::InvalidFormat& error) {
    throw CommandError(error.message() + hintOn(metadata, form, dictionary, file));
  }
  if (form.format == DocumentFormat::kXML && metadata.preface() == nullptr) {
    throw CommandError(describe(form.partition) + " has no Preface to start from");
  }
  return nullptr;
}

void writeDocument(PartitionMetadata& metadata, const ExportForm& form, const MetadataSet* start,
                   DataIO::DataSink& sink) {
  if (form.format == DocumentFormat::kJSON) return writeJSON(metadata, form, start, sink);
  LosslessXML::ExportOptions options;
  options.nestStrongReferences = !form.isFlat;
  options.excludeNonStructural = form.isStructuralOnly;
  options.start = start;
  options.partition = form.partition.text();
  options.limits = limits();
  const auto bytes = LosslessXML::exportBytes(metadata, options, form.encoding);
  sink.write(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
}

}  // namespace Vantor::Tool
