#include "XMLBuilder/FromXMLMetadataSetVisitor.h"

#include <xercesc/dom/DOMAttr.hpp>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "XMLBuilder/FromXMLElementVisitor.h"
#include "XMLBuilder/FromXMLMetaAttributeVisitor.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using MetaMetadata::kXMLDefaultPrefix;
using MetaMetadata::kXMLNamespaceURI;
using MetaMetadata::kXMLTagName;
using xercesc::DOMElement;
using xercesc::DOMNode;
using XMLBuilder::Vocabulary::kGroupsPrefix;

namespace {

/// What a prefix that the document does not declare stands for, so that no look-up fails for want of a namespace.
constexpr const char16_t* kRegistrationAuthorityURI = u"http://www.smpte-ra.org";
constexpr const char16_t* kIdentifierPrefix = u"rp210:";

const DOMNode* markOf(const DOMElement& child, std::u16string_view name, const ImportDocument& document) {
  return document.isLossless() ? LosslessForms::groupsAttribute(child, name) : child.getAttributeNode(name.data());
}

wstring markText(const DOMNode& mark, const ImportDocument& document) {
  const wstring text = nodeText(mark);
  return document.isLossless() ? LosslessForms::exactText(Types::Identifiers::kUniversalLabel, text) : text;
}

/// The local tag that an unknown property was read under, or that its label has in the partition; without either, one
/// that says as little. @param unmarked  counts the properties of the set that have neither.
Types::LocalTag localTagOf(const DOMElement& child, ImportDocument& document, std::size_t& unmarked) {
  auto& tags = document.partition().partitionDictionary();
  if (const auto* tag = markOf(child, XMLBuilder::Vocabulary::kStaticLocalTag, document)) {
    return Types::LocalTag(markText(*tag, document), kDottedForm);
  }
  if (const auto* label = markOf(child, XMLBuilder::Vocabulary::kUniversalLabel, document)) {
    return tags.findOrGenerate(Types::UniversalLabel(markText(*label, document), kDottedForm));
  }
  return tags.unlistedTag(unmarked++);
}

}  // namespace

void FromXMLMetadataSetVisitor::visit(MetadataSet& set) {
  // Asked before a property can bind the prefix.
  const bool mayHaveExtensions = document_.isLossless() || !scope_.namespaceOf(wstring(kGroupsPrefix)).empty();
  if (document_.isLossless()) LosslessSets::enterUnnamed(set, element_, document_);
  const LosslessSets::MaybeReading reading(document_, set);
  for (Element& property : set) readProperty(property, set);
  if (mayHaveExtensions) readExtensionElements(set);
  if (!children_) return;
  LosslessSets::reportText(element_, document_);
  LosslessSets::reportUnreadAttributes(element_, *set.definition(), document_);
  LosslessSets::reportUnread(*children_, *set.definition(), document_);
}

void FromXMLMetadataSetVisitor::readProperty(Element& property, MetadataSet& set) {
  const FromXMLMetaAttributeVisitor attribute(property.metaAttribute());
  const auto& definition = *attribute.metaElement();
  const auto& tag = definition.extensionAttribute(kXMLTagName);
  if (tag == u"InstanceUID" || tag == u"GenerationUID") return readIdentifier(property, definition, tag, set);
  readChild(property, definition, tag);
}

void FromXMLMetadataSetVisitor::readChild(Element& property, const MetaMetadata::MetaElement& definition,
                                          const wstring& tag) {
  const DOMElement* child = findChild(definition, tag);
  if (child != nullptr) readValue(property, *child, &definition, document_);
}

const DOMElement* FromXMLMetadataSetVisitor::findChild(const MetaMetadata::MetaElement& definition,
                                                       const wstring& tag) {
  if (children_) return children_->take(definition.extensionAttribute(kXMLNamespaceURI), tag);
  const auto& prefix = definition.extensionAttribute(kXMLDefaultPrefix);
  scope_.bindIfUnbound(prefix, kRegistrationAuthorityURI);
  return scope_.first(element_, prefix, tag);
}

void FromXMLMetadataSetVisitor::readIdentifier(Element& property, const MetaMetadata::MetaElement& definition,
                                               const wstring& tag, MetadataSet& set) {
  const DOMNode* attribute = document_.isLossless() ? LosslessForms::identifierAttribute(element_, tag)
                                                    : element_.getAttributeNode((kIdentifierPrefix + tag).c_str());
  if (attribute == nullptr) return;
  if (tag != u"InstanceUID") return readValue(property, *attribute, &definition, document_);
  if (document_.isLossless()) return LosslessSets::readInstanceUID(property, *attribute, set, element_, document_);
  readInstanceUID(property, nodeText(*attribute), set);
}

