#include "XMLBuilder/LosslessDarkSets.h"

#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/HeaderMetadataKeys.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder/LosslessCopies.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition::LosslessDarkSets {

using xercesc::DOMElement;

namespace {

using Content = LosslessReport::DarkContent;
using Kind = Diagnostic::Kind;

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

/// Octets of the length field; 0, the writer's choice, when the document has no number, or an invalid one, which is
/// reported.
uint8 lengthOctets(const DOMElement& element, LosslessRules& rules) {
  const auto* attribute = LosslessForms::groupsAttribute(element, XMLBuilder::Vocabulary::kBEROctetCount);
  if (attribute == nullptr) return 0;
  try {
    return static_cast<uint8>(LosslessForms::number(nodeText(*attribute), 0, KLV::kMaxBEROctets, u"BEROctetCount"));
  } catch (const Exceptions::InvalidFormat& error) {
    rules.report().add(Kind::kInvalidDarkLength, *attribute, {error.message()});
    return 0;
  }
}

/// Enters the last set of the partition, if references can lead to it.
void enter(MetadataSet& set, Content content, const DOMElement& element, LosslessRules& rules) {
  if (set.instanceUID() == nullptr) return;
  auto& report = rules.report();
  if (const auto* known = report.find(*set.instanceUID())) LosslessCopies::refuse(element, set.name(), *known, report);
  const auto& all = rules.partition().findByInstanceUID(*set.instanceUID());
  if (all.front() != &set) LosslessCopies::refuse(element, set.name(), *all.front(), report);
  report.enter(*set.instanceUID(), {&set, &element});
  report.enterDark(std::move(content));
}

/// Files, too, have sets with the key of a local set that are none.
void checkLocalSet(const Content& content, const DOMElement& element, LosslessReport& report) {
  if (!KLV::isLocalSet(content.first)) return;
  if (!report.base().isKnown() || report.base().hasDarkSet(content.first, content.second)) return;
  report.add(Kind::kDarkSetIsNoLocalSet, element, {Utils::wstringToString(content.first.toString())});
}

/// The writer of a file refuses keys of other parts of MXF, without knowing the document.
void requireSetKey(const KLV::Key& key) {
  if (!MXF::endsHeaderMetadata(key) && !MXF::isHeaderMetadataFraming(key)) return;
  Exceptions::raise<Exceptions::InvalidFormat>("the key {} is that of another part of MXF", key.toString());
}

void add(Content content, const DOMElement& element, LosslessRules& rules) {
  requireSetKey(content.first);
  const uint8 octets = lengthOctets(element, rules);
  if (rules.report().hasDark(content)) return;  // a copy
  auto& partition = rules.partition();
  const auto before = partition.sets().size();
  partition.addKLV(content.first, octets, content.second.data(), content.second.size(), 0);
  if (partition.sets().size() == before) return checkLocalSet(content, element, rules.report());
  enter(*partition.sets().back(), std::move(content), element, rules);
}

}  // namespace

void reserveTags(const DOMElement& container, PartitionMetadata& partition) {
  for (const DOMElement* child : XMLUtils::childElements(container)) {
    if (!LosslessForms::isGroupsElement(*child, XMLBuilder::Vocabulary::kDarkMetadata)) continue;
    try {
      const auto [key, octets] = contentOf(*child);
      reserveDarkTags(key, octets.data(), octets.size(), partition.partitionDictionary());
    } catch (const Exceptions::BaseException&) {
      // Reported when the set is read.
    }
  }
}

void read(const DOMElement& element, LosslessRules& rules) {
  using namespace XMLBuilder;
  rules.reportAttributes(element, Vocabulary::kGroupsURI,
                         {Vocabulary::localName(Vocabulary::kKey), Vocabulary::localName(Vocabulary::kBEROctetCount)});
  try {
    add(contentOf(element), element, rules);
  } catch (const Clash&) {
    throw;
  } catch (const Exceptions::BaseException& error) {
    rules.report().addUnread(Kind::kInvalidDarkSet, element, {error.message()});
  }
}

}  // namespace Vantor::XML2Partition::LosslessDarkSets
