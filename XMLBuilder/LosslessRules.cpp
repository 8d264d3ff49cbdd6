#include "XMLBuilder/LosslessRules.h"

#include <algorithm>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/Metadata/ElementFactory.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/DataValue.h"
#include "Core/Types/Factories.h"
#include "Core/Types/LocalTag.h"
#include "Core/Types/UTF16.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/FromXMLElementVisitor.h"
#include "XMLBuilder/LosslessCopies.h"
#include "XMLBuilder/LosslessDarkSets.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/LosslessSet.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using Exceptions::raise;
using Types::Identifiers::Identifier;
using xercesc::DOMElement;
using xercesc::DOMNode;
using XMLUtils::viewOf;
using Kind = Diagnostic::Kind;
using namespace XMLBuilder;

namespace {

constexpr std::u16string_view kXMLURI = u"http://www.w3.org/XML/1998/namespace";
constexpr std::u16string_view kSchemaInstanceURI = u"http://www.w3.org/2001/XMLSchema-instance";

std::string textOf(const XMLCh* text) { return Utils::wstringToString(XMLUtils::utf16ToWstring(text)); }

/// Elements that stand for a set elsewhere are named after it and this suffix, which no set's name has.
bool hasPointerName(const DOMElement& element) {
  constexpr auto kSuffix = Vocabulary::kReferenceSuffix;
  const std::u16string_view name = element.getLocalName();
  return name.size() > kSuffix.size() && name.substr(name.size() - kSuffix.size()) == kSuffix;
}

/// Whether an attribute belongs to XML itself: a namespace, `xml:` or `xsi:`.
bool isOfXML(const DOMNode& attribute) {
  const auto uri = viewOf(attribute.getNamespaceURI());
  return uri == Vocabulary::kXmlnsURI || uri == kXMLURI || uri == kSchemaInstanceURI;
}

/// Whether an element is in the namespace of the children of compound values, in either vocabulary.
bool isField(const DOMElement& child, std::u16string_view prefix) {
  const auto uri = viewOf(child.getNamespaceURI());
  if (prefix == Vocabulary::kS422MTypesPrefix) return uri == Vocabulary::kS422MTypesURI;
  return uri == Vocabulary::kTypesURI || uri == MetaMetadata::kST434Types.uri;
}

using Values = std::vector<auto_ptr<Types::SimpleDataType>>;

bool isText(Identifier type) {
  using namespace Types::Identifiers;
  return type == kISO7String || type == kISO8String || type == kUTF16String || type == kUTF8String;
}

/// Pads texts with NULs to the length of the longest. Files have them in this form; documents leave the NULs out.
void padTexts(Values& texts, Identifier type) {
  uint32 longest = 0;
  for (const auto& text : texts) longest = std::max(longest, text->encodedSize());
  uint64 padding = 0;
  for (auto& text : texts) {
    padding += longest - text->encodedSize();
    if (padding > kMostPadding) {
      raise<InvalidLength>("the items are of different lengths, and padding them takes more than {} octets",
                           kMostPadding);
    }
    if (text->encodedSize() == longest) continue;
    Bytes octets(text->rawBuffer(), text->rawBuffer() + text->encodedSize());
    octets.resize(longest);
    if (auto padded = Types::Factories::fromBytes(type, octets.data(), octets.size())) text = std::move(padded);
  }
}

/// The size of the first item that has any; other sizes are found when the items are put together.
uint32 itemSizeOf(const Values& values, Identifier type) {
  if (!isVariableSize(type)) return typeSize(type);
  uint32 size = 0;
  for (const auto& value : values) {
    if (size != 0 && value->serializedSize() != size) {
      raise<InvalidLength>("the items are not all of one size, which they have to be");
    }
    size = value->serializedSize();
  }
  return size;
}

void appendMark(const DOMElement& property, std::vector<UnknownMark>& marks) {
  try {
    marks.push_back(unknownMarkOf(property));
  } catch (const Exceptions::BaseException&) {
    // Reported when the property is read.
  }
}

/// The element of the set that an unknown property is in, below the one of its extensions; null for none.
const DOMElement* setAround(const DOMElement& property) {
  const auto* set = property.getParentNode()->getParentNode();
  const bool isElement = set != nullptr && set->getNodeType() == DOMNode::ELEMENT_NODE;
  return isElement ? static_cast<const DOMElement*>(set) : nullptr;
}

}  // namespace

