#include "tests/XMLBuilder/NaiveExporter.h"

#include <algorithm>
#include <cstdio>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/MetaAttributes.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Numbers.h"
#include "Core/Types/Types.h"
#include "XMLUtils/Initializer.h"

namespace Vantor::XMLBuilder {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

const wstring kGroups = u"urn:SMPTE:Groups:MXF";
const wstring kTypes = u"urn:SMPTE:Types:MXF";
const wstring kXmlns = u"http://www.w3.org/2000/xmlns/";

wstring ext(const MetaMetadata::MetaMetadataSet& definition, const char16_t* name) {
  return definition.extensionAttribute(name);
}
wstring ext(const MetaMetadata::MetaElement& definition, const char16_t* name) {
  return definition.extensionAttribute(name);
}

template <class Definition>
wstring qualifiedName(const Definition& definition) {
  return ext(definition, u"XMLDefaultPrefix") + u":" + ext(definition, u"XMLTagName");
}

wstring hex(const uint8* bytes, std::size_t count) {
  wstring text;
  for (std::size_t i = 0; i < count; ++i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(bytes[i]));
    text += static_cast<char16_t>(digits[0]);
    text += static_cast<char16_t>(digits[1]);
  }
  return text;
}

/// The first child element of that name, or null.
DOMElement* firstChildCalled(DOMNode* parent, const wstring& name) {
  for (DOMNode* child = parent->getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (child->getNodeType() == DOMNode::TEXT_NODE) continue;
    if (wstring(child->getNodeName()) == name) return static_cast<DOMElement*>(child);
  }
  return nullptr;
}

bool contains(const std::vector<const MetadataSet*>& sets, const MetadataSet* set) {
  return std::find(sets.begin(), sets.end(), set) != sets.end();
}

/// Every set with an InstanceUID, by asking every set.
std::vector<const MetadataSet*> setsCalled(const PartitionMetadata& partition, const Types::UUID& uid) {
  std::vector<const MetadataSet*> found;
  for (const MetadataSet* set : partition.sets()) {
    if (set->instanceUID() != nullptr && *set->instanceUID() == uid) found.push_back(set);
  }
  return found;
}

/// The properties that have a place, in order, by looking for the lowest again and again.
std::vector<const Element*> inSchemaOrder(const MetadataSet& set) {
  std::vector<std::pair<uint32, const Element*>> left;
  for (const Element& element : set) {
    const auto& attribute = dynamic_cast<const MetaMetadata::MetaAttribute&>(element.metaAttribute());
    const wstring index = attribute.extensionAttribute(u"SchemaIndex");
    if (!index.empty()) left.emplace_back(Platform::readDecimal<uint32>(index), &element);
  }
  std::vector<const Element*> ordered;
  while (!left.empty()) {
    const auto lowest = std::min_element(left.begin(), left.end(),
                                         [](const auto& one, const auto& other) { return one.first < other.first; });
    ordered.push_back(lowest->second);
    left.erase(lowest);
  }
  return ordered;
}

}  // namespace

/// Receives one property; members of a collection of references share the element of the first one.
class NaiveElementVisitor : public Metadata::Visitors::ElementVisitor {
 public:
  NaiveElementVisitor(NaiveExporter& exporter, DOMElement* set, NaiveExporter::Register& written)
      : exporter_(exporter), set_(set), written_(written) {}

  void visit(const ReferenceBatchElement&) override {}
  void visit(const ReferenceArrayElement&) override {}
  void visit(const BatchElement& element) override { exporter_.writeCollection(element, element.value(), set_); }
  void visit(const ArrayElement& element) override { exporter_.writeCollection(element, element.value(), set_); }
  void visit(const SimpleElement& element) override { exporter_.writeSimple(element, element.value(), set_); }
  void visit(const ReferenceElement& element) override {
    if (element.value() == nullptr) return;
    if (property_ == nullptr) {
      const auto name = exporter_.nameOf(element.metaAttribute().metaElement());
      property_ = exporter_.create(name.uri, name.qualified);
    }
    // What stands beside the set is written after the property, what nests in the property before it gets its place.
    if (!exporter_.nest_) place(element);
    if (exporter_.writeReference(*element.value(), property_, set_, written_)) place(element);
  }

