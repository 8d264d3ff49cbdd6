#include "Core/MXF/PartitionChoice.h"
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

Value description(const PartitionMetadata& metadata, const std::string& partition) {
  MXF::PartitionChoice::parse(partition);
  return Value::object()
      .add("sets", "all")
      .add("partition", partition)
      .add("metadata", Platform::hexNumber<std::string>(digestOf(metadata)));
}

}  // namespace

void writeDocument(const PartitionMetadata& metadata, const std::string& partition, DataIO::DataSink& sink) {
  const auto about = description(metadata, partition);
  write("{\n" + member("format", kFormat) + ",\n" + member("version", kVersion) + ",\n", sink);
  write(member("description", about) + ",\n  \"sets\": [", sink);
  std::string separator = "\n    ";
  for (const auto& entry : metadata.entries()) {
    write(separator + toText(valueOf(entry, metadata.partitionDictionary()), 2), sink);
    separator = ",\n    ";
  }
  write(metadata.entries().empty() ? "]\n}\n" : "\n  ]\n}\n", sink);
}

}  // namespace Vantor::JSON
