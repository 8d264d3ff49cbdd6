#include "XMLBuilder/LosslessSet.h"

#include <algorithm>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Metadata/SetReader.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using xercesc::DOMElement;
using xercesc::DOMNode;
using Kind = Diagnostic::Kind;
using namespace XMLBuilder;

namespace {

constexpr const char16_t* kInstanceUIDName = u"InstanceUID";

/// The property of a set that an element is named after; null for extension elements.
const MetaMetadata::MetaElement* propertyOf(const DOMElement& element,
                                            const MetaMetadata::MetaMetadataSet& definition) {
  for (const auto& attribute : definition.attributes()) {
    const auto& property = *attribute.metaElement();
    if (property.extensionAttribute(MetaMetadata::kTagName) == element.getLocalName() &&
        property.extensionAttribute(MetaMetadata::kNamespaceURI) == XMLUtils::viewOf(element.getNamespaceURI())) {
      return &property;
    }
  }
  return nullptr;
}

std::vector<std::u16string_view> identifiersOf(const MetaMetadata::MetaMetadataSet& definition) {
  std::vector<std::u16string_view> names;
  for (const auto& attribute : definition.attributes()) {
    const auto& name = attribute.metaElement()->extensionAttribute(MetaMetadata::kTagName);
    if (MetaMetadata::isIdentifierName(name)) names.push_back(name);
  }
  return names;
}

bool hasInstanceUID(const DOMElement& element) {
  return LosslessForms::identifierAttribute(element, kInstanceUIDName) != nullptr;
}

/// Whether an attribute looks like the InstanceUID, in a wrong namespace: the set is not meant as a new one.
bool hasStrayInstanceUID(const DOMElement& element) {
  const auto& attributes = *element.getAttributes();
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    if (XMLUtils::viewOf(attributes.item(i)->getLocalName()) == kInstanceUIDName) return true;
  }
  return false;
}

}  // namespace

std::optional<Types::UUID> instanceUIDOf(const DOMElement& element) {
  return LosslessForms::identifierIn(LosslessForms::identifierAttribute(element, kInstanceUIDName));
}

std::optional<wstring> newNameOf(const DOMElement& element) {
  const auto* attribute = LosslessForms::identifierAttribute(element, kInstanceUIDName);
  if (attribute == nullptr) return std::nullopt;
  auto text = nodeText(*attribute);
  return NewSets::isName(text) ? std::optional(std::move(text)) : std::nullopt;
}

UnknownMark unknownMarkOf(const DOMElement& element) {
  const auto textOf = [](const DOMNode& mark) {
    return Types::checkedText(Types::Identifiers::kUniversalLabel, nodeText(mark));
  };
  const auto* tag = LosslessForms::groupsAttribute(element, Vocabulary::kStaticLocalTag);
  const auto* label = LosslessForms::groupsAttribute(element, Vocabulary::kUniversalLabel);
  UnknownMark mark;
  if (label != nullptr) mark.label = Types::UniversalLabel(textOf(*label), kDottedForm);
  if (tag != nullptr) mark.tag = Types::LocalTag(textOf(*tag), kDottedForm);
  return mark;
}

void reportUnread(const DOMElement& element, const SetChildren& children,
                  const MetaMetadata::MetaMetadataSet& definition, LosslessRules& rules) {
  rules.reportText(element);
  rules.reportAttributes(element, MetaMetadata::kLegacyElements.uri, identifiersOf(definition),
                         Kind::kUnknownAttribute);
  for (const auto& child : children.unread()) {
    auto name = LosslessRules::nameOf(*child.element);
    if (child.isSecond) {
      const LosslessReport::Reading reading(rules.report(), propertyOf(*child.element, definition));
      rules.report().addUnread(Kind::kSecondElement, *child.element, {name.front()});
    } else {
      rules.report().add(Kind::kUnknownProperty, *child.element, std::move(name));
    }
  }
}