 private:
  void place(const ReferenceElement& element) {
    if (property_->getParentNode() == nullptr) exporter_.place(element, property_, set_);
  }

  NaiveExporter& exporter_;
  DOMElement* set_;
  NaiveExporter::Register& written_;
  DOMElement* property_ = nullptr;
};

void NaiveExporter::bind(const wstring& uri, const wstring& prefix) {
  for (const auto& entry : namespaces_) {
    if (entry.uri == uri) return;
  }
  namespaces_.push_back({uri, prefix});
  namespaces_.sort([](const Entry& left, const Entry& right) { return left.uri < right.uri; });
}

void NaiveExporter::bindUnlessBound(const wstring& uri, const wstring& prefix) {
  if (lookUp(prefix).empty()) bind(uri, prefix);
}

wstring NaiveExporter::lookUp(const wstring& prefix) const {
  for (const auto& entry : namespaces_) {
    if (entry.prefix == prefix) return entry.uri;
  }
  return {};
}

DOMElement* NaiveExporter::create(const wstring& uri, const wstring& qualifiedName) {
  return document_->createElementNS(uri.c_str(), qualifiedName.c_str());
}

DOMElement* NaiveExporter::getOrCreateFloatingContainer() {
  DOMElement* found = firstChildCalled(root_, u"groups:FloatingDarkMetadata");
  if (found != nullptr) return found;
  found = create(kGroups, u"groups:FloatingDarkMetadata");
  root_->appendChild(found);
  return found;
}

void NaiveExporter::appendText(DOMElement* to, const wstring& text) {
  to->appendChild(document_->createTextNode(text.c_str()));
}

NaiveExporter::Document NaiveExporter::write(const MetadataSet& start) {
  auto& implementation = XMLUtils::Initializer::instance().domImplementation();
  document_.reset(implementation.createDocument(u"urn:SMPTE:S377M", u"s377m:MetadataSets", nullptr));
  root_ = document_->getDocumentElement();
  root_->setAttributeNS(kXmlns.c_str(), u"xmlns:s377m", u"urn:SMPTE:S377M");
  bind(u"urn:SMPTE:S377M", u"s377m");
  Register written;
  writeSet(start, root_, written);
  writeDarkSets();
  writeFloatingSets();
  declareNamespaces();
  return std::move(document_);
}

void NaiveExporter::writeDarkSets() {
  for (auto at = partition_.darkBegin(); at != partition_.darkEnd(); ++at) {
    const auto& value = (*at)->value();
    writeDarkElement(getOrCreateFloatingContainer(), (*at)->key(), (*at)->berLength(),
                     Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize()));
  }
}

void NaiveExporter::writeFloatingSets() {
  std::vector<const MetadataSet*> order;
  const uint32 count = partition_.calculateSerializationOrder(order, true, false);
  std::list<const MetadataSet*> floating(order.end() - count, order.end());
  while (!floating.empty()) {
    Register written;
    writeSet(*floating.front(), getOrCreateFloatingContainer(), written);
    for (const MetadataSet* set : written) floating.remove(set);
  }
}

void NaiveExporter::declareNamespaces() {
  for (const auto& entry : namespaces_) {
    if (entry.uri == u"urn:SMPTE:S377M") continue;
    root_->setAttributeNS(kXmlns.c_str(), (u"xmlns:" + entry.prefix).c_str(), entry.uri.c_str());
  }
}

