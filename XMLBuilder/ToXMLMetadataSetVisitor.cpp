#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

#include <algorithm>

#include "Core/Platform/Numbers.h"
#include "XMLBuilder/DarkMetadataSetWriter.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ToXMLElementVisitor.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

struct Place {
  uint32 schemaIndex;
  const Element* property;
};

/// The properties that have a place in their set, in the order of these places.
std::vector<Place> inSchemaOrder(const MetadataSet& set) {
  std::vector<Place> places;
  for (const Element& property : set) {
    const ToXMLMetaAttributeVisitor attribute(property.metaAttribute());
    if (attribute.schemaIndex().empty()) continue;
    places.push_back({Platform::readDecimal<uint32>(attribute.schemaIndex()), &property});
  }
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& left, const Place& right) { return left.schemaIndex < right.schemaIndex; });
  return places;
}

}  // namespace

void ToXMLMetadataSetVisitor::visit(const MetadataSet& set) {
  if (!written_.insert(set)) return;
  const WrittenSets::Level level(written_, set);
  if (set.definition() != nullptr) {
    writeKnownSet(set);
  } else if (const auto* group = dynamic_cast<const DarkParsedGroup*>(&set)) {
    writeDarkGroup(*group);
  }
}

void ToXMLMetadataSetVisitor::writeKnownSet(const MetadataSet& set) {
  auto& element = appendSetElement(*set.definition());
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) writeProperty(*at, element);
  for (const auto& place : inSchemaOrder(set)) writeProperty(*place.property, element);
}

xercesc::DOMElement& ToXMLMetadataSetVisitor::appendSetElement(const MetaMetadata::MetaMetadataSet& definition) {
  const auto name = setName(definition, document_.namespaces());
  auto* element = document_.document().createElementNS(name.uri.c_str(), name.name.c_str());
  parent_.appendChild(element);
  document_.noteSetElement(name.name);
  return *element;
}

void ToXMLMetadataSetVisitor::writeProperty(const Element& property, xercesc::DOMElement& element) {
  ToXMLElementVisitor visitor(partition_, element, options_, document_, written_);
  property.accept(visitor, options_.nestStrongReferences, options_.excludeNonStructural);
}

void ToXMLMetadataSetVisitor::writeDarkGroup(const DarkParsedGroup& group) {
  document_.namespaces().insertIfUnbound(Vocabulary::kTypesURI, Vocabulary::kTypesPrefix);
  document_.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  writeDarkMetadataSet(document_, document_.lastFloatingContainer(), group);
}

}  // namespace Vantor::XMLBuilder