LosslessSet::LosslessSet(const DOMElement& element, MetadataSet& set, LosslessRules& rules)
    : element_(element),
      set_(set),
      rules_(rules),
      reading_(rules.report(), set, hasInstanceUID(element) && !newNameOf(element)),
      children_(element),
      tags_(*set.definition(), rules.partition().partitionDictionary()) {
  if (set.definition()->instanceUIDAttribute() != nullptr && !hasInstanceUID(element)) enterUnnamed();
}

bool LosslessSet::isWithinReference() const {
  const DOMNode* parent = element_.getParentNode();
  const bool isFloating = parent->getNodeType() == DOMNode::ELEMENT_NODE &&
                          rules_.isFloatingContainer(static_cast<const DOMElement&>(*parent));
  return parent != &rules_.root() && !isFloating;
}

/// Files have sets without InstanceUID, to which nothing refers. One within a reference is new, and keeps the
/// InstanceUID that it was made with.
void LosslessSet::enterUnnamed() {
  if (isWithinReference() && !hasStrayInstanceUID(element_)) return;
  auto& base = rules_.report().base();
  if (base.isKnown() && !base.takeWithoutInstanceUID(set_.name())) {
    rules_.report().add(Kind::kMissingInstanceUID, element_);
  }
  if (isWithinReference()) return;
  set_.remove(*set_.find(set_.definition()->instanceUIDAttribute()->metaElement()->key()));
}

void LosslessSet::checkPreface() {
  const auto& key = Structural::StructuralMetadataKeys::preface();
  if (!set_.key().matches(key)) return;
  auto& base = rules_.report().base();
  const std::size_t most = base.isKnown() ? std::max<std::size_t>(base.count(key), 1) : 1;
  if (rules_.countPreface() > most) rules_.report().add(Kind::kSecondPreface, element_);
}

const DOMElement* LosslessSet::child(const MetaMetadata::MetaElement& definition) {
  return children_.take(definition.extensionAttribute(MetaMetadata::kNamespaceURI),
                        definition.extensionAttribute(MetaMetadata::kTagName));
}

const DOMNode* LosslessSet::identifier(const wstring& tagName) {
  return LosslessForms::identifierAttribute(element_, tagName);
}

std::optional<Types::UUID> LosslessSet::instanceUID(const DOMNode& attribute) {
  auto instanceUID = instanceUIDOf(element_);
  if (const auto newName = newNameOf(element_)) {
    instanceUID = rules_.report().newSets().define(*newName, rules_.report().lineOf(attribute), set_.name());
  }
  if (instanceUID) {
    rules_.report().enter(*instanceUID, {&set_, &element_});
  } else {
    rules_.report().add(Kind::kInvalidInstanceUID, attribute, {Utils::wstringToString(nodeText(attribute))});
  }
  return instanceUID;
}

const DOMElement* LosslessSet::extensions() {
  return children_.take(Vocabulary::kGroupsURI, Vocabulary::localName(Vocabulary::kExtensionElements));
}

void LosslessSet::readExtension(const DOMElement& child) {
  const auto name =
      XMLUtils::utf16ToWstring(child.getNamespaceURI()) + u":" + XMLUtils::utf16ToWstring(child.getLocalName());
  if (const auto* definition = rules_.definitions().findProperty(name)) {
    readNamed(child, *definition);
  } else if (!LosslessForms::isGroupsElement(child, Vocabulary::kDarkElement)) {
    rules_.report().add(Kind::kUnknownExtension, child, LosslessRules::nameOf(child));
  } else {
    try {
      readUnknown(child);
    } catch (const Exceptions::BaseException& error) {
      rules_.report().add(Kind::kInvalidValue, child, {error.message()});
    }
  }
}

