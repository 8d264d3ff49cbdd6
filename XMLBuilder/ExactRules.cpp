#include "XMLBuilder/ExactRules.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "XMLBuilder/CollectionItems.h"
#include "XMLBuilder/DarkMetadataSetReader.h"
#include "XMLBuilder/FromXMLElementVisitor.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

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
    const auto& prefix = definition.extensionAttribute(MetaMetadata::kXMLDefaultPrefix);
    scope_.bindIfUnbound(prefix, kRegistrationAuthorityURI);
    return scope_.first(element_, prefix, definition.extensionAttribute(MetaMetadata::kXMLTagName));
  }

  const DOMNode* identifier(const wstring& tagName) override {
    return element_.getAttributeNode((u"rp210:" + tagName).c_str());
  }

  std::optional<Types::UUID> instanceUID(const DOMNode& attribute) override {
    const Types::UUID* current = set_.instanceUID();
    if (current == nullptr) return std::nullopt;
    return rules_.identifierFor(nodeText(attribute), [current] { return *current; });
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

  void finish() override {}

 private:
  /// The name under which the dictionary may know an extension element. Prefixes count as the document element declares
  /// them, and a name without a colon is its own prefix.
  wstring nameOf(const DOMElement& child) const {
    const wstring name = XMLUtils::utf16ToWstring(child.getNodeName());
    const auto colon = name.find(u':');
    const wstring prefix = name.substr(0, colon);
    const wstring localName = colon == wstring::npos ? name : name.substr(colon + 1);
    return attributeText(rules_.root(), (u"xmlns:" + prefix).c_str()) + u":" + localName;
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

/// Refuses a part of a value, naming the condition that it breaks.
void require(bool holds, const std::string& condition, const std::string& explanation, int line) {
  if (!holds) Exceptions::raise<Exceptions::InvalidFormat>({"{}: {}", {kValueSource, line}}, condition, explanation);
}

}  // namespace

const MetaMetadata::MetaMetadataSet* ExactRules::findSet(const DOMElement& element, std::u16string_view) {
  return definitions().findSet(XMLUtils::utf16ToWstring(element.getLocalName()));
}

bool ExactRules::isFloatingContainer(const DOMElement& element) const {
  return element.getNodeName() == Vocabulary::kFloatingContainer;
}

void ExactRules::readDarkSet(const DOMElement& element) { readDarkMetadataSet(element, blankText_, partition()); }

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
  const auto itemSize = isVariableSize(itemType) ? measuredItemSize(itemType, node) : typeSize(itemType);
  auto owned = make(static_cast<int>(itemSize));
  CollectionItems items(*owned);
  property.set(std::move(owned));
  for (const DOMElement* item : XMLUtils::childElements(node))
    items.append(createValueFromNode(itemType, *item, *this));
}

uint32 ExactRules::measuredItemSize(Identifier itemType, const DOMNode& node) {
  uint32 size = 0;
  for (const DOMElement* item : XMLUtils::childElements(node)) {
    const auto value = createValueFromNode(itemType, *item, *this);
    if (value == nullptr || (size != 0 && value->serializedSize() != size)) {
      Exceptions::raise<Exceptions::InvalidLength>(
          {"subElementSize == dataType -> serializedSize (): There is a collection in the XML that contains an ARRAY "
           "or COLLECTION that contain elements with different sizes.",
           {kValueSource, 970}});
    }
    size = value->serializedSize();
  }
  return size;
}

/// Elements that stand for a set somewhere else are named after it and this suffix.
bool ExactRules::isPointer(const DOMElement&, const XMLCh* name) const {
  return XMLUtils::utf16ToWstring(name).find(Vocabulary::kReferenceSuffix) != wstring::npos;
}

std::optional<Types::UUID> ExactRules::targetOf(const DOMElement& pointer) {
  const auto* attribute = pointer.getAttributes()->item(0);
  if (attribute == nullptr) return std::nullopt;
  return identifierFor(XMLUtils::utf16ToWstring(attribute->getNodeValue()), Types::Factories::UID::generateUUID);
}

bool ExactRules::isEmpty(const DOMNode& node) const {
  return node.getNodeType() != DOMNode::ATTRIBUTE_NODE && firstChild(node, blankText_) == nullptr;
}

auto_ptr<Types::SimpleDataType> ExactRules::textValue(Identifier type, const DOMNode& node) const {
  const bool isAttribute = node.getNodeType() == DOMNode::ATTRIBUTE_NODE;
  return readText(type, node, isAttribute ? nodeText(node) : textContent(*firstChild(node, blankText_), blankText_));
}

std::vector<const DOMElement*> ExactRules::fields(const DOMNode& node, std::u16string_view prefix,
                                                  const char16_t* name) {
  const auto found = rootScope_.all(node, wstring(prefix), name);
  return {found.begin(), found.end()};
}

const DOMElement* ExactRules::field(const DOMNode& node, std::u16string_view prefix, const char16_t* name) {
  return rootScope_.first(node, wstring(prefix), name);
}

void ExactRules::refuseMissing(const RequiredField& field) const {
  Exceptions::raise<Exceptions::InvalidFormat>(
      {"!{}.empty (): No '{}' element in XML metadata", {kValueSource, field.line}}, field.variable,
      wstring(field.name));
}

/// As unsigned 32 bits, of which the caller keeps what its type holds.
int64 ExactRules::fieldNumber(const wstring& text, int64, int64, const char16_t*) const {
  return Platform::readDecimal<uint32>(text);
}

Bytes ExactRules::fieldOctets(const DOMElement* field, const RequiredField& required) const {
  const wstring text = field == nullptr ? wstring() : fieldText(*field);
  if (text.empty()) refuseMissing(required);
  return parseHexString(text);
}

/// The number as it stands.
uint16 ExactRules::milliseconds(const wstring& text, const char16_t*) const {
  return static_cast<uint16>(Platform::readDecimal<uint32>(text));
}

const DOMNode& ExactRules::component(const DOMNode& node, const char16_t* name, const char* property, int line) {
  const auto* element = field(node, Vocabulary::kS422MTypesPrefix, name);
  const auto symbol = Utils::wstringToString(wstring(name));
  const auto explanation = "No '" + symbol + "' element from '" + property + "' in XML metadata";
  require(element != nullptr, "domComponentElement != 0", explanation, line);
  require(XMLUtils::utf16ToWstring(element->getLocalName()) == name,
          "retrieveNodeName (domComponentElement) == L\"" + symbol + "\"", explanation, line + 1);
  return *element;
}

}  // namespace Vantor::XML2Partition