void FromXMLMetadataSetVisitor::readInstanceUID(Element& property, const wstring& text, const MetadataSet& set) {
  auto* identifier = dynamic_cast<SimpleElement*>(&property);
  const Types::UUID* current = set.instanceUID();
  if (identifier == nullptr || current == nullptr) return;
  const auto& known = document_.identifierFor(text, [current] { return current->toString(kDottedForm); });
  identifier->set(std::make_unique<Types::UUID>(known, kDottedForm), false);
}

void FromXMLMetadataSetVisitor::readExtensionElements(MetadataSet& set) {
  const DOMElement* container = findExtensionElements();
  if (container == nullptr) return;
  if (document_.isLossless()) LosslessSets::reportText(*container, document_);
  for (const DOMElement* child : XMLUtils::childElements(*container)) readExtension(*child, set);
}

const DOMElement* FromXMLMetadataSetVisitor::findExtensionElements() {
  if (children_) return children_->take(XMLBuilder::Vocabulary::kGroupsURI, u"ExtensionElements");
  return scope_.first(element_, wstring(kGroupsPrefix), u"ExtensionElements");
}

/// The name under which the dictionary may know an extension element. Prefixes count as the document element declares
/// them, and a name without a colon is its own prefix.
wstring FromXMLMetadataSetVisitor::extensionName(const DOMElement& child) const {
  if (document_.isLossless()) {
    return XMLUtils::utf16ToWstring(child.getNamespaceURI()) + u":" + XMLUtils::utf16ToWstring(child.getLocalName());
  }
  const wstring name = XMLUtils::utf16ToWstring(child.getNodeName());
  const auto colon = name.find(u':');
  const wstring prefix = name.substr(0, colon);
  const wstring localName = colon == wstring::npos ? name : name.substr(colon + 1);
  return attributeText(document_.root(), (u"xmlns:" + prefix).c_str()) + u":" + localName;
}

void FromXMLMetadataSetVisitor::readExtension(const DOMElement& child, MetadataSet& set) {
  if (const auto* definition = document_.findProperty(extensionName(child))) {
    readInvalid(std::make_unique<MetaMetadata::MisplacedAttribute>(definition), child, set);
  } else if (document_.isLossless()) {
    readUnknownLosslessly(child, set);
  } else {
    readUnknown(child, set);
  }
}

void FromXMLMetadataSetVisitor::readUnknown(const DOMElement& child, MetadataSet& set) {
  const auto tag = localTagOf(child, document_, unmarked_);
  const Element* property = readInvalid(std::make_unique<MetaMetadata::UnknownAttribute>(tag), child, set);
  if (document_.isLossless() && property != nullptr) reportSecond(*property, tag.value(), child, set);
}

/// Files have properties twice: then all but the first are unknown ones.
void FromXMLMetadataSetVisitor::reportSecond(const Element& property, uint16 tag, const DOMElement& child,
                                             const MetadataSet& set) {
  const auto* known = LosslessSets::knownProperty(tag, set, element_, document_);
  const bool isFirst = unknownTags_.insert(tag).second;
  if (known == nullptr && isFirst) return;
  const std::string what = known != nullptr ? "the property " + known->symbol() : "a property of its tag";
  document_.report().addUnconfirmed(ImportDiagnostic::Kind::kSecondElement, child,
                                    "the set has " + what + " already; this one is not read", &property);
}

void FromXMLMetadataSetVisitor::readUnknownLosslessly(const DOMElement& child, MetadataSet& set) {
  if (!LosslessSets::isUnknownProperty(child, document_)) return;
  try {
    readUnknown(child, set);
  } catch (const Exceptions::BaseException& error) {
    document_.report().add(ImportDiagnostic::Kind::kValue, child, error.message());
  }
}

const Element* FromXMLMetadataSetVisitor::readInvalid(auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute,
                                                      const DOMElement& child, MetadataSet& set) {
  const auto* definition = attribute->metaElement();
  Element& property = set.createInvalidElement(std::move(attribute));
  readValue(property, child, definition, document_);
  // What could not be read was reported, and is not in the set.
  if (!document_.isLossless() || property.wireValue() != nullptr) return &property;
  set.remove(property);
  return nullptr;
}

}  // namespace Vantor::XML2Partition
