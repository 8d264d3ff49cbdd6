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

/// Misplaced and unknown properties as met, then those that have a place; all of it back to front.
std::vector<const Element*> inReverse(const MetadataSet& set) {
  std::vector<const Element*> properties;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) properties.push_back(&*at);
  for (const auto& place : inSchemaOrder(set)) properties.push_back(place.property);
  std::reverse(properties.begin(), properties.end());
  return properties;
}

template <class T>
const T* takeLast(std::vector<const T*>& pending) {
  const T* last = pending.back();
  pending.pop_back();
  return last;
}

}  // namespace

void ToXMLMetadataSetVisitor::visit(const MetadataSet& set) {
  if (!pass_.written.insert(set)) return;
  const WrittenSets::Level level(pass_.written, set);
  if (set.definition() == nullptr) return writeDarkGroup(set);
  open(set);
  while (!frames_.empty()) writeNext();
}

void ToXMLMetadataSetVisitor::open(const MetadataSet& set) {
  frames_.push_back({&appendSetElement(*set.definition()), inReverse(set), {}});
}

void ToXMLMetadataSetVisitor::writeNext() {
  auto& frame = frames_.back();
  if (!frame.targets.empty()) {
    const auto& target = *takeLast(frame.targets);
    if (target.definition() == nullptr) return writeDarkGroup(target);
    if (pass_.written.insert(target)) open(target);
  } else if (!frame.properties.empty()) {
    const auto& property = *takeLast(frame.properties);
    ToXMLElementVisitor visitor(*frame.element, pass_, frame.targets);
    property.accept(visitor, pass_.rules.nestStrongReferences, pass_.rules.excludeNonStructural);
    std::reverse(frame.targets.begin(), frame.targets.end());
  } else {
    frames_.pop_back();
  }
}

xercesc::DOMElement& ToXMLMetadataSetVisitor::appendSetElement(const MetaMetadata::MetaMetadataSet& definition) {
  auto& document = pass_.document;
  const auto name = setName(definition, document.namespaces());
  auto* element = document.document().createElementNS(name.uri.c_str(), name.name.c_str());
  parent_.appendChild(element);
  document.noteSetElement(name.name);
  return *element;
}

void ToXMLMetadataSetVisitor::writeDarkGroup(const MetadataSet& set) {
  const auto* group = dynamic_cast<const DarkParsedGroup*>(&set);
  if (group == nullptr) return;
  auto& document = pass_.document;
  document.namespaces().insertIfUnbound(Vocabulary::kTypesURI, Vocabulary::kTypesPrefix);
  document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  writeDarkMetadataSet(document, document.lastFloatingContainer(), *group);
}

}  // namespace Vantor::XMLBuilder
