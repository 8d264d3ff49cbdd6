#include "XMLBuilder/LosslessDarkSets.h"

#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/ValueText.h"
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

Content contentOf(const DOMElement& element) {
  const auto key = Types::checkedText(Types::Identifiers::kUniversalLabel,
                                      LosslessForms::groupsText(element, XMLBuilder::Vocabulary::kKey));
  const auto octets = Types::checkedText(Types::Identifiers::kUnknown, LosslessForms::plainText(element));
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

void add(Content content, const DOMElement& element, LosslessRules& rules) {
  const auto& [key, value] = content;
  // The writer of a file refuses such keys, without knowing the document.
  if (!KLV::canBeSet(key)) {
    Exceptions::raise<Exceptions::InvalidFormat>("the key {} is that of another part of MXF", key.toString());
  }
  auto& report = rules.report();
  auto& partition = rules.partition();
  const uint8 octets = lengthOctets(element, rules);
  if (report.hasDark(content)) return;  // a copy
  const auto before = partition.sets().size();
  partition.addKLV(key, octets, value.data(), value.size(), 0);
  if (partition.sets().size() == before) {
    // Files, too, have sets with the key of a local set that are none.
    const bool isOdd = KLV::isLocalSet(key) && report.base().isKnown() && !report.base().hasDarkSet(key, value);
    if (isOdd) report.add(Kind::kDarkSetIsNoLocalSet, element, {Utils::wstringToString(key.toString())});
    return;
  }
  auto& set = *partition.sets().back();
  if (set.instanceUID() == nullptr) return;  // no reference can lead to it
  LosslessCopies::requireUnused(*set.instanceUID(), element, set.name(), rules, &set);
  report.enter(*set.instanceUID(), {&set, &element});
  report.enterDark(std::move(content));
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
  } catch (const Exceptions::LimitExceeded&) {
    throw;
  } catch (const Exceptions::BaseException& error) {
    rules.report().addUnread(Kind::kInvalidDarkSet, element, {error.message()});
  }
}

}  // namespace Vantor::XML2Partition::LosslessDarkSets
