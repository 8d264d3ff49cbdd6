#include "XMLBuilder/ExactRules.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "XMLBuilder/FromXMLElementVisitor.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using Types::Identifiers::Identifier;
using xercesc::DOMElement;
using xercesc::DOMNode;
using namespace XMLBuilder;

namespace {

/// Stands in for the namespace of an undeclared prefix. Elements and attributes are still looked up by it.
constexpr const char16_t* kRegistrationAuthorityURI = u"http://www.smpte-ra.org";

class ExactSource : public SetSource {
 public:
  ExactSource(const DOMElement& element, MetadataSet& set, ExactRules& rules)
      : element_(element), set_(set), rules_(rules), scope_(element) {
    // Looked up before a property can bind the prefix.
    mayHaveExtensions_ = !scope_.namespaceOf(wstring(Vocabulary::kGroupsPrefix)).empty();
  }

  const DOMElement* child(const MetaMetadata::MetaElement& definition) override {
    const auto& prefix = definition.extensionAttribute(MetaMetadata::kDefaultPrefix);
    scope_.bindIfUnbound(prefix, kRegistrationAuthorityURI);
    return scope_.first(element_, prefix, definition.extensionAttribute(MetaMetadata::kTagName));
  }

  const DOMNode* identifier(const wstring& tagName) override {
    return element_.getAttributeNode((u"rp210:" + tagName).c_str());
  }

  std::optional<Types::UUID> instanceUID(const DOMNode& attribute) override {
    const Types::UUID* current = set_.instanceUID();
    if (current == nullptr) return std::nullopt;
    return rules_.identifierFor(nodeText(attribute), current);
  }

  const DOMElement* extensions() override {
    if (!mayHaveExtensions_) return nullptr;
    return scope_.first(element_, wstring(Vocabulary::kGroupsPrefix),
                        wstring(Vocabulary::localName(Vocabulary::kExtensionElements)));
  }

  void readExtension(const DOMElement& child) override {
    if (const auto* definition = rules_.definitions().findProperty(nameOf(child))) {
      read(child, std::make_unique<MetaMetadata::MisplacedAttribute>(definition));
    } else {
      read(child, std::make_unique<MetaMetadata::UnknownAttribute>(localTagOf(child)));
    }
  }

 private:
  /// The name under which the dictionary may know an extension element. Prefixes count as the document element declares
  /// them, and a name without a colon is its own prefix.
  wstring nameOf(const DOMElement& child) const {
    const wstring name = XMLUtils::utf16ToWstring(child.getNodeName());
    const auto colon = name.find(u':');
    const wstring prefix = name.substr(0, colon);
    const wstring localName = colon == wstring::npos ? name : name.substr(colon + 1);
    return XMLUtils::utf16ToWstring(rules_.root().getAttribute((u"xmlns:" + prefix).c_str())) + u":" + localName;
  }

  /// The local tag that an unknown property was read under, or that its label has in the partition; without either, one
  /// that no other property has.
  Types::LocalTag localTagOf(const DOMElement& child) {
    auto& tags = rules_.partition().partitionDictionary();
    if (const auto* tag = child.getAttributeNode(Vocabulary::kStaticLocalTag.data())) {
      return Types::LocalTag(nodeText(*tag), kDottedForm);
    }
    if (const auto* label = child.getAttributeNode(Vocabulary::kUniversalLabel.data())) {
      return tags.findOrGenerate(Types::UniversalLabel(nodeText(*label), kDottedForm));
    }
    return tags.unlistedTag(unmarked_++);
  }

  void read(const DOMElement& child, auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute) {
    const auto* definition = attribute->metaElement();
    rules_.readValue(set_.createInvalidElement(std::move(attribute)), child, definition);
  }

  const DOMElement& element_;
  MetadataSet& set_;
  ExactRules& rules_;
  XMLUtils::ChildLookup scope_;
  bool mayHaveExtensions_;
  std::size_t unmarked_ = 0;  // unknown properties with neither tag nor label
};

Bytes darkValue(const wstring& key, const wstring& text) {
  constexpr const char* kSource = "XMLBuilder\\XML2Partition";
  if (text.size() % 2 != 0) {
    raise<InvalidFormat>({"DarkMetadataSet with key='{}' value has invalid Length", {kSource, 89}}, key);
  }
  if (auto bytes = Platform::bytesFromHex(text)) return *std::move(bytes);
  raise<InvalidFormat>({"DarkMetadataSet with key='{}' value contains non Hexadecimal characters", {kSource, 99}}, key);
}

uint32 measuredItemSize(Identifier itemType, const DOMNode& node, ReadingRules& rules) {
  uint32 size = 0;
  for (const DOMElement* item : XMLUtils::childElements(node)) {
    const auto value = createValueFromNode(itemType, *item, rules);
    if (value == nullptr || (size != 0 && value->serializedSize() != size)) {
      raise<Exceptions::InvalidLength>(
          {"subElementSize == dataType -> serializedSize (): There is a collection in the XML that contains an ARRAY "
           "or COLLECTION that contain elements with different sizes.",
           {kValueSource, 970}});
    }
    size = value->serializedSize();
  }
  return size;
}

}  // namespace