void NaiveExporter::writeSet(const MetadataSet& set, DOMNode* parent, Register& written) {
  if (contains(written, &set)) return;
  written.push_back(&set);
  const auto* definition = set.definition();
  if (definition == nullptr) {
    bindUnlessBound(kTypes, u"types");
    bindUnlessBound(kGroups, u"groups");
    DOMElement* container = getOrCreateFloatingContainer();
    root_->appendChild(container);
    return writeDarkGroup(container, set);
  }
  bind(ext(*definition, u"XMLNamespaceURI"), ext(*definition, u"XMLDefaultPrefix"));
  DOMElement* element = create(ext(*definition, u"XMLNamespaceURI"), qualifiedName(*definition));
  parent->appendChild(element);
  std::vector<const Element*> properties;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) properties.push_back(&*at);
  for (const Element* property : inSchemaOrder(set)) properties.push_back(property);
  for (const Element* property : properties) {
    NaiveElementVisitor visitor(*this, element, written);
    property->accept(visitor, nest_, exclude_);
  }
}

void NaiveExporter::writeDarkElement(DOMElement* parent, const KLV::Key& key, unsigned berOctets, const Bytes& value) {
  bindUnlessBound(kGroups, u"groups");
  DOMElement* element = create(kGroups, u"groups:DarkMetadata");
  parent->appendChild(element);
  element->setAttributeNS(kGroups.c_str(), u"groups:Key", key.toString(kDottedForm).c_str());
  element->setAttributeNS(kGroups.c_str(), u"groups:BEROctetCount", Platform::toDecimal(berOctets).c_str());
  if (!value.empty()) appendText(element, hex(value.data(), value.size()));
}

void NaiveExporter::writeDarkGroup(DOMElement* parent, const MetadataSet& set) {
  DataIO::Memory::MemoryDataSink sink;
  set.serialize(sink, partition_.partitionDictionary());
  const std::size_t skipped = KLV::Key::kSize + set.berLength();
  writeDarkElement(parent, set.key(), set.berLength(),
                   Bytes(sink.rawBuffer() + skipped, sink.rawBuffer() + sink.serializedSize()));
}

NaiveExporter::Name NaiveExporter::nameOf(const MetaMetadata::MetaElement* definition) {
  if (definition == nullptr) {
    bind(kGroups, u"groups");
    return {u"groups:DarkElement", lookUp(u"groups"), u"groups"};
  }
  const wstring uri = ext(*definition, u"XMLNamespaceURI");
  bind(uri, ext(*definition, u"XMLDefaultPrefix"));
  return {qualifiedName(*definition), uri, ext(*definition, u"XMLDefaultPrefix")};
}

void NaiveExporter::writeValue(DOMElement* to, const Types::SimpleDataType& value) {
  bindUnlessBound(kTypes, u"types");
  bindUnlessBound(u"urn:SMPTE:S422MTypes:MXF", u"s422mTypes");
  if (const auto* number = dynamic_cast<const Types::UInt32*>(&value)) {
    appendText(to, Platform::toDecimal(number->value()));
  } else if (const auto* uuid = dynamic_cast<const Types::UUID*>(&value)) {
    appendText(to, uuid->toString(kDottedForm));
  } else {
    appendText(to, hex(value.rawBuffer(), value.encodedSize()));
  }
}

void NaiveExporter::writeSimple(const Element& property, const Types::SimpleDataType* value, DOMElement* set) {
  const auto* definition = property.metaAttribute().metaElement();
  const Name name = nameOf(definition);
  if (name.qualified == u"rp210:InstanceUID" || name.qualified == u"rp210:GenerationUID") {
    auto* attribute = document_->createAttributeNS(name.uri.c_str(), name.qualified.c_str());
    set->setAttributeNodeNS(attribute);
    if (const auto* uuid = dynamic_cast<const Types::UUID*>(value)) {
      attribute->setValue(uuid->toString(kDottedForm).c_str());
    }
    return;
  }
  DOMElement* element = create(name.uri, name.qualified);
  if (dynamic_cast<const MetaMetadata::MetaAttribute*>(&property.metaAttribute()) == nullptr) {
    return writeExtension(property, value, element, set);
  }
  set->appendChild(element);
  if (value != nullptr) writeValue(element, *value);
}

