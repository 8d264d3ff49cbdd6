#include "XMLBuilder/LosslessDarkSets.h"

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Numbers.h"
#include "XMLBuilder/ImportReport.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XML2Partition::LosslessDarkSets {

using xercesc::DOMElement;

namespace {

struct Content {
  KLV::Key key;
  Bytes octets;
};

wstring attributeOf(const DOMElement& element, std::u16string_view name) {
  const auto* attribute = LosslessForms::groupsAttribute(element, name);
  return attribute == nullptr ? wstring() : nodeText(*attribute);
}

Content contentOf(const DOMElement& element) {
  const auto key =
      LosslessForms::exactText(Types::Identifiers::kUniversalLabel, attributeOf(element, XMLBuilder::Vocabulary::kKey));
  const auto octets = LosslessForms::exactText(Types::Identifiers::kUnknown, LosslessForms::plainText(element));
  return {KLV::Key(key, kDottedForm), parseHexString(octets)};
}

void add(const Content& content, const DOMElement& element, ImportDocument& document) {
  const auto octets = Platform::readDecimal<int32>(attributeOf(element, XMLBuilder::Vocabulary::kBEROctetCount));
  document.partition().addKLV(content.key, static_cast<uint8>(octets), content.octets.data(), content.octets.size(), 0);
}

}  // namespace

bool isDarkSet(const DOMElement& element) {
  return LosslessForms::isGroupsElement(element, XMLBuilder::Vocabulary::kDarkMetadata);
}

void read(const DOMElement& element, ImportDocument& document) {
  try {
    add(contentOf(element), element, document);
  } catch (const Exceptions::BaseException& error) {
    document.report().addUnread(ImportDiagnostic::Kind::kValue, element, "dark metadata: " + error.message());
  }
}

}  // namespace Vantor::XML2Partition::LosslessDarkSets