const MetaMetadata::MetaMetadataSet* ExactRules::findSet(const DOMElement& element, std::u16string_view) {
  return definitions().findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
}

bool ExactRules::isFloatingContainer(const DOMElement& element) const {
  return element.getNodeName() == Vocabulary::kFloatingContainer;
}

void ExactRules::readDarkSet(const DOMElement& element) {
  const wstring keyText = XMLUtils::utf16ToWstring(element.getAttribute(Vocabulary::kKey.data()));
  const KLV::Key key(keyText, kDottedForm);
  const auto octets = Platform::readDecimal<int32>(element.getAttribute(Vocabulary::kBEROctetCount.data()));
  KLV::Value value(darkValue(keyText, nodeText(element, blankText())));
  partition().addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, static_cast<uint8>(octets), std::move(value)));
}

auto_ptr<SetSource> ExactRules::open(const DOMElement& element, MetadataSet& set) {
  return std::make_unique<ExactSource>(element, set, *this);
}

void ExactRules::readValue(Element& property, const DOMNode& node, const MetaMetadata::MetaElement* definition) {
  FromXMLElementVisitor reader(node, definition, *this);
  property.accept(reader);
}

/// The property has the collection at once, and keeps the items before one that cannot be read.
void ExactRules::readCollection(CollectionElement& property, MakeCollection make, Identifier itemType,
                                const DOMNode& node) {
  const auto itemSize = isVariableSize(itemType) ? measuredItemSize(itemType, node, *this) : typeSize(itemType);
  auto owned = make(static_cast<int>(itemSize));
  CollectionItems items(*owned);
  property.set(std::move(owned));
  for (const DOMElement* item : XMLUtils::childElements(node))
    items.append(createValueFromNode(itemType, *item, *this));
}

/// Elements that stand for a set somewhere else are named after it and this suffix.
bool ExactRules::isPointer(const DOMElement&, const XMLCh* name) const {
  return XMLUtils::utf16ToWstring(name).find(Vocabulary::kReferenceSuffix) != wstring::npos;
}

std::optional<Types::UUID> ExactRules::targetOf(const DOMElement& pointer) {
  const auto* attribute = pointer.getAttributes()->item(0);
  if (attribute == nullptr) return std::nullopt;
  return identifierFor(XMLUtils::utf16ToWstring(attribute->getNodeValue()), nullptr);
}

const Types::UUID& ExactRules::identifierFor(const wstring& text, const Types::UUID* own) {
  const auto known = identifiers_.find(text);
  if (known != identifiers_.end()) return known->second;
  return identifiers_.emplace(text, own == nullptr ? Types::Factories::UID::generateUUID() : *own).first->second;
}

auto_ptr<Types::SimpleDataType> ExactRules::textValue(Identifier type, const DOMNode& node) const {
  const bool isAttribute = node.getNodeType() == DOMNode::ATTRIBUTE_NODE;
  return readText(type, node, isAttribute ? nodeText(node) : textContent(*firstChild(node, blankText()), blankText()));
}

void ExactRules::refuseMissing(const Field& field) const {
  raise<InvalidFormat>({"!{}.empty (): No '{}' element in XML metadata", {kValueSource, field.line}}, field.variable,
                       wstring(field.name));
}

/// As unsigned 32 bits, of which the caller keeps what its type holds.
int64 ExactRules::fieldNumber(const wstring& text, int64, int64, const char16_t*) const {
  return Platform::readDecimal<uint32>(text);
}

Bytes ExactRules::fieldOctets(const wstring& text, const Field& field) const {
  if (text.empty()) refuseMissing(field);
  return parseHexString(text);
}

/// The number as it stands.
uint16 ExactRules::milliseconds(const wstring& text, const char16_t*) const {
  return static_cast<uint16>(Platform::readDecimal<uint32>(text));
}

const DOMNode& ExactRules::component(const DOMNode& node, const char16_t* name, const char* property, int line) {
  const auto* element = rootScope_.first(node, wstring(Vocabulary::kS422MTypesPrefix), name);
  if (element != nullptr) return *element;
  raise<InvalidFormat>({"domComponentElement != 0: No '{}' element from '{}' in XML metadata", {kValueSource, line}},
                       wstring(name), property);
}

}  // namespace Vantor::XML2Partition
