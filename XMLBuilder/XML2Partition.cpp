#include "XML2Partition.h"

#include <limits>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>

#include "Core/Platform/Raise.h"
#include "XMLBuilder/ExactRules.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/LoadDocument.h"
#include "XMLUtils/UnicodeString.h"
#include "XMLUtils/Utils.h"

namespace Vantor::XML2Partition {

namespace {

using SetList = Templates::list<MetadataSet*, Platform::malloc_alloc>;

constexpr const char* kSource = "XMLBuilder\\XML2Partition";

/// Parses with a parser that lives as long as the document is read.
/// @param load  gives the document; it belongs to the parser.
/// @param line  of failures that have no other.
template <class Load>
SetList importWith(Load&& load, BlankText blankText, PartitionMetadata* partition, const Limits& limits, int line) {
  const auto read = [&]() -> SetList {
    const auto parser = XMLUtils::createParser();
    const xercesc::DOMDocument& document = *load(*parser);
    ExactRules rules(*document.getDocumentElement(), blankText, *partition, limits);
    const auto imported = importDocument(rules);
    return {imported.begin(), imported.end()};
  };
  const auto import = [&]() -> SetList {
    XMLUtils::Initializer::instance();
    if (partition == nullptr) return {};
    return withinMemory(limits, read);
  };
  return XMLUtils::Utils::convertingExceptions(import, kSource, line);
}

}  // namespace

SetList getPartitionMetadataFromBuffer(const uint8* buffer, uint32 size, PartitionMetadata* partition,
                                       const Limits& limits) {
  const auto load = [&](xercesc::DOMLSParser& parser) {
    return XMLUtils::loadDocumentFromBuffer(buffer, size, parser, limits);
  };
  return importWith(load, BlankText::kIgnore, partition, limits, 282);
}

SetList getPartitionMetadataFromBuffer(const uint8* buffer, uint32 size, PartitionMetadata* partition) {
  return getPartitionMetadataFromBuffer(buffer, size, partition, {});
}

SetList getPartitionMetadataFromString(const wstring& text, PartitionMetadata* partition, const Limits& limits) {
  constexpr int kLine = 298;
  const auto import = [&] {
    if (text.size() > std::numeric_limits<uint32>::max() / sizeof(char16_t)) {
      Exceptions::raise<Exceptions::InvalidLength>({"the text of the document is longer than 4 GiB", {kSource, kLine}});
    }
    const XMLUtils::UnicodeString string(text);
    return getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(string.utf16()),
                                          static_cast<uint32>(string.utf16Size()), partition, limits);
  };
  return XMLUtils::Utils::convertingExceptions(import, kSource, kLine);
}

SetList getPartitionMetadataFromString(const wstring& text, PartitionMetadata* partition) {
  return getPartitionMetadataFromString(text, partition, {});
}

SetList getPartitionMetadataFromFile(const uint16* path, PartitionMetadata* partition, const Limits& limits) {
  const auto load = [&](xercesc::DOMLSParser& parser) { return XMLUtils::loadDocumentFromFile(path, parser, limits); };
  return importWith(load, BlankText::kKeep, partition, limits, 313);
}

SetList getPartitionMetadataFromFile(const uint16* path, PartitionMetadata* partition) {
  return getPartitionMetadataFromFile(path, partition, {});
}

}  // namespace Vantor::XML2Partition
