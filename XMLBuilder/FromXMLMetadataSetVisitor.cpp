#include "XMLBuilder/FromXMLMetadataSetVisitor.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Metadata/SimpleElement.h"
#include "XMLBuilder/FromXMLMetaAttributeVisitor.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

using xercesc::DOMElement;

void FromXMLMetadataSetVisitor::visit(MetadataSet& set) {
  const auto source = rules_.open(element_, set);
  for (Element& property : set) readProperty(property, *source);
  if (const DOMElement* container = source->extensions()) {
    rules_.checkContainer(*container);
    for (const DOMElement* child : XMLUtils::childElements(*container)) source->readExtension(*child);
  }
  source->finish();
}

void FromXMLMetadataSetVisitor::readProperty(Element& property, SetSource& source) {
  const auto& definition = *FromXMLMetaAttributeVisitor(property.metaAttribute()).metaElement();
  const auto& tag = definition.extensionAttribute(MetaMetadata::kTagName);
  if (MetaMetadata::isIdentifierName(tag)) return readIdentifier(property, definition, tag, source);
  if (const DOMElement* child = source.child(definition)) rules_.readValue(property, *child, &definition);
}

void FromXMLMetadataSetVisitor::readIdentifier(Element& property, const MetaMetadata::MetaElement& definition,
                                               const wstring& tag, SetSource& source) {
  const auto* attribute = source.identifier(tag);
  if (attribute == nullptr) return;
  if (tag != u"InstanceUID") return rules_.readValue(property, *attribute, &definition);
  auto* identifier = dynamic_cast<SimpleElement*>(&property);
  if (identifier == nullptr) return;
  if (const auto instanceUID = source.instanceUID(*attribute)) {
    identifier->set(std::make_unique<Types::UUID>(*instanceUID), false);
  }
}

MetadataSet* importSet(const DOMElement& element, const MetaMetadata::MetaMetadataSet& definition, ReadingRules& rules,
                       ImportedSets* imported) {
  if (MetadataSet* known = rules.findCopy(element, definition)) return known;
  rules.countSet();
  MetadataSet* set = rules.partition().createMetadataSet(definition.key());
  if (imported != nullptr) imported->push_back(set);
  FromXMLMetadataSetVisitor visitor(element, rules);
  set->accept(visitor);
  return set;
}

namespace {

/// Children that the dictionary names become sets and are listed, every other one is read as a dark set.
void readFloatingContainer(const DOMElement& container, ReadingRules& rules, ImportedSets& imported) {
  rules.checkContainer(container);
  for (const auto* child : XMLUtils::childElements(container)) {
    if (const auto* definition = rules.findSet(*child, XMLBuilder::Vocabulary::kDarkMetadata)) {
      importSet(*child, *definition, rules, &imported);
    } else {
      rules.countSet();
      rules.readDarkSet(*child);
    }
  }
}

}  // namespace

ImportedSets importDocument(ReadingRules& rules) {
  ImportedSets imported;
  for (const auto* child : XMLUtils::childElements(rules.root())) {
    if (const auto* definition = rules.findSet(*child, XMLBuilder::Vocabulary::kFloatingContainer)) {
      importSet(*child, *definition, rules, &imported);
    } else if (rules.isFloatingContainer(*child)) {
      readFloatingContainer(*child, rules, imported);
    }
  }
  return imported;
}

}  // namespace Vantor::XML2Partition
