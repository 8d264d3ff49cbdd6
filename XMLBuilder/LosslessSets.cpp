#include "XMLBuilder/LosslessSets.h"

#include <string>
#include <vector>

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/StrongReference.h"
#include "Core/Types/WeakReference.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition::LosslessSets {

using xercesc::DOMElement;
using xercesc::DOMNode;
using Kind = ImportDiagnostic::Kind;

namespace {

constexpr const char* kSource = "XMLBuilder\\LosslessSets";

std::string nameOf(const DOMElement& element) {
  return Utils::wstringToString(XMLUtils::utf16ToWstring(element.getLocalName()));
}
std::string namespaceOf(const DOMElement& element) {
  const auto uri = Utils::wstringToString(XMLUtils::utf16ToWstring(element.getNamespaceURI()));
  return uri.empty() ? "no namespace" : "the namespace " + uri;
}

std::optional<Types::UUID> instanceUIDOf(const DOMElement& element) {
  const auto* attribute = LosslessForms::identifierAttribute(element, u"InstanceUID");
  if (attribute == nullptr) return std::nullopt;
  try {
    return Types::UUID(LosslessForms::exactText(Types::Identifiers::kUUID, nodeText(*attribute)), kDottedForm);
  } catch (const Exceptions::InvalidFormat&) {
    return std::nullopt;  // reported when the set is filled
  }
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

/// What an element of a reference leads to, as text.
wstring targetOf(const DOMElement& item) {
  const auto* target = LosslessForms::targetAttribute(item);
  if (target == nullptr) target = LosslessForms::identifierAttribute(item, u"InstanceUID");
  return target == nullptr ? wstring() : nodeText(*target);
}

bool isReference(const MetaMetadata::MetaElement& property) {
  const auto* collection = MetaMetadata::asCollection(property);
  const auto type = collection == nullptr ? property.dataType() : collection->dataSubType();
  return type == Types::Identifiers::kStrongReference || type == Types::Identifiers::kWeakReference;
}

/// Everything that a property's element tells: its text, or the sets that it leads to.
wstring contentOf(const DOMElement& element, bool isReferenceElement) {
  if (!isReferenceElement) return textContent(element, BlankText::kIgnore);
  wstring targets;
  for (const DOMElement* item : XMLUtils::childElements(element)) targets += targetOf(*item) + u" ";
  return targets;
}

/// Makes the sets that only this copy has within.
void readNestedSets(const DOMElement& property, ImportDocument& document) {
  for (const DOMElement* item : XMLUtils::childElements(property)) {
    if (LosslessForms::targetAttribute(*item) != nullptr) continue;
    if (const auto* definition = findSet(*item, document)) {
      importSet(*item, *definition, document, [](MetadataSet*) {});
    }
  }
}

void compareProperty(const MetaMetadata::MetaElement& property, SetChildren& first, SetChildren& copy,
                     const DOMElement& copyElement, ImportDocument& document) {
  const auto& tag = property.extensionAttribute(MetaMetadata::kXMLTagName);
  const auto& uri = property.extensionAttribute(MetaMetadata::kXMLNamespaceURI);
  const DOMElement* left = first.take(uri, tag);
  const DOMElement* right = copy.take(uri, tag);
  const bool leads = isReference(property);
  if (right != nullptr && leads) readNestedSets(*right, document);
  if (left == nullptr && right == nullptr) return;
  // A set that was written before is left out of the references to it.
  const bool isAbridged = leads && left != nullptr && right != nullptr &&
                          (left->getFirstElementChild() == nullptr || right->getFirstElementChild() == nullptr);
  if (isAbridged || (left != nullptr && right != nullptr && contentOf(*left, leads) == contentOf(*right, leads)))
    return;
  const ImportReport::Reading reading(document.report(), &property);
  document.report().add(Kind::kDifferentCopy, right == nullptr ? copyElement : *right,
                        "another copy of the set, at line " +
                            std::to_string(document.report().lineOf(left == nullptr ? copyElement : *left)) +
                            ", has something else, and counts");
}

}  // namespace

const MetaMetadata::MetaMetadataSet* findSet(const DOMElement& element, ImportDocument& document) {
  const auto* definition = document.findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
  if (definition != nullptr && XMLUtils::utf16ToWstring(element.getNamespaceURI()) ==
                                   definition->extensionAttribute(MetaMetadata::kXMLNamespaceURI)) {
    return definition;
  }
  document.report().addUnread(Kind::kUnknownElement, element,
                              "there is no set " + nameOf(element) + " in " + namespaceOf(element));
  return nullptr;
}

MetadataSet* readCopy(const DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                      ImportDocument& document) {
  const auto instanceUID = instanceUIDOf(element);
  const auto* known = instanceUID ? document.report().find(*instanceUID) : nullptr;
  if (known == nullptr) return nullptr;
  if (known->set->definition() != &definition) {
    throw Clash("line " + std::to_string(document.report().lineOf(element)) + ": the " + definition.symbol() +
                    " has the InstanceUID of the " + XML2Partition::nameOf(*known->set) + " at line " +
                    std::to_string(document.report().lineOf(*known->element)) + "; give one of them another",
                kSource, __LINE__);
  }
  const ImportReport::Reading reading(document.report(), *known->set);
  SetChildren first(*known->element);
  SetChildren copy(element);
  for (const auto& attribute : definition.attributes()) {
    compareProperty(*attribute.metaElement(), first, copy, element, document);
  }
  return known->set;
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
  if (type == Types::Identifiers::kStrongReference) return std::make_unique<Types::StrongReference>(*target);
  if (type == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(*target);
  return nullptr;
}

bool isUnknownProperty(const DOMElement& element, ImportDocument& document) {
  if (LosslessForms::isGroupsElement(element, XMLBuilder::Vocabulary::kDarkElement)) return true;
  document.report().add(Kind::kUnknownElement, element,
                        "there is no property " + nameOf(element) + " in " + namespaceOf(element));
  return false;
}

void reportUnread(const SetChildren& children, ImportDocument& document) {
  for (const auto& child : children.unread()) {
    if (child.isSecond) {
      document.report().add(Kind::kSecondElement, *child.element,
                            "there is one " + nameOf(*child.element) + " already; this one is not read");
    } else {
      document.report().add(Kind::kUnknownElement, *child.element,
                            "the set has no property " + nameOf(*child.element) + " in " + namespaceOf(*child.element) +
                                "; the element is not read");
    }
  }
}

}  // namespace Vantor::XML2Partition::LosslessSets
