#include "XMLBuilder/DarkMetadataSetReader.h"

#include <algorithm>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/LosslessForms.h"
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
  if (!std::all_of(text.begin(), text.end(), isHexDigit)) {
    throwInvalidValue(key, "' value contains non Hexadecimal characters", kCharactersLine);
  }
  return bytesFromHex(text);
}

/// As a file reader does it: what has the form of a local set can be referred to.
void readDarkMetadataLosslessly(const xercesc::DOMElement& element, const KLV::Key& key, int32 octets,
                                ImportDocument& document) {
  const auto bytes =
      parseHexString(LosslessForms::exactText(Types::Identifiers::kUnknown, textContent(element, BlankText::kKeep)));
  document.partition().addKLV(key, static_cast<uint8>(octets), bytes.data(), bytes.size(), 0);
}

void readDarkMetadataSet(const xercesc::DOMElement& element, ImportDocument& document) {
  const wstring keyText = attributeText(element, XMLBuilder::Vocabulary::kKey.data());
  const KLV::Key key(keyText, kDottedForm);
  const auto octets =
      Platform::readDecimal<int32>(attributeText(element, XMLBuilder::Vocabulary::kBEROctetCount.data()));
  if (document.isLossless()) return readDarkMetadataLosslessly(element, key, octets, document);
  KLV::Value value(readValue(keyText, nodeText(element, document.blankText())));
  document.partition().addDarkMetadataSet(
      std::make_unique<DarkMetadataSet>(key, static_cast<uint8>(octets), std::move(value)));
}

bool isDarkMetadata(const xercesc::DOMElement& element) {
  return XMLUtils::utf16ToWstring(element.getLocalName()) == XMLBuilder::Vocabulary::kDarkMetadata;
}

const MetaMetadata::MetaMetadataSet* findFloatingSet(const xercesc::DOMElement& element, ImportDocument& document) {
  return isDarkMetadata(element) ? nullptr : LosslessSets::findSet(element, document);
}

void readFloatingDarkSet(const xercesc::DOMElement& element, ImportDocument& document) {
  if (!document.isLossless()) return readDarkMetadataSet(element, document);
  if (!isDarkMetadata(element)) return;  // reported as a set that there is not
  try {
    readDarkMetadataSet(element, document);
  } catch (const Exceptions::BaseException& error) {
    document.report().addUnread(ImportDiagnostic::Kind::kValue, element, "dark metadata: " + error.message());
  }
}

}  // namespace

void readFloatingContainer(const xercesc::DOMElement& container, ImportDocument& document, ImportedSets& imported) {
  for (const auto* child : XMLUtils::childElements(container)) {
    const auto* definition = document.isLossless() ? findFloatingSet(*child, document)
                                                   : document.findSet(XMLUtils::utf16ToWstring(child->getLocalName()));
    if (definition == nullptr) {
      readFloatingDarkSet(*child, document);
    } else {
      importSet(*child, *definition, document, [&imported](MetadataSet* set) { imported.push_back(set); });
    }
  }
}

}  // namespace Vantor::XML2Partition