// Sets.

void LosslessRules::begin() {
  const bool isKnown = root().getLocalName() == Vocabulary::localName(Vocabulary::kRoot) &&
                       viewOf(root().getNamespaceURI()) == Vocabulary::kRootURI;
  if (!isKnown) report_.add(Kind::kUnknownRoot, root(), nameOf(root()));
  checkContainer(root());
  for (const auto* child : XMLUtils::childElements(root())) {
    if (isFloatingContainer(*child)) LosslessDarkSets::reserveTags(*child, partition());
  }
  enterLabels(unknownMarks(), partition().partitionDictionary());
}

const MetaMetadata::MetaMetadataSet* LosslessRules::definitionOf(const DOMElement& element) {
  const auto* definition = definitions().findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
  if (definition == nullptr) return nullptr;
  const bool isOfNamespace =
      viewOf(element.getNamespaceURI()) == definition->extensionAttribute(MetaMetadata::kNamespaceURI);
  return isOfNamespace ? definition : nullptr;
}

std::vector<UnknownMark> LosslessRules::unknownMarks() {
  std::vector<UnknownMark> marks;
  for (const DOMNode* node = &root(); node != nullptr; node = XMLUtils::nextInTree(*node, root())) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    const auto& element = static_cast<const DOMElement&>(*node);
    if (!LosslessForms::isGroupsElement(element, Vocabulary::kDarkElement)) continue;
    const auto* set = setAround(element);
    if (set != nullptr && definitionOf(*set) != nullptr) appendMark(element, marks);
  }
  return marks;
}

const MetaMetadata::MetaMetadataSet* LosslessRules::findSet(const DOMElement& element, std::u16string_view other) {
  if (!other.empty() && LosslessForms::isGroupsElement(element, other)) return nullptr;
  if (const auto* definition = definitionOf(element)) return definition;
  auto name = nameOf(element);
  if (hasPointerName(element)) {
    report_.addUnread(Kind::kPointerWithoutTarget, element, {name.front()});
  } else {
    const auto instanceUID = instanceUIDOf(element);
    if (const auto newName = newNameOf(element)) {
      report_.newSets().noteUnknown(*newName, report_.lineOf(element), name.front());
    }
    name.push_back(instanceUID ? Utils::wstringToString(instanceUID->toString(kDottedForm)) : "");
    const bool isKnownName = definitions().findSet(XMLUtils::utf16ToWstring(element.getLocalName())) != nullptr;
    const auto kind = isKnownName ? Kind::kSetOfOtherNamespace : Kind::kUnknownSet;
    report_.addUnread(kind, element, std::move(name));
  }
  return nullptr;
}

bool LosslessRules::isFloatingContainer(const DOMElement& element) const {
  return LosslessForms::isGroupsElement(element, Vocabulary::kFloatingContainer);
}

void LosslessRules::readDarkSet(const DOMElement& element) {
  // Any other was reported as an unknown set.
  if (LosslessForms::isGroupsElement(element, Vocabulary::kDarkMetadata)) LosslessDarkSets::read(element, *this);
}

MetadataSet* LosslessRules::findCopy(const DOMElement& element, const MetaMetadata::MetaMetadataSet& definition) {
  return LosslessCopies::read(element, definition, *this);
}

auto_ptr<SetSource> LosslessRules::open(const DOMElement& element, MetadataSet& set) {
  return std::make_unique<LosslessSet>(element, set, *this);
}

void LosslessRules::checkContainer(const DOMElement& container) {
  reportText(container);
  reportAttributes(container);
}

// Properties.

void LosslessRules::readValue(Element& property, const DOMNode& node, const MetaMetadata::MetaElement* definition) {
  const LosslessReport::Reading reading(report_, definition);
  if (node.getNodeType() == DOMNode::ELEMENT_NODE) {
    reportValueAttributes(static_cast<const DOMElement&>(node), definition);
  }
  FromXMLElementVisitor reader(node, definition, *this);
  try {
    property.accept(reader);
  } catch (const Clash&) {
    throw;
  } catch (const Exceptions::LimitExceeded&) {
    throw;
  } catch (const Exceptions::BaseException& error) {
    report_.addUnread(Kind::kInvalidValue, node, {error.message()});
  }
}

