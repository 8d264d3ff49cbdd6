#include "XMLBuilder/FromXMLElementVisitor.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/Factories.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/ImportReport.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using Types::Identifiers::Identifier;
using xercesc::DOMElement;

namespace {

constexpr int kItemSizeLine = 970;
constexpr const char* kUnequalItems =
    "subElementSize == dataType -> serializedSize (): There is a collection in the XML that contains an ARRAY or "
    "COLLECTION that contain elements with different sizes.";

constexpr uint64 kMostPadding = uint64{1} << 24;

[[noreturn]] void throwUnequalItems(const ImportDocument& document) {
  const std::string text =
      document.isLossless() ? "the items are not all of one size, which they have to be" : kUnequalItems;
  throw Exceptions::InvalidLength(text, kValueSource, kItemSizeLine);
}

/// Items without octets take the room of the others: a short document must not ask for gigabytes that way.
void checkPadding(uint64 emptyItems, uint32 size) {
  if (emptyItems * size <= kMostPadding) return;
  throw Exceptions::InvalidLength(
      std::to_string(emptyItems) + " items without octets cannot be padded to " + std::to_string(size) + " octets each",
      kValueSource, __LINE__);
}

/// Types whose values have no size but their own.
bool isVariableSize(Identifier type) {
  return type == Types::Identifiers::kDataStream || type == Types::Identifiers::kISO7String ||
         type == Types::Identifiers::kUnknown || type == Types::Identifiers::kUTF16String ||
         type == Types::Identifiers::kDataValue || type == Types::Identifiers::kISO8String;
}

auto_ptr<Types::Reference> makeReferenceTo(Identifier type, const wstring& text) {
  if (type == Types::Identifiers::kStrongReference) return std::make_unique<Types::StrongReference>(text);
  if (type == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(text);
  return nullptr;
}

/// Elements that stand for a set somewhere else are named after it and this suffix.
bool namesReference(const XMLCh* name) {
  return XMLUtils::utf16ToWstring(name).find(XMLBuilder::Vocabulary::kReferenceSuffix) != wstring::npos;
}

}  // namespace

FromXMLElementVisitor::FromXMLElementVisitor(const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition,
                                             ImportDocument& document)
    : node_(node),
      dataType_(definition == nullptr ? Types::Identifiers::kUnknown : definition->dataType()),
      document_(document) {
  const auto* collection = definition == nullptr ? nullptr : MetaMetadata::asCollection(*definition);
  if (collection != nullptr) dataSubType_ = collection->dataSubType();
}

void FromXMLElementVisitor::visit(SimpleElement& element) {
  auto value = createValueFromNode(dataType_, node_, document_);
  if (value != nullptr) element.set(std::move(value), false);
}

void FromXMLElementVisitor::visit(ArrayElement& element) { readCollection<Types::Array>(element); }

void FromXMLElementVisitor::visit(BatchElement& element) { readCollection<Types::Batch>(element); }

/// A lossless import leaves a property alone of which it cannot read every item.
template <class Collection>
void FromXMLElementVisitor::readCollection(CollectionElement& element) {
  refuseText();
  auto owned = std::make_unique<Collection>(itemSize());
  auto& collection = *owned;
  if (!document_.isLossless()) element.set(std::move(owned));
  readItems(collection);
  if (owned != nullptr) element.set(std::move(owned));
}

void FromXMLElementVisitor::refuseText() const {
  if (document_.isLossless()) LosslessForms::refuseText(node_);
}

int FromXMLElementVisitor::itemSize() const {
  return static_cast<int>(isVariableSize(dataSubType_) ? measuredItemSize()
                                                       : Types::Identifiers::typeSize(dataSubType_));
}

uint32 FromXMLElementVisitor::measuredItemSize() const {
  uint32 size = 0;
  for (const DOMElement* item : XMLUtils::childElements(node_)) {
    const auto value = createValueFromNode(dataSubType_, *item, document_);
    if (value == nullptr || (size != 0 && value->serializedSize() != size)) throwUnequalItems(document_);
    size = value->serializedSize();
  }
  return size;
}

void FromXMLElementVisitor::readItems(Types::Collection& collection) {
  uint64 emptyItems = 0;
  for (const DOMElement* item : XMLUtils::childElements(node_)) {
    auto value = createValueFromNode(dataSubType_, *item, document_);
    if (value != nullptr && value->encodedSize() == 0) checkPadding(++emptyItems, collection.itemSize());
    collection.append(std::move(value));
  }
}

template <class References>
void FromXMLElementVisitor::readReferences(References& element) {
  refuseText();
  const auto items = XMLUtils::childElements(node_);
  for (const DOMElement* item : items) readMember(element, *item);
  if (items.empty()) makeEmpty(element);
}

template <class References>
void FromXMLElementVisitor::readMember(References& element, const DOMElement& item) {
  if (standsForSet(item, item.getNodeName())) {
    auto reference = buildReference(dataSubType_, item);
    if (reference != nullptr) element.appendUnverifiedReference(std::move(reference));
  } else if (const auto* set = buildNestedSet(item)) {
    element.append(set);
  }
}

/// A collection of references comes to be with its first member; one that is to have none loses it again.
template <class References>
void FromXMLElementVisitor::makeEmpty(References& element) {
  const Types::UUID none;
  auto placeholder = makeReferenceTo(dataSubType_, none.toString(kDottedForm));
  if (placeholder == nullptr) return;
  element.appendUnverifiedReference(std::move(placeholder));
  element.removeAt(0);
}

void FromXMLElementVisitor::visit(ReferenceElement& element) {
  refuseText();
  const DOMElement* child = XMLUtils::firstChildElement(node_);
  if (child == nullptr) return reportLostReference();
  reportFurtherReferences(*child);
  if (standsForSet(*child, child->getLocalName())) {
    auto reference = buildReference(dataType_, *child);
    if (reference != nullptr) element.setUnverifiedReference(std::move(reference));
  } else if (const auto* set = buildNestedSet(*child)) {
    element.set(set);
  }
}

auto_ptr<Types::Reference> FromXMLElementVisitor::buildReference(Identifier type, const DOMElement& carrier) {
  if (document_.isLossless()) return LosslessSets::buildReference(type, carrier, document_);
  const auto* attribute = carrier.getAttributes()->item(0);
  if (attribute == nullptr) return nullptr;
  const auto& identifier = document_.identifierFor(XMLUtils::utf16ToWstring(attribute->getNodeValue()), [] {
    return Types::Factories::UID::generateUUID().toString(kDottedForm);
  });
  return makeReferenceTo(type, identifier);
}

const MetadataSet* FromXMLElementVisitor::buildNestedSet(const DOMElement& element) {
  const auto* definition = document_.isLossless() ? LosslessSets::findSet(element, document_)
                                                  : document_.findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
  if (definition == nullptr) return nullptr;
  if (document_.isLossless()) document_.report().countNested();
  return importSet(element, *definition, document_, [](MetadataSet*) {});
}

bool FromXMLElementVisitor::standsForSet(const DOMElement& element, const XMLCh* name) const {
  return document_.isLossless() ? LosslessForms::targetAttribute(element) != nullptr : namesReference(name);
}

void FromXMLElementVisitor::reportLostReference() const {
  if (!document_.isLossless()) return;
  document_.report().addUnread(ImportDiagnostic::Kind::kReference, node_, "the element names no set");
}

void FromXMLElementVisitor::reportFurtherReferences(const DOMElement& first) const {
  if (!document_.isLossless()) return;
  for (const auto* next = first.getNextElementSibling(); next != nullptr; next = next->getNextElementSibling()) {
    document_.report().add(ImportDiagnostic::Kind::kSecondElement, *next,
                           "the property refers to one set, and has that already; this one is not read");
  }
}

void readValue(Element& property, const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition,
               ImportDocument& document) {
  FromXMLElementVisitor reader(node, definition, document);
  if (!document.isLossless()) return property.accept(reader);
  const ImportReport::Reading reading(document.report(), definition);
  try {
    property.accept(reader);
  } catch (const LosslessSets::Clash&) {
    throw;
  } catch (const Exceptions::BaseException& error) {
    document.report().addUnread(ImportDiagnostic::Kind::kValue, node, error.message());
  }
}

}  // namespace Vantor::XML2Partition
