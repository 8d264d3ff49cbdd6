#include "DocumentEdit.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Platform/Strings.h"
#include "ErrorText.h"
#include "XMLBuilder.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/DomToBuffer.h"

namespace Vantor::Tool {

using xercesc::DOMElement;

namespace {

const MetaMetadata::MetaElement& definitionOf(const MetadataSet& set, const std::string& name) {
  const wstring wide = Utils::stringToWstring(name);
  for (const auto& attribute : set.definition()->attributes()) {
    const auto& definition = *attribute.metaElement();
    if (definition.symbol() == name || definition.extensionAttribute(MetaMetadata::kXMLTagName) == wide) {
      return definition;
    }
  }
  throw CommandError("the set " + set.name() + " has no property '" + name + "'; see mxfxml dictionary " + set.name());
}

/// Whether a value is one text in a document.
bool isText(const MetaMetadata::MetaElement& definition) {
  using namespace Types::Identifiers;
  const auto type = definition.dataType();
  return isSimple(definition) && type != kTimestamp && type != kProductVersion && type != kRGBALayout &&
         type != kJ2KPictureComponent && type != kJ2KCodingStyleDefault && type != kJ2KQuantisationDefault;
}

bool isIdentifier(const MetaMetadata::MetaElement& definition) {
  return MetaMetadata::isIdentifierName(definition.extensionAttribute(MetaMetadata::kXMLTagName));
}

bool mayBeEmpty(const MetaMetadata::MetaElement& definition) {
  using namespace Types::Identifiers;
  for (const auto type : {kUTF16String, kUTF8String, kISO7String, kISO8String, kDataStream, kDataValue, kUnknown}) {
    if (definition.dataType() == type) return true;
  }
  return false;
}

/// @throws CommandError when a value cannot become that of a property.
void requireOneWord(const MetaMetadata::MetaElement& definition, const Assignment& assignment) {
  const auto& target = assignment.target;
  if (isIdentifier(definition) || !isText(definition)) {
    throw CommandError("the value of " + target.property + " cannot be told in one word; edit an export instead");
  }
  if (assignment.value.empty() && !mayBeEmpty(definition)) {
    throw CommandError("the value of " + target.property +
                       " cannot be empty; to take the property out, give --remove " + target.text);
  }
}

void appendText(DOMElement& element, const std::string& text) {
  element.appendChild(element.getOwnerDocument()->createTextNode(Utils::stringToWstring(text).c_str()));
}

void appendField(DOMElement& property, const char16_t* name, const std::string& text) {
  const wstring uri(MetaMetadata::kST434Types.uri);
  auto& field = *property.getOwnerDocument()->createElementNS(uri.c_str(), name);
  property.appendChild(&field);
  appendText(field, text);
}

void appendRational(DOMElement& property, const std::string& text) {
  const auto slash = text.find('/');
  if (slash == std::string::npos) throw CommandError("'" + text + "' is no rational; write it as 25/1");
  appendField(property, u"st377Types:Numerator", text.substr(0, slash));
  appendField(property, u"st377Types:Denominator", text.substr(slash + 1));
}

/// The child that holds a property; null where there is none.
DOMElement* findProperty(DOMElement& set, const MetaMetadata::MetaElement& definition) {
  const auto& uri = definition.extensionAttribute(MetaMetadata::kXMLNamespaceURI);
  const auto& tag = definition.extensionAttribute(MetaMetadata::kXMLTagName);
  for (DOMElement* child : XMLUtils::childElements(set)) {
    if (uri == child->getNamespaceURI() && tag == child->getLocalName()) return child;
  }
  return nullptr;
}

/// The same, emptied; a new one where there is none.
DOMElement& emptyProperty(DOMElement& set, const MetaMetadata::MetaElement& definition) {
  if (DOMElement* child = findProperty(set, definition)) {
    while (auto* content = child->getFirstChild()) child->removeChild(content)->release();
    return *child;
  }
  const auto& uri = definition.extensionAttribute(MetaMetadata::kXMLNamespaceURI);
  const auto& tag = definition.extensionAttribute(MetaMetadata::kXMLTagName);
  const wstring name = definition.extensionAttribute(MetaMetadata::kXMLDefaultPrefix) + u":" + tag;
  auto& child = *set.getOwnerDocument()->createElementNS(uri.c_str(), name.c_str());
  set.appendChild(&child);
  return child;
}

}  // namespace

DocumentEdit::DocumentEdit(PartitionMetadata& metadata)
    : metadata_(metadata), document_(XMLBuilder::partition2XML(&metadata, false, false).release()) {
  if (document_ == nullptr) throw CommandError("the metadata in the file have no Preface");
}

DocumentEdit::~DocumentEdit() = default;

wstring DocumentEdit::identifierOf(const MetadataSet& set) const {
  const auto* instanceUID = set.instanceUID();
  if (instanceUID == nullptr) throw CommandError("the set " + set.name() + " has no InstanceUID, which edits need");
  wstring text = instanceUID->toString(kDottedForm);
  const auto count = metadata_.findByInstanceUID(*instanceUID).size();
  if (count == 1) return text;
  throw CommandError(std::to_string(count) + " sets have the InstanceUID " + Utils::wstringToString(text) +
                     ", so that none of them can be edited");
}

DOMElement& DocumentEdit::elementOf(const MetadataSet& set) const {
  const wstring wanted = identifierOf(set);
  auto& root = *static_cast<xercesc::DOMDocument&>(*document_).getDocumentElement();
  // Without nesting, a set is a child of the root or of the container of floating sets.
  for (DOMElement* child : XMLUtils::childElements(root)) {
    if (wanted == child->getAttribute(u"rp210:InstanceUID")) return *child;
    for (DOMElement* floating : XMLUtils::childElements(*child)) {
      if (wanted == floating->getAttribute(u"rp210:InstanceUID")) return *floating;
    }
  }
  throw CommandError("the set " + set.name() + " has no InstanceUID that an export shows");
}

void DocumentEdit::apply(const MetadataSet& set, const Assignment& assignment) {
  const auto& definition = definitionOf(set, assignment.target.property);
  requireOneWord(definition, assignment);
  if (!assigned_.emplace(&set, &definition).second) {
    throw UsageError(assignment.target.text + " is given a value twice");
  }
  DOMElement& property = emptyProperty(elementOf(set), definition);
  if (definition.dataType() == Types::Identifiers::kRational) {
    appendRational(property, assignment.value);
  } else if (!assignment.value.empty()) {
    appendText(property, assignment.value);
  }
}

void DocumentEdit::remove(const MetadataSet& set, const PropertyChoice& choice) {
  const auto& definition = definitionOf(set, choice.property);
  if (isIdentifier(definition)) throw CommandError(choice.property + " is an identifier, which cannot be taken out");
  if (assigned_.count({&set, &definition}) != 0) {
    throw UsageError(choice.text + " is given a value and taken out at once");
  }
  auto& element = elementOf(set);
  if (DOMElement* found = findProperty(element, definition)) element.removeChild(found)->release();
}

std::string DocumentEdit::text() const {
  std::string bytes;
  XMLUtils::domToBytes(document_.get(), bytes, XMLUtils::EncodingType::kUTF8);
  return bytes;
}

}  // namespace Vantor::Tool
