#include "Command.h"

#include <optional>

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "DictionaryOptions.h"
#include "ErrorText.h"
#include "InputDocument.h"
#include "LosslessXML.h"
#include "OwnNames.h"
#include "StandardStreams.h"
#include "StoppedChange.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor::Tool {

namespace {

using XMLUtils::EncodingType;

void writeFile(const Path& path, const std::string& bytes) {
  DataIO::File::AtomicFile file(path);
  file.write(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  file.commit();
}

class ExportCommand final : public Command {
 public:
  explicit ExportCommand(CLI::App& program)
      : Command(program, "export", "Write the header metadata of a partition as XML or JSON") {
    addInput("MXF file");
    addFile(app(), "-o,--output", output_, "Write to this file instead of standard output");
    addChoice(app(), "--format", format_, "format", {{"xml", DocumentFormat::kXML}, {"json", DocumentFormat::kJSON}},
              "xml (default), or json with all sets and properties");
    app().add_flag("--flat", flat_, "Write sets behind those that refer to them, not inside");
    app().add_flag("--structural-only", structuralOnly_, "Leave out references to sets that are not structural");
    auto* start =
        app()
            .add_option("--start", start_,
                        "Start from this set: an InstanceUID or its\nbeginning, or what mxfxml info --sets lists")
            ->type_name("ID|NAME");
    hint(start, {CompletionHint::Kind::kSetPath});
    app().add_flag("--exact", exact_, "Write the exact form, which loses some metadata");
    addChoice(app(), "--encoding", encoding_, "encoding",
              {{"utf-8", EncodingType::kUTF8Indented}, {"utf-16", EncodingType::kUTF16Indented}},
              "utf-8 (default), or utf-16 in little-endian order");
    addPartition(app(), partition_);
    dictionary_.addVocabulary(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addExamples({"export in.mxf", "export in.mxf -o out.xml", "export in.mxf --flat --partition footer"});
  }

  ExitCode run() const override {
    if (output_) refuseSameFile(input(), *output_);
    refuseStoppedChange(input());
    if (output_) refuseStoppedChange(*output_);
    if (format_ == DocumentFormat::kJSON) return exportJSON();
    const std::string bytes = document();
    if (output_) {
      writeFile(*output_, bytes);
    } else {
      writeStandardOutput(bytes);
    }
    return kSuccess;
  }

 private:
  ExitCode exportJSON() const {
    if (flat_ || structuralOnly_ || exact_ || start_ || encoding_ != EncodingType::kUTF8Indented) {
      throw UsageError("--flat, --structural-only, --start, --exact and --encoding are for XML");
    }
    const auto metadata = dictionary_.read(DictionaryOptions::partitionOf(input(), partition_));
    if (output_) {
      DataIO::File::AtomicFile file(*output_);
      JSON::writeDocument(*metadata, partition_.text(), file);
      file.commit();
    } else {
      StandardOutput output;
      JSON::writeDocument(*metadata, partition_.text(), output);
      output.finish();
    }
    return kSuccess;
  }

  std::string document() const {
    const auto metadata = dictionary_.read(DictionaryOptions::partitionOf(input(), partition_));
    const MetadataSet* start = start_ ? &findStart(*metadata) : metadata->preface();
    if (start == nullptr) throw CommandError(describe(partition_) + " has no Preface to start from");
    if (exact_) {
      const auto document = XMLBuilder::partition2XML(metadata.get(), start, !flat_, structuralOnly_);
      std::string bytes;
      XMLUtils::domToBytes(document.get(), bytes, encoding_);
      return bytes;
    }
    LosslessXML::ExportOptions options;
    options.nestStrongReferences = !flat_;
    options.excludeNonStructural = structuralOnly_;
    options.start = start_ ? start : nullptr;
    options.partition = partition_.text();
    return LosslessXML::exportBytes(*metadata, options, encoding_);
  }

  const MetadataSet& findStart(const PartitionMetadata& metadata) const {
    try {
      return metadata.find(*start_);
    } catch (const Exceptions::InvalidFormat& error) {
      throw CommandError(error.message() + hintOn(metadata));
    }
  }

  std::string hintOn(const PartitionMetadata& metadata) const {
    const auto own = dictionary_.tryLoadOwn(DictionaryOptions::partitionOf(input(), partition_));
    return ownNameHint(*metadata.partitionDictionary().dictionary(), own.get(), *start_, "");
  }

  std::optional<Path> output_;
  DocumentFormat format_ = DocumentFormat::kXML;
  bool flat_ = false;
  bool structuralOnly_ = false;
  bool exact_ = false;
  std::optional<std::string> start_;
  EncodingType encoding_ = EncodingType::kUTF8Indented;
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> exportCommand(CLI::App& program) { return std::make_unique<ExportCommand>(program); }

}  // namespace Vantor::Tool