/// A property under its own name: one of another set, or one of this set that stands in the wrong place.
void LosslessSet::readNamed(const DOMElement& child, const MetaMetadata::MetaElement& definition) {
  if (const auto* attribute = set_.definition()->findAttribute(definition.key())) {
    if (attribute == set_.definition()->instanceUIDAttribute()) return reportMisplacedInstanceUID(child);
    Element* own = set_.find(definition.key());
    const bool isThere = own != nullptr && own->isPresent();
    if (isThere) return rules_.report().add(Kind::kSecondProperty, child, {definition.symbol()});
    return rules_.readValue(own == nullptr ? set_.createElement(*attribute) : *own, child, &definition);
  }
  const auto ordinal = ++misplaced_[&definition];
  if (ordinal > 1 && !isConfirmed(BaseFacts::nameOf(definition), ordinal)) {
    return rules_.report().add(Kind::kSecondProperty, child, {definition.symbol()});
  }
  Element& property = set_.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(&definition));
  rules_.readValue(property, child, &definition);
  // What could not be read was reported, and is not in the set.
  if (property.wireValue() == nullptr) set_.remove(property);
}

/// A file may have a property twice; all but the first are unknown properties then. Octets that decode as the property
/// of their tag become that property, as in a file.
void LosslessSet::readUnknown(const DOMElement& child) {
  rules_.reportValueAttributes(child, nullptr);
  const auto tag = tags_.tagFor(unknownMarkOf(child)).value();
  const auto octets = parseHexString(Types::checkedText(Types::Identifiers::kUnknown, LosslessForms::plainText(child)));
  auto& tags = rules_.partition().partitionDictionary();
  const auto* known = knownProperty(tag);
  const std::size_t ordinal = unknown_[tag] + 1;
  const bool isThere = known != nullptr || ordinal > 1;
  if (isThere && rules_.report().base().isKnown() && !isConfirmed(BaseFacts::nameOf(tag, tags), ordinal)) {
    if (known == nullptr) return rules_.report().add(Kind::kSecondUnknownProperty, child);
    return rules_.report().add(Kind::kSecondProperty, child, {known->symbol()});
  }
  const Element& property = SetReader(set_, tags).place({tag, octets.data(), octets.size()});
  if (set_.isInstanceUID(property)) {
    set_.remove(property);
    return reportMisplacedInstanceUID(child);
  }
  if (property.metaAttribute().metaElement() == nullptr) unknown_[tag] = ordinal;
}

void LosslessSet::reportMisplacedInstanceUID(const DOMElement& child) {
  rules_.report().add(Kind::kInvalidValue, child, {"the InstanceUID of a set is an attribute of its element"});
}

/// The property that a tag stands for, if it is one of the set's own and the document has it.
const MetaMetadata::MetaElement* LosslessSet::knownProperty(uint16 tag) const {
  const auto* label = rules_.partition().partitionDictionary().tryFind(tag);
  const auto& definition = *set_.definition();
  const auto* attribute =
      label == nullptr ? definition.findAttributeByStaticTag(tag) : definition.findAttribute(*label);
  if (attribute == nullptr) return nullptr;
  const auto& known = *attribute->metaElement();
  // A set without an InstanceUID inside a reference has got a new one.
  if (attribute == definition.instanceUIDAttribute() && !hasInstanceUID(element_)) return nullptr;
  const auto* property = set_.find(known.key());
  return property != nullptr && property->wireValue() != nullptr ? &known : nullptr;
}

/// @param ordinal  which property of that name this is, from 1.
bool LosslessSet::isConfirmed(const BaseFacts::PropertyName& name, std::size_t ordinal) {
  const auto& base = rules_.report().base();
  if (!base.isKnown()) return false;
  if (!baseCounts_) baseCounts_ = base.extensionsOf(set_);
  const auto found = baseCounts_->find(name);
  return found != baseCounts_->end() && ordinal <= found->second;
}

void LosslessSet::finish() {
  checkPreface();
  reportUnread(element_, children_, *set_.definition(), rules_);
}

}  // namespace Vantor::XML2Partition
