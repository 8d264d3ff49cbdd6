#include "XML2Partition.h"

#include <limits>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>

#include "Core/Platform/Exceptions.h"
#include "XMLBuilder/DarkMetadataSetReader.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/ImportReport.h"
#include "XMLBuilder/LosslessDarkSets.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/LosslessSets.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/LoadDocument.h"
#include "XMLUtils/Strings.h"
#include "XMLUtils/UnicodeString.h"
#include "XMLUtils/Utils.h"

namespace Vantor::XML2Partition {

namespace {

constexpr const char* kSource = "XMLBuilder\\XML2Partition";
constexpr int kBufferLine = 282;
constexpr int kStringLine = 298;
constexpr int kFileLine = 313;

constexpr int kLosslessLine = __LINE__;

bool isFloatingContainer(const xercesc::DOMElement& element, const ImportDocument& document) {
  constexpr auto kName = XMLBuilder::Vocabulary::kFloatingContainer;
  return document.isLossless() ? LosslessForms::isGroupsElement(element, kName) : element.getNodeName() == kName;
}

const MetaMetadata::MetaMetadataSet* findRootSet(const xercesc::DOMElement& element, ImportDocument& document) {
  if (!document.isLossless()) return document.findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
  return isFloatingContainer(element, document) ? nullptr : LosslessSets::findSet(element, document);
}

/// Before properties are given tags.
void reserveDarkTags(ImportDocument& document) {
  for (const auto* child : XMLUtils::childElements(document.root())) {
    if (isFloatingContainer(*child, document)) LosslessDarkSets::reserveTags(*child, document);
  }
}

void prepareLossless(ImportDocument& document) {
  LosslessSets::reportRoot(document);
  LosslessSets::reportText(document.root(), document);
  reserveDarkTags(document);
}

ImportedSets importDocument(ImportDocument& document) {
  if (document.isLossless()) prepareLossless(document);
  ImportedSets imported;
  for (const auto* child : XMLUtils::childElements(document.root())) {
    if (const auto* definition = findRootSet(*child, document)) {
      importSet(*child, *definition, document, [&imported](MetadataSet* set) { imported.push_back(set); });
    } else if (isFloatingContainer(*child, document)) {
      readFloatingContainer(*child, document, imported);
    }
  }
  return imported;
}

ImportedSets importDocument(const xercesc::DOMDocument& parsed, BlankText blankText, PartitionMetadata& partition) {
  ImportDocument document(*parsed.getDocumentElement(), blankText, partition);
  return importDocument(document);
}

/// Parses with a parser that lives as long as the document is read.
/// @param load  gives the document; it belongs to the parser.
template <class Load>
ImportedSets importWith(Load&& load, BlankText blankText, PartitionMetadata* partition) {
  XMLUtils::Initializer::instance();
  if (partition == nullptr) return {};
  const auto parser = XMLUtils::createParser();
  return importDocument(load(*parser), blankText, *partition);
}

}  // namespace

ImportedSets getPartitionMetadataFromBuffer(const uint8* buffer, uint32 size, PartitionMetadata* partition) {
  const auto load = [buffer, size](xercesc::DOMLSParser& parser) -> const xercesc::DOMDocument& {
    return *XMLUtils::loadDocumentFromBuffer(buffer, size, parser);
  };
  return XMLUtils::Utils::convertingExceptions([&] { return importWith(load, BlankText::kIgnore, partition); }, kSource,
                                               kBufferLine);
}

ImportedSets getPartitionMetadataFromString(const wstring& text, PartitionMetadata* partition) {
  const auto import = [&] {
    if (text.size() > std::numeric_limits<uint32>::max() / sizeof(char16_t)) {
      throw Exceptions::InvalidLength(std::string("the text of the document is longer than 4 GiB"), kSource,
                                      kStringLine);
    }
    const XMLUtils::UnicodeString string(text);
    return getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(string.utf16()),
                                          static_cast<uint32>(string.utf16Size()), partition);
  };
  return XMLUtils::Utils::convertingExceptions(import, kSource, kStringLine);
}

ImportedSets getPartitionMetadataFromFile(const uint16* path, PartitionMetadata* partition) {
  const auto load = [path](xercesc::DOMLSParser& parser) -> const xercesc::DOMDocument& {
    return *XMLUtils::loadDocumentFromFile(path, parser);
  };
  return XMLUtils::Utils::convertingExceptions([&] { return importWith(load, BlankText::kKeep, partition); }, kSource,
                                               kFileLine);
}

namespace {

/// @param load  gives the document; it belongs to the parser.
template <class Load>
LosslessImport importLosslessly(Load&& load, PartitionMetadata* partition) {
  LosslessImport result;
  if (partition == nullptr) return result;
  XMLUtils::ElementLines lines;
  const auto parser = lines.createParser();
  const xercesc::DOMDocument& parsed = load(*parser);
  ImportReport report(result, lines);
  ImportDocument document(*parsed.getDocumentElement(), BlankText::kKeep, *partition, &report);
  result.sets = importDocument(document);
  report.finish(*partition);
  return result;
}

}  // namespace

LosslessImport importLosslesslyFromBuffer(const uint8* buffer, uint32 size, PartitionMetadata* partition) {
  const auto load = [buffer, size](xercesc::DOMLSParser& parser) -> const xercesc::DOMDocument& {
    return *XMLUtils::loadDocumentFromBuffer(buffer, size, parser);
  };
  return XMLUtils::Utils::convertingExceptions([&] { return importLosslessly(load, partition); }, kSource,
                                               kLosslessLine);
}

LosslessImport importLosslesslyFromFile(const uint16* path, PartitionMetadata* partition) {
  const auto load = [path](xercesc::DOMLSParser& parser) -> const xercesc::DOMDocument& {
    return *XMLUtils::loadDocumentFromFile(path, parser);
  };
  return XMLUtils::Utils::convertingExceptions([&] { return importLosslessly(load, partition); }, kSource,
                                               kLosslessLine);
}

}  // namespace Vantor::XML2Partition
