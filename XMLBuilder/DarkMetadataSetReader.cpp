#include "XMLBuilder/DarkMetadataSetReader.h"

#include <algorithm>

#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

Bytes readValue(const wstring& key, const wstring& text) {
  constexpr const char* kSource = "XMLBuilder\\XML2Partition";
  if (text.size() % 2 != 0) {
    raise<InvalidFormat>({"DarkMetadataSet with key='{}' value has invalid Length", {kSource, 89}}, key);
  }
  if (!std::all_of(text.begin(), text.end(), isHexDigit)) {
    raise<InvalidFormat>({"DarkMetadataSet with key='{}' value contains non Hexadecimal characters", {kSource, 99}},
                         key);
  }
  return bytesFromHex(text);
}

}  // namespace

void readDarkMetadataSet(const xercesc::DOMElement& element, BlankText blankText, PartitionMetadata& partition) {
  const wstring keyText = attributeText(element, XMLBuilder::Vocabulary::kKey.data());
  const KLV::Key key(keyText, kDottedForm);
  const auto octets =
      Platform::readDecimal<int32>(attributeText(element, XMLBuilder::Vocabulary::kBEROctetCount.data()));
  KLV::Value value(readValue(keyText, nodeText(element, blankText)));
  partition.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, static_cast<uint8>(octets), std::move(value)));
}

void readFloatingContainer(const xercesc::DOMElement& container, ReadingRules& rules, ImportedSets& imported) {
  rules.checkContainer(container);
  for (const auto* child : XMLUtils::childElements(container)) {
    if (const auto* definition = rules.findSet(*child, XMLBuilder::Vocabulary::kDarkMetadata)) {
      importSet(*child, *definition, rules, &imported);
    } else {
      rules.readDarkSet(*child);
    }
  }
}

}  // namespace Vantor::XML2Partition