void NaiveExporter::writeExtension(const Element& property, const Types::SimpleDataType* value, DOMElement* element,
                                   DOMElement* set) {
  place(property, element, set);
  const auto* unknown = dynamic_cast<const MetaMetadata::UnknownAttribute*>(&property.metaAttribute());
  const wstring uri = lookUp(u"groups");
  if (unknown != nullptr && unknown->localTag().value() < 0x8000) {
    element->setAttributeNS(uri.c_str(), u"groups:StaticLocalTag", unknown->localTag().toString(kDottedForm).c_str());
  } else if (unknown != nullptr) {
    for (const auto& entry : partition_.partitionDictionary().primerEntries()) {
      if (entry.tag != unknown->localTag().value()) continue;
      element->setAttributeNS(uri.c_str(), u"groups:UniversalLabel", entry.label.toString(kDottedForm).c_str());
      break;
    }
  }
  if (value != nullptr) writeValue(element, *value);
}

void NaiveExporter::place(const Element& property, DOMElement* element, DOMElement* set) {
  if (dynamic_cast<const MetaMetadata::MetaAttribute*>(&property.metaAttribute()) != nullptr) {
    set->appendChild(element);
    return;
  }
  DOMElement* container = firstChildCalled(set, u"groups:ExtensionElements");
  if (container == nullptr) {
    bindUnlessBound(kGroups, u"groups");
    container = create(kGroups, u"groups:ExtensionElements");
  }
  container->appendChild(element);
  set->appendChild(container);
}

void NaiveExporter::writeCollection(const Element& property, const Types::Collection* items, DOMElement* set) {
  const auto* known = dynamic_cast<const MetaMetadata::MetaAttribute*>(&property.metaAttribute());
  const bool isEmpty = items == nullptr || items->size() == 0;
  const bool isRequired = known != nullptr && (known->requiredStatus() == 0 || known->requiredStatus() == 1);
  if (isEmpty && !isRequired) return;
  const Name name = nameOf(property.metaAttribute().metaElement());
  DOMElement* element = create(name.uri, name.qualified);
  place(property, element, set);
  for (uint32 i = 0; !isEmpty && i < items->size(); ++i) {
    DOMElement* item = create(name.uri, name.prefix + u":Element");
    element->appendChild(item);
    writeValue(item, items->at(i));
  }
}

bool NaiveExporter::writeReference(const Types::Reference& reference, DOMElement* property, DOMElement* set,
                                   Register& written) {
  const auto targets = setsCalled(partition_, reference.target());
  const bool isStrong = dynamic_cast<const Types::StrongReference*>(&reference) != nullptr;
  if (targets.empty()) {
    writePointer(property, lookUp(u"s377m"), u"s377m:Dangling_REF", reference);
    return true;
  }
  const MetadataSet& target = *targets[0];
  const auto* definition = target.definition();
  const bool isExcluded = exclude_ && !KLV::isStructuralMetadataSet(target.key());
  if (nest_) {
    if (isExcluded) return false;
    if (isStrong) {
      writeSet(target, property, written);
    } else if (definition != nullptr) {
      writePointer(property, ext(*definition, u"XMLNamespaceURI"), qualifiedName(*definition) + u"_REF", reference);
    }
    return true;
  }
  if (definition == nullptr) {
    writePointer(property, lookUp(u"s377m"), u"s377m:Dangling_REF", reference);
    DOMElement* container = getOrCreateFloatingContainer();
    root_->appendChild(container);
    writeDarkGroup(container, target);
    return true;
  }
  const wstring name = targets.size() == 1 ? qualifiedName(*definition) : wstring(u"MULTIPLE_METADATASETS");
  writePointer(property, ext(*definition, u"XMLNamespaceURI"), name + u"_REF", reference);
  if (isStrong && !isExcluded) writeSet(target, set->getParentNode(), written);
  return true;
}

void NaiveExporter::writePointer(DOMElement* property, const wstring& uri, const wstring& name,
                                 const Types::Reference& reference) {
  bindUnlessBound(kTypes, u"types");
  DOMElement* pointer = create(uri, name);
  property->appendChild(pointer);
  pointer->setAttributeNS(kTypes.c_str(), u"types:TargetInstance", reference.toString().c_str());
}

}  // namespace Vantor::XMLBuilder
