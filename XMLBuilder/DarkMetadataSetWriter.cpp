#include "XMLBuilder/DarkMetadataSetWriter.h"

#include <xercesc/dom/DOMText.hpp>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const KLV::Key& key, uint8 berLength,
                          const uint8* octets, std::size_t count) {
  document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  auto* element = document.document().createElementNS(
      Vocabulary::kGroupsURI.data(), qualify(Vocabulary::kGroupsPrefix, Vocabulary::kDarkMetadata).c_str());
  setAttribute(*element, Vocabulary::kGroupsURI, Vocabulary::kKey, key.toString(kDottedForm));
  setAttribute(*element, Vocabulary::kGroupsURI, Vocabulary::kBEROctetCount, Platform::toDecimal(berLength));
  parent.appendChild(element);
  if (count == 0) return;
  element->appendChild(document.document().createTextNode(Platform::hexText<wstring>(octets, count).c_str()));
}

}  // namespace Vantor::XMLBuilder
