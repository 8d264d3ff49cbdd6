#include "XMLBuilder/LosslessSets.h"

#include <algorithm>
#include <string>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/StrongReference.h"
#include "Core/Types/WeakReference.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition::LosslessSets {

using xercesc::DOMElement;
using xercesc::DOMNode;
using Kind = ImportDiagnostic::Kind;

namespace {

constexpr std::u16string_view kXMLURI = u"http://www.w3.org/XML/1998/namespace";
constexpr std::u16string_view kSchemaInstanceURI = u"http://www.w3.org/2001/XMLSchema-instance";

std::string nameOf(const DOMNode& node) {
  return Utils::wstringToString(XMLUtils::utf16ToWstring(node.getLocalName()));
}
std::string namespaceOf(const DOMNode& node) {
  const auto uri = Utils::wstringToString(XMLUtils::utf16ToWstring(node.getNamespaceURI()));
  return uri.empty() ? "no namespace" : "the namespace " + uri;
}

std::string textOf(std::u16string_view text) { return Utils::wstringToString(wstring(text)); }

/// Elements that stand for a set elsewhere are named after it and this suffix, which no set's name has.
bool isPointer(const DOMElement& element) {
  constexpr auto kSuffix = XMLBuilder::Vocabulary::kReferenceSuffix;
  const std::u16string_view name = element.getLocalName();
  return name.size() > kSuffix.size() && name.substr(name.size() - kSuffix.size()) == kSuffix;
}

/// Whether an attribute says something of the document and nothing of the set.
bool isOfXML(const DOMNode& attribute) {
  const wstring uri = XMLUtils::utf16ToWstring(attribute.getNamespaceURI());
  return uri == XMLBuilder::Vocabulary::kXmlnsURI || uri == kXMLURI || uri == kSchemaInstanceURI;
}

bool isIdentifier(const DOMNode& attribute, const MetaMetadata::MetaMetadataSet& definition) {
  const wstring name = XMLUtils::utf16ToWstring(attribute.getLocalName());
  if (!MetaMetadata::isIdentifierName(name)) return false;
  if (XMLUtils::utf16ToWstring(attribute.getNamespaceURI()) != MetaMetadata::kLegacyElements.uri) return false;
  const auto& properties = definition.attributes();
  return std::any_of(properties.begin(), properties.end(), [&name](const MetaMetadata::MetaAttribute& property) {
    return property.metaElement()->extensionAttribute(MetaMetadata::kXMLTagName) == name;
  });
}

/// The property of a set that an element is named after; null for extension elements.
const MetaMetadata::MetaElement* propertyOf(const DOMElement& element,
                                            const MetaMetadata::MetaMetadataSet& definition) {
  const wstring name = XMLUtils::utf16ToWstring(element.getLocalName());
  const wstring uri = XMLUtils::utf16ToWstring(element.getNamespaceURI());
  for (const auto& attribute : definition.attributes()) {
    const auto& property = *attribute.metaElement();
    if (property.extensionAttribute(MetaMetadata::kXMLTagName) == name &&
        property.extensionAttribute(MetaMetadata::kXMLNamespaceURI) == uri) {
      return &property;
    }
  }
  return nullptr;
}

std::optional<Types::UUID> targetOf(const DOMElement& carrier, ImportDocument& document) {
  const auto text = nodeText(*LosslessForms::targetAttribute(carrier));
  try {
    return Types::UUID(LosslessForms::exactText(Types::Identifiers::kUUID, text), kDottedForm);
  } catch (const Exceptions::InvalidFormat& error) {
    document.report().addUnread(Kind::kValue, carrier, error.message());
    return std::nullopt;
  }
}

}  // namespace

std::optional<Types::UUID> instanceUIDOf(const DOMElement& element) {
  const auto* attribute = LosslessForms::identifierAttribute(element, u"InstanceUID");
  if (attribute == nullptr) return std::nullopt;
  try {
    return Types::UUID(LosslessForms::exactText(Types::Identifiers::kUUID, nodeText(*attribute)), kDottedForm);
  } catch (const Exceptions::InvalidFormat&) {
    return std::nullopt;  // reported when the set is filled
  }
}

const MetaMetadata::MetaMetadataSet* findSet(const DOMElement& element, ImportDocument& document) {
  const auto* definition = document.findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
  if (definition != nullptr && XMLUtils::utf16ToWstring(element.getNamespaceURI()) ==
                                   definition->extensionAttribute(MetaMetadata::kXMLNamespaceURI)) {
    return definition;
  }
  if (isPointer(element)) {
    document.report().addUnread(Kind::kReference, element,
                                "the reference " + nameOf(element) +
                                    " does not say to which set: it has no attribute " +
                                    "TargetInstance in the namespace " + textOf(XMLBuilder::Vocabulary::kTypesURI));
  } else {
    document.report().addUnknownUnread(element, "there is no set " + nameOf(element) + " in " + namespaceOf(element),
                                       definition == nullptr);
    if (const auto instanceUID = instanceUIDOf(element)) document.report().enterUnknown(*instanceUID);
  }
  return nullptr;
}