/// When one item cannot be read, the property gets none.
void LosslessRules::readCollection(CollectionElement& property, MakeCollection make, Identifier itemType,
                                   const DOMNode& node) {
  LosslessForms::refuseText(node);
  Values values;
  for (const DOMElement* item : XMLUtils::childElements(node)) {
    values.push_back(createValueFromNode(itemType, *item, *this));
  }
  if (isText(itemType)) padTexts(values, itemType);
  auto collection = make(static_cast<int>(itemSizeOf(values, itemType)));
  CollectionItems items(*collection);
  for (auto& value : values) items.append(std::move(value));
  property.set(std::move(collection));
}

void LosslessRules::checkReferences(const DOMNode& node, bool toOne) {
  LosslessForms::refuseText(node);
  if (!toOne) return;
  const auto* first = XMLUtils::firstChildElement(node);
  if (first == nullptr) return report_.addUnread(Kind::kEmptyReference, node);
  for (const auto* next = first->getNextElementSibling(); next != nullptr; next = next->getNextElementSibling()) {
    report_.addUnread(Kind::kSecondReference, *next);
  }
}

bool LosslessRules::isPointer(const DOMElement& element, const XMLCh*) const {
  return LosslessForms::targetAttribute(element) != nullptr;
}

std::optional<Types::UUID> LosslessRules::targetOf(const DOMElement& pointer) {
  checkPointer(pointer);
  const auto text = nodeText(*LosslessForms::targetAttribute(pointer));
  if (NewSets::isName(text)) return report_.newSets().refer(text, report_.lineOf(pointer));
  try {
    const Types::UUID target(Types::checkedText(Types::Identifiers::kUUID, text), kDottedForm);
    report_.refer(target, pointer, pointer.getLocalName() == Vocabulary::localName(Vocabulary::kDangling));
    return target;
  } catch (const InvalidFormat& error) {
    report_.addUnread(Kind::kInvalidValue, pointer, {error.message()});
    return std::nullopt;
  }
}

void LosslessRules::checkPointer(const DOMElement& pointer) {
  if (!hasPointerName(pointer)) return report_.addUnread(Kind::kTargetOfSet, pointer, {nameOf(pointer).front()});
  if (pointer.getFirstElementChild() != nullptr || !LosslessForms::strayText(pointer).empty()) {
    report_.addUnread(Kind::kContentInPointer, pointer, {nameOf(pointer).front()});
  }
  reportAttributes(pointer, Vocabulary::kTypesURI, {Vocabulary::localName(Vocabulary::kTargetInstance)});
}

// Values.

auto_ptr<Types::SimpleDataType> LosslessRules::emptyValue(Identifier type) const {
  if (auto value = Types::emptyValue(type)) return value;
  raise<InvalidFormat>("the element is empty, and the type {} has no empty value", Types::Identifiers::name(type));
}

auto_ptr<Types::SimpleDataType> LosslessRules::textValue(Identifier type, const DOMNode& node) const {
  using namespace Types::Identifiers;
  const auto text = Types::checkedText(type, LosslessForms::plainText(node));
  // The exact reader has no form for two of these types, and loses a UTF16 that is white space.
  if (type == kLocalTag) return std::make_unique<Types::LocalTag>(text, kDottedForm);
  if (type == kDataValue) return std::make_unique<Types::DataValue>(parseHexString(text));
  if (type == kUTF16) return std::make_unique<Types::UTF16>(text.empty() ? uint16{0} : static_cast<uint16>(text[0]));
  if (auto value = readText(type, node, text)) return value;
  raise<InvalidFormat>("documents have no form for the type {}", name(type));
}

