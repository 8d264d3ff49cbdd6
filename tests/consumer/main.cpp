#include <cstdio>

#include <vantor/Core/DataIO/Memory.h>
#include <vantor/Core/Dictionary/BuiltInDictionary.h>
#include <vantor/Core/Metadata/PartitionMetadata.h>
#include <vantor/Core/Metadata/StructuralMetadataKeys.h>
#include <vantor/Core/Platform/Exceptions.h>
#include <vantor/JSON/Document.h>
#include "XML2Partition.h"
#include "XMLBuilder.h"

namespace {

// Both families of functions have to be there, and what one writes the other reads.
bool bringsASetThereAndBack() {
  Vantor::PartitionMetadata partition(Vantor::builtInDictionary());
  partition.createMetadataSet(Vantor::Structural::StructuralMetadataKeys::preface());
  Vantor::wstring xml;
  Vantor::XMLBuilder::partition2XML(&partition, true, false, Vantor::XMLUtils::EncodingType::kUTF8, xml);
  Vantor::PartitionMetadata copy(Vantor::builtInDictionary());
  const auto sets = Vantor::XML2Partition::getPartitionMetadataFromString(xml, &copy);
  return sets.size() == 1 && sets.front()->name() == "Preface";
}

bool bringsASetToJSONAndBack() {
  Vantor::PartitionMetadata partition(Vantor::builtInDictionary()), copy(Vantor::builtInDictionary());
  partition.createMetadataSet("Preface");
  Vantor::DataIO::Memory::MemoryDataSink sink;
  Vantor::JSON::writeDocument(partition, "header", sink);
  const std::string text(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize());
  Vantor::JSON::Document::fromText(text).import(copy);
  return copy.sets().size() == 1 && copy.preface() != nullptr;
}

// The exception's type has to be the same one on both sides of the library's boundary.
bool catchesWhatTheLibraryDefines() {
  try {
    throw Vantor::Exceptions::ParseError("message", "consumer", 1);
  } catch (const Vantor::Exceptions::BaseException& error) {
    return error.message() == "message" && error.line() == 1;
  }
}

}  // namespace

int main() {
  if (!catchesWhatTheLibraryDefines()) return std::puts("a ParseError was not caught as a BaseException"), 1;
  if (!bringsASetThereAndBack()) return std::puts("a set did not come back from its XML"), 1;
  if (!bringsASetToJSONAndBack()) return std::puts("a set did not come back from its JSON"), 1;
  std::puts("the installed package works");
  return 0;
}
