#include "ExportCommand.h"

#include <map>

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "ErrorText.h"
#include "LosslessXML.h"
#include "StandardStreams.h"
#include "StoppedChange.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"

namespace Vantor::Tool {

namespace {

void writeFile(const Path& path, const std::string& bytes) {
  DataIO::File::AtomicFile file(path);
  file.write(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  file.commit();
}

}  // namespace

ExportCommand::ExportCommand(CLI::App& program)
    : Command(program, "export", "Write the header metadata of a partition as XML") {
  addInput(app(), input(), "MXF file");
  addFile(app(), "-o,--output", output_, "Write to this file instead of standard output");
  app().add_flag("--flat", flat_, "Write sets behind those that refer to them, not inside");
  app().add_flag("--structural-only", structuralOnly_, "Leave out references to sets that are not structural");
  app()
      .add_option("--start", start_, "Start from the set with this InstanceUID, or\nfrom the first with this name")
      ->type_name("ID|NAME");
  app().add_flag("--exact", exact_, "Write the exact form, which loses some metadata");
  addEncoding();
  addPartition(app(), partition_);
  dictionary_.addVocabulary(app());
  dictionary_.addDictionary(app());
}

void ExportCommand::addEncoding() {
  using XMLUtils::EncodingType;
  static const std::map<std::string, EncodingType> encodings = {{"utf-8", EncodingType::kUTF8Indented},
                                                                {"utf-16", EncodingType::kUTF16Indented}};
  const auto take = [this](const std::string& name) { encoding_ = encodings.at(name); };
  const auto whyNot = [](const std::string& name) {
    return encodings.count(name) != 0 ? "" : "'" + name + "' is no encoding: expected 'utf-8' or 'utf-16'";
  };
  app()
      .add_option_function<std::string>("--encoding", take, "utf-8 (default), or utf-16 in little-endian order")
      ->type_name("NAME")
      ->check(whyNot);
}

void ExportCommand::run() const {
  if (output_) refuseSameFile(input(), *output_);
  refuseStoppedChange(input());
  if (output_) refuseStoppedChange(*output_);
  const std::string bytes = document();
  if (output_) {
    writeFile(*output_, bytes);
  } else {
    writeStandardOutput(bytes);
  }
}

std::string ExportCommand::document() const {
  const auto metadata = MXF::readHeaderMetadata(input(), dictionary_.load(), partition_);
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

const MetadataSet& ExportCommand::findStart(const PartitionMetadata& metadata) const {
  const auto found = metadata.findAll(*start_);
  if (found.empty()) throw CommandError("no set of the partition is named '" + *start_ + "', or has this InstanceUID");
  return found[0];
}

}  // namespace Vantor::Tool
