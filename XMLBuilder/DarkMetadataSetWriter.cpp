#include "XMLBuilder/DarkMetadataSetWriter.h"

#include <xercesc/dom/DOMText.hpp>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

xercesc::DOMElement& appendElement(ExportDocument& document, xercesc::DOMElement& parent, const KLV::Key& key,
                                   uint8 berLength) {
  document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  auto* element = document.document().createElementNS(
      Vocabulary::kGroupsURI.data(), qualify(Vocabulary::kGroupsPrefix, Vocabulary::kDarkMetadata).c_str());
  setAttribute(*element, Vocabulary::kGroupsURI, Vocabulary::kKey, key.toString(kDottedForm));
  setAttribute(*element, Vocabulary::kGroupsURI, Vocabulary::kBEROctetCount, Platform::toDecimal(berLength));
  parent.appendChild(element);
  return *element;
}

void appendHex(ExportDocument& document, xercesc::DOMElement& element, const uint8* bytes, std::size_t count) {
  if (count != 0)
    element.appendChild(document.document().createTextNode(Platform::hexText<wstring>(bytes, count).c_str()));
}

}  // namespace

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkMetadataSet& set) {
  auto& element = appendElement(document, parent, set.key(), set.berLength());
  appendHex(document, element, set.value().rawBuffer(), set.value().serializedSize());
}

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkParsedGroup& set) {
  auto& element = appendElement(document, parent, set.key(), set.berLength());
  appendHex(document, element, set.value().data(), set.value().size());
}

}  // namespace Vantor::XMLBuilder
