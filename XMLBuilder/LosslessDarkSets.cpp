#include "XMLBuilder/LosslessDarkSets.h"

#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/Metadata/DarkTags.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder/ImportReport.h"
#include "XMLBuilder/LosslessCopies.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/LosslessSets.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition::LosslessDarkSets {

using xercesc::DOMElement;

namespace {

using Content = ImportReport::DarkContent;

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

/// Octets of the length field; 0, the writer's choice, when the document does not say or says something else, which is
/// reported.
uint8 lengthOctets(const DOMElement& element, ImportDocument& document) {
  const auto* attribute = LosslessForms::groupsAttribute(element, XMLBuilder::Vocabulary::kBEROctetCount);
  if (attribute == nullptr) return 0;
  try {
    return static_cast<uint8>(LosslessForms::number(nodeText(*attribute), 0, KLV::kMaxBEROctets, u"BEROctetCount"));
  } catch (const Exceptions::InvalidFormat& error) {
    document.report().add(ImportDiagnostic::Kind::kValue, *attribute,
                          "dark metadata: " + error.message() + "; the writer is free to choose");
    return 0;
  }
}

/// Enters a set that can be referred to, and that is the partition's last.
void enter(MetadataSet& set, Content content, const DOMElement& element, ImportDocument& document) {
  if (set.instanceUID() == nullptr) return;
  auto& report = document.report();
  if (const auto* known = report.find(*set.instanceUID())) LosslessCopies::refuse(element, set.name(), *known, report);
  const auto& all = document.partition().findByInstanceUID(*set.instanceUID());
  if (all.front() != &set) LosslessCopies::refuse(element, set.name(), *all.front(), report);
  report.enter(*set.instanceUID(), {&set, &element});
  report.enterDark(std::move(content));
}

/// Files have such sets, too.
void reportNoLocalSet(const Content& content, const DOMElement& element, ImportReport& report) {
  if (!KLV::isLocalSet(content.first)) return;
  report.addUnconfirmed(ImportDiagnostic::Kind::kValue, element,
                        "dark metadata: the octets are no local set, which the key " +
                            Utils::wstringToString(content.first.toString()) + " says that they are");
}

void add(Content content, const DOMElement& element, ImportDocument& document) {
  const uint8 octets = lengthOctets(element, document);
  if (document.report().hasDark(content)) return;  // a copy
  auto& partition = document.partition();
  const auto before = partition.sets().size();
  partition.addKLV(content.first, octets, content.second.data(), content.second.size(), 0);
  if (partition.sets().size() == before) return reportNoLocalSet(content, element, document.report());
  enter(*partition.sets().back(), std::move(content), element, document);
}

}  // namespace

bool isDarkSet(const DOMElement& element) {
  return LosslessForms::isGroupsElement(element, XMLBuilder::Vocabulary::kDarkMetadata);
}

void reserveTags(const DOMElement& container, ImportDocument& document) {
  for (const DOMElement* child : XMLUtils::childElements(container)) {
    if (!isDarkSet(*child)) continue;
    try {
      const auto [key, octets] = contentOf(*child);
      reserveDarkTags(key, octets.data(), octets.size(), document.partition().partitionDictionary());
    } catch (const Exceptions::BaseException&) {
      // It has the form of nothing at all, which is told when it is read.
    }
  }
}

void read(const DOMElement& element, ImportDocument& document) {
  try {
    add(contentOf(element), element, document);
  } catch (const LosslessSets::Clash&) {
    throw;
  } catch (const Exceptions::BaseException& error) {
    document.report().addUnread(ImportDiagnostic::Kind::kValue, element, "dark metadata: " + error.message());
  }
}

}  // namespace Vantor::XML2Partition::LosslessDarkSets
