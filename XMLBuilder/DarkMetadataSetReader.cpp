#include "XMLBuilder/DarkMetadataSetReader.h"

#include <utility>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/LosslessDarkSets.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

namespace {

constexpr const char* kSource = "XMLBuilder\\XML2Partition";
constexpr int kLengthLine = 89;
constexpr int kCharactersLine = 99;

[[noreturn]] void throwInvalidValue(const wstring& key, const char* problem, int line) {
  throw Exceptions::InvalidFormat("DarkMetadataSet with key='" + Utils::wstringToString(key) + problem, kSource, line);
}

Bytes readValue(const wstring& key, const wstring& text) {
  if (text.size() % 2 != 0) throwInvalidValue(key, "' value has invalid Length", kLengthLine);
  if (auto bytes = Platform::bytesFromHex(text)) return *std::move(bytes);
  throwInvalidValue(key, "' value contains non Hexadecimal characters", kCharactersLine);
}

void readDarkMetadataSet(const xercesc::DOMElement& element, ImportDocument& document) {
  const wstring keyText = attributeText(element, XMLBuilder::Vocabulary::kKey.data());
  const KLV::Key key(keyText, kDottedForm);
  const auto octets =
      Platform::readDecimal<int32>(attributeText(element, XMLBuilder::Vocabulary::kBEROctetCount.data()));
  KLV::Value value(readValue(keyText, nodeText(element, document.blankText())));
  document.partition().addDarkMetadataSet(
      std::make_unique<DarkMetadataSet>(key, static_cast<uint8>(octets), std::move(value)));
}

const MetaMetadata::MetaMetadataSet* findFloatingSet(const xercesc::DOMElement& element, ImportDocument& document) {
  if (!document.isLossless()) return document.findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
  return LosslessDarkSets::isDarkSet(element) ? nullptr : LosslessSets::findSet(element, document);
}

void readFloatingDarkSet(const xercesc::DOMElement& element, ImportDocument& document) {
  if (!document.isLossless()) return readDarkMetadataSet(element, document);
  // Any other was reported as a set that there is not.
  if (LosslessDarkSets::isDarkSet(element)) LosslessDarkSets::read(element, document);
}

}  // namespace

void readFloatingContainer(const xercesc::DOMElement& container, ImportDocument& document, ImportedSets& imported) {
  if (document.isLossless()) LosslessSets::reportText(container, document);
  for (const auto* child : XMLUtils::childElements(container)) {
    const auto* definition = findFloatingSet(*child, document);
    if (definition == nullptr) {
      readFloatingDarkSet(*child, document);
    } else {
      importSet(*child, *definition, document, [&imported](MetadataSet* set) { imported.push_back(set); });
    }
  }
}

}  // namespace Vantor::XML2Partition
