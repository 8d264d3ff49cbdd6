#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Platform/HexDigits.h"
#include "JSON/Document.h"
#include "JSON/SetValue.h"
#include "JSON/Text.h"

namespace Vantor::JSON {

namespace {

void write(const std::string& text, DataIO::DataSink& sink) {
  sink.write(reinterpret_cast<const uint8*>(text.data()), text.size());
}

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
                   const Selection* selection) {
  const auto about = description(metadata, partition, selection);
  write("{\n" + member("format", kFormat) + ",\n" + member("version", kVersion) + ",\n", sink);
  write(member("description", about) + ",\n  \"sets\": [", sink);
  const char* const first = "\n    ";
  const char* separator = first;
  for (const auto& entry : metadata.entries()) {
    if (!shows(selection, EntryView(entry).set)) continue;
    write(separator + toText(valueOf(entry, metadata.partitionDictionary()), 2), sink);
    separator = ",\n    ";
  }
  write(separator == first ? "]\n}\n" : "\n  ]\n}\n", sink);
}

}  // namespace Vantor::JSON