void enterUnnamed(MetadataSet& set, const DOMElement& element, ImportDocument& document) {
  const bool hasIdentifier = set.definition()->instanceUIDAttribute() != nullptr;
  if (!hasIdentifier || LosslessForms::identifierAttribute(element, u"InstanceUID") != nullptr) return;
  document.report().enterUnnamed(set, element);
}

void readInstanceUID(Element& property, const DOMNode& attribute, MetadataSet& set, const DOMElement& element,
                     ImportDocument& document) {
  auto* identifier = dynamic_cast<SimpleElement*>(&property);
  const auto instanceUID = instanceUIDOf(element);
  if (!instanceUID || identifier == nullptr) {
    document.report().add(Kind::kUnusableIdentifier, attribute,
                          "'" + Utils::wstringToString(nodeText(attribute)) +
                              "' is no InstanceUID; the set is given a new one, which nothing refers to");
    return;
  }
  identifier->set(std::make_unique<Types::UUID>(*instanceUID), false);
  document.report().enter(*instanceUID, {&set, &element});
}

auto_ptr<Types::Reference> buildReference(Types::Identifiers::Identifier type, const DOMElement& carrier,
                                          ImportDocument& document) {
  const auto target = targetOf(carrier, document);
  if (!target) return nullptr;
  document.report().refer(*target, carrier, LosslessForms::isDangling(carrier));
  const bool isStrong = type == Types::Identifiers::kStrongReference;
  if (isStrong && !LosslessForms::isDangling(carrier)) document.report().countPointer();
  if (isStrong) return std::make_unique<Types::StrongReference>(*target);
  if (type == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(*target);
  return nullptr;
}

bool isUnknownProperty(const DOMElement& element, ImportDocument& document) {
  if (LosslessForms::isGroupsElement(element, XMLBuilder::Vocabulary::kDarkElement)) return true;
  document.report().addUnknown(element, "there is no property " + nameOf(element) + " in " + namespaceOf(element));
  return false;
}

const MetaMetadata::MetaElement* knownProperty(uint16 tag, const MetadataSet& set, const DOMElement& element,
                                               ImportDocument& document) {
  const auto* label = document.partition().partitionDictionary().tryFind(tag);
  const auto& definition = *set.definition();
  const auto* attribute =
      label == nullptr ? definition.findAttributeByStaticTag(tag) : definition.findAttribute(*label);
  if (attribute == nullptr) return nullptr;
  const auto& known = *attribute->metaElement();
  // Sets without an InstanceUID have one that was made up.
  if (attribute == definition.instanceUIDAttribute()) {
    return LosslessForms::identifierAttribute(element, u"InstanceUID") == nullptr ? nullptr : &known;
  }
  const auto* property = set.find(known.key());
  return property != nullptr && property->wireValue() != nullptr ? &known : nullptr;
}

void reportText(const DOMElement& element, ImportDocument& document) {
  const auto text = LosslessForms::strayText(element);
  if (!text.empty()) document.report().add(Kind::kUnknownElement, element, text + "; it is not read");
}

void reportRoot(ImportDocument& document) {
  constexpr std::u16string_view kName = u"MetadataSets";
  const DOMElement& root = document.root();
  const wstring uri = XMLUtils::utf16ToWstring(root.getNamespaceURI());
  if (kName == root.getLocalName() && uri == XMLBuilder::Vocabulary::kRootURI) return;
  document.report().addUnknown(root, "the root element is " + nameOf(root) + " in " + namespaceOf(root) + ", not " +
                                         textOf(kName) + " in the namespace " +
                                         textOf(XMLBuilder::Vocabulary::kRootURI));
}

void reportUnread(const SetChildren& children, const MetaMetadata::MetaMetadataSet& definition,
                  ImportDocument& document) {
  for (const auto& child : children.unread()) {
    if (child.isSecond) {
      const ImportReport::Reading reading(document.report(), propertyOf(*child.element, definition));
      document.report().addUnread(Kind::kSecondElement, *child.element,
                                  "there is one " + nameOf(*child.element) + " already; this one is not read");
    } else {
      document.report().addUnknown(*child.element, "the set has no property " + nameOf(*child.element) + " in " +
                                                       namespaceOf(*child.element) + "; the element is not read");
    }
  }
}

void reportUnreadAttributes(const DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                            ImportDocument& document) {
  const auto& attributes = *element.getAttributes();
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    const DOMNode& attribute = *attributes.item(i);
    if (isOfXML(attribute) || isIdentifier(attribute, definition)) continue;
    document.report().addUnknown(attribute, "the set has no attribute " + nameOf(attribute) + " in " +
                                                namespaceOf(attribute) + "; it is not read");
  }
}

}  // namespace Vantor::XML2Partition::LosslessSets