std::vector<DOMElement*> LosslessRules::fields(const DOMNode& node, std::u16string_view prefix, const char16_t* name) {
  auto found = XMLUtils::childElements(node);
  const auto isOther = [&](const DOMElement* child) {
    return viewOf(child->getLocalName()) != name || !isField(*child, prefix);
  };
  found.erase(std::remove_if(found.begin(), found.end(), isOther), found.end());
  return found;
}

void LosslessRules::checkFields(const DOMNode& node, std::u16string_view prefix, FieldNames names, bool mayRepeat) {
  LosslessForms::refuseText(node);
  std::vector<std::u16string_view> left(names.begin(), names.end());
  for (const DOMElement* child : XMLUtils::childElements(node)) {
    const std::u16string_view name = child->getLocalName();
    if (!isField(*child, prefix) || std::find(names.begin(), names.end(), name) == names.end()) {
      raise<InvalidFormat>("{} is no part of the value", Types::excerpt(child->getNodeName()));
    }
    if (mayRepeat) continue;
    const auto found = std::find(left.begin(), left.end(), name);
    if (found == left.end()) raise<InvalidFormat>("{} is there a second time", Types::excerpt(child->getNodeName()));
    left.erase(found);
  }
}

wstring LosslessRules::fieldText(const DOMElement& field) const { return LosslessForms::plainText(field); }

void LosslessRules::refuseMissing(const Field& field) const {
  raise<InvalidFormat>("{} is missing or empty, and the value needs it", wstring(field.name));
}

int64 LosslessRules::fieldNumber(const wstring& text, int64 least, int64 most, const char16_t* name) const {
  if (text.empty()) refuseMissing({name});
  return LosslessForms::number(text, least, most, name);
}

/// None for an empty text, too.
Bytes LosslessRules::fieldOctets(const wstring& text, const Field&) const {
  return parseHexString(Types::checkedText(Types::Identifiers::kDataValue, text));
}

/// Documents have units of 4 ms (ST 377-1).
uint16 LosslessRules::milliseconds(const wstring& text, const char16_t* name) const {
  return static_cast<uint16>(fieldNumber(text, 0, 0xff, name) * 4);
}

/// The export writes no element around the value.
const DOMNode& LosslessRules::component(const DOMNode& node, const char16_t* name, const char*, int) {
  const auto found = fields(node, Vocabulary::kS422MTypesPrefix, name);
  if (found.empty()) return node;
  checkFields(node, Vocabulary::kS422MTypesPrefix, {name}, false);
  return *found.front();
}

// Reports.

void LosslessRules::reportText(const DOMElement& element) {
  auto text = LosslessForms::strayText(element);
  if (!text.empty()) report_.add(Kind::kStrayText, element, {std::move(text), textOf(element.getLocalName())});
}

void LosslessRules::reportAttributes(const DOMElement& element, std::u16string_view uri,
                                     const std::vector<std::u16string_view>& names, Kind kind) {
  const auto& attributes = *element.getAttributes();
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    const DOMNode& attribute = *attributes.item(i);
    const bool isKnown = viewOf(attribute.getNamespaceURI()) == uri &&
                         std::find(names.begin(), names.end(), viewOf(attribute.getLocalName())) != names.end();
    if (isKnown || isOfXML(attribute)) continue;
    auto arguments = nameOf(attribute);
    if (kind == Kind::kStrayAttribute) arguments.insert(arguments.begin(), textOf(element.getLocalName()));
    report_.add(kind, attribute, std::move(arguments));
  }
}

void LosslessRules::reportValueAttributes(const DOMElement& property, const MetaMetadata::MetaElement* definition) {
  if (definition == nullptr) {
    return reportAttributes(
        property, Vocabulary::kGroupsURI,
        {Vocabulary::localName(Vocabulary::kStaticLocalTag), Vocabulary::localName(Vocabulary::kUniversalLabel)});
  }
  reportAttributes(property);
  if (isReference(*definition)) return;
  for (const DOMElement* part = property.getFirstElementChild(); part != nullptr;
       part = part->getNextElementSibling()) {
    reportValueAttributes(*part, definition);
  }
}

std::vector<std::string> LosslessRules::nameOf(const DOMNode& node) {
  return {textOf(node.getLocalName()), textOf(node.getNamespaceURI())};
}

}  // namespace Vantor::XML2Partition
