#include "ExportCommand.h"

#include <map>

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "ErrorText.h"
#include "StandardStreams.h"
#include "StartSet.h"
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
  app().add_flag("--flat", flat_, "Write sets beside those that refer to them, not inside");
  app().add_flag("--structural-only", structuralOnly_, "Leave out references to sets that are not structural");
  app()
      .add_option("--start", start_, "Start from the set with this InstanceUID, or\nfrom the first with this name")
      ->type_name("ID|NAME");
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
  const auto document =
      start_ ? XMLBuilder::partition2XML(metadata.get(), &findStartSet(*metadata, *start_), !flat_, structuralOnly_)
             : XMLBuilder::partition2XML(metadata.get(), !flat_, structuralOnly_);
  if (document.get() == nullptr) throw CommandError(describe(partition_) + " has no Preface to start from");
  std::string bytes;
  XMLUtils::domToBytes(document.get(), bytes, encoding_);
  return bytes;
}

}  // namespace Vantor::Tool
