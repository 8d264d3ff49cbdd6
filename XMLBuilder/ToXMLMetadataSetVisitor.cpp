#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

#include <algorithm>
#include <utility>

#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "XMLBuilder/DarkMetadataSetWriter.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ToXMLElementVisitor.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

/// Misplaced and unknown properties as met, then those that have a place in their set, in the order of these places;
/// all of it back to front.
std::vector<const Element*> inReverse(const MetadataSet& set) {
  std::vector<std::pair<uint32, const Element*>> places;
  for (const Element& property : set) {
    const ToXMLMetaAttributeVisitor attribute(property.metaAttribute());
    const auto& schemaIndex = attribute.schemaIndex();
    if (!schemaIndex.empty()) places.emplace_back(Platform::readDecimal<uint32>(schemaIndex), &property);
  }
  std::stable_sort(places.begin(), places.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::vector<const Element*> properties;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) properties.push_back(&*at);
  for (const auto& place : places) properties.push_back(place.second);
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
  if (!pass_.written.insert(&set).second) return;
  if (pass_.depth > kMaximumDepth) {
    Exceptions::raise<Exceptions::NestingTooDeep>("references nest more than {} deep at set {}", kMaximumDepth,
                                                  set.fullName());
  }
  if (set.definition() == nullptr) return writeDarkGroup(set);
  open(set);
  while (!frames_.empty()) writeNext();
}

void ToXMLMetadataSetVisitor::open(const MetadataSet& set) {
  auto& document = pass_.document;
  const auto name = enteredName(*set.definition(), document.namespaces());
  auto* element = document.document().createElementNS(name.uri.c_str(), name.qualified().c_str());
  parent_.appendChild(element);
  document.noteSetElement(name.qualified());
  frames_.push_back({element, inReverse(set), {}});
}

void ToXMLMetadataSetVisitor::writeNext() {
  auto& frame = frames_.back();
  if (!frame.targets.empty()) {
    const auto& target = *takeLast(frame.targets);
    const bool isDark = target.definition() == nullptr;
    // Under lossless rules, many references to one dark group do not multiply it.
    const bool isRepeated = isDark && !pass_.rules.isLossless;
    if (!isRepeated && !pass_.written.insert(&target).second) return;
    if (isDark) return writeDarkGroup(target);
    open(target);
  } else if (!frame.properties.empty()) {
    const auto& property = *takeLast(frame.properties);
    ToXMLElementVisitor visitor(*frame.element, pass_, frame.targets);
    property.accept(visitor, pass_.rules.nestStrongReferences, pass_.rules.excludeNonStructural);
    std::reverse(frame.targets.begin(), frame.targets.end());
  } else {
    frames_.pop_back();
  }
}

void ToXMLMetadataSetVisitor::writeDarkGroup(const MetadataSet& set) {
  const auto* group = dynamic_cast<const DarkParsedGroup*>(&set);
  if (group == nullptr) return;
  auto& document = pass_.document;
  document.namespaces().insertIfUnbound(Vocabulary::kTypesURI, Vocabulary::kTypesPrefix);
  document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  writeDarkMetadataSet(document, document.lastFloatingContainer(), group->key(), group->berLength(),
                       group->value().data(), group->value().size());
}

}  // namespace Vantor::XMLBuilder
