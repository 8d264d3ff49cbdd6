#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Platform/HexDigits.h"
#include "JSON/Document.h"
#include "JSON/SetValue.h"
#include "JSON/Text.h"

namespace Vantor::JSON {

namespace {

/// A sink for text, within the limit of the output.
class TextOutput {
 public:
  TextOutput(DataIO::DataSink& sink, uint64 limit) : sink_(sink), limit_(limit) {}

  void write(const std::string& text) {
    size_ += text.size();
    if (size_ > limit_) refuseBeyond(&Limits::outputSize, limit_);
    sink_.write(reinterpret_cast<const uint8*>(text.data()), text.size());
  }

 private:
  DataIO::DataSink& sink_;
  uint64 limit_;
  uint64 size_ = 0;
};

std::string member(const std::string& name, const Value& value) { return "  \"" + name + "\": " + toText(value, 1); }

Value description(const PartitionMetadata& metadata, const std::string& partition, const Selection* selection) {
  MXF::PartitionChoice::parse(partition);
  auto json = Value::object().add("sets", "all");
  if (selection != nullptr) json.add("start", selection->start.dottedText());
  return json.add("partition", partition).add("metadata", Platform::hexNumber<std::string>(digestOf(metadata)));
}

bool shows(const Selection* selection, const MetadataSet* set) {
  return selection == nullptr || set == nullptr || selection->shows(*set);
}

}  // namespace

void writeDocument(const PartitionMetadata& metadata, const std::string& partition, DataIO::DataSink& sink,
                   const Selection* selection, const Limits& limits) {
  TextOutput output(sink, limits.outputSize);
  const auto about = description(metadata, partition, selection);
  output.write("{\n" + member("format", kFormat) + ",\n" + member("version", kVersion) + ",\n");
  output.write(member("description", about) + ",\n  \"sets\": [");
  const char* const first = "\n    ";
  const char* separator = first;
  for (const auto& entry : metadata.entries()) {
    if (!shows(selection, EntryView(entry).set)) continue;
    output.write(separator + toText(valueOf(entry, metadata.partitionDictionary()), 2));
    separator = ",\n    ";
  }
  output.write(separator == first ? "]\n}\n" : "\n  ]\n}\n");
}

}  // namespace Vantor::JSON
