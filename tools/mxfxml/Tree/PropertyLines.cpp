#include "Tree/PropertyLines.h"

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/Comparison/ValueText.h"
#include "Core/MetaMetadata/CommonNames.h"
#include "Core/Metadata/UnreadValue.h"
#include "Core/Types/UMID32.h"

namespace Vantor::Tool {

namespace {

using Types::Identifiers::Identifier;

Identifier itemType(const Element& element) {
  const auto* definition = element.metaAttribute().metaElement();
  if (definition == nullptr) return Types::Identifiers::kUnknown;
  const auto* list = MetaMetadata::asCollection(*definition);
  return list == nullptr ? definition->dataType() : list->dataSubType();
}

bool isWeak(const Element& element) { return itemType(element) == Types::Identifiers::kWeakReference; }

bool isMisplaced(const MetadataSet& set, const Element& element) {
  const auto* definition = element.metaAttribute().metaElement();
  return definition != nullptr && set.find(definition->key()) != &element;
}

/// A name, and less visible the common name behind it.
PropertyLines::Pieces piecesOf(const std::string& names, Style style) {
  const auto end = style == Style::kMark ? std::string::npos : names.find(" (");
  PropertyLines::Pieces pieces = {{names.substr(0, end), style}};
  if (end != std::string::npos) pieces.push_back({names.substr(end), Style::kDim});
  return pieces;
}

}  // namespace

bool ownsSets(const Element& element) { return itemType(element) == Types::Identifiers::kStrongReference; }

std::vector<OwnedSet> ownedSets(const MetadataSet& set, const PartitionMetadata& metadata) {
  std::vector<OwnedSet> owned;
  for (const auto* element : inOrderOfInterest(set)) {
    if (!ownsSets(*element)) continue;
    const bool isList = MetaMetadata::asCollection(*element->metaAttribute().metaElement()) != nullptr;
    std::vector<Types::UUID> identifiers;
    element->appendTargets(ReferenceKinds{}, identifiers);
    for (std::size_t i = 0; i < identifiers.size(); ++i) {
      const auto& found = metadata.findByInstanceUID(identifiers[i]);
      owned.push_back({element, isList ? i + 1 : 0, identifiers[i], found.empty() ? nullptr : found.front()});
    }
  }
  return owned;
}

std::string PropertyLines::propertyName(const MetadataSet& set, const Element& element) const {
  const auto* definition = element.metaAttribute().metaElement();
  if (definition == nullptr || set.definition() == nullptr) {
    return Vantor::propertyName(element, metadata_.partitionDictionary());
  }
  return MetaMetadata::namesOf(*set.definition(), *definition);
}

std::string PropertyLines::targetsText(const Element& element, bool withIdentifiers) const {
  std::vector<Types::UUID> identifiers;
  element.appendTargets(ReferenceKinds{true}, identifiers);
  std::string text;
  for (const auto& identifier : identifiers) {
    const auto& found = metadata_.findByInstanceUID(identifier);
    text += (text.empty() ? "" : ", ") + std::string(arrow_) + " ";
    text += found.empty() ? "no set" : names_.fullName(*found.front());
    if (found.empty() || withIdentifiers) text += " " + identifier.dottedText();
  }
  return text.empty() ? "none" : text;
}

PropertyLines::Pieces PropertyLines::valueOf(const MetadataSet& set, const Element& element,
                                             bool withIdentifiers) const {
  const bool isUnknown = element.metaAttribute().metaElement() == nullptr;
  const bool isMarked = isUnknown || isMisplaced(set, element);
  auto pieces = piecesOf(propertyName(set, element), isMarked ? Style::kMark : Style::kPlain);
  pieces.push_back({": ", Style::kDim});
  if (isWeak(element)) {
    pieces.push_back({targetsText(element, withIdentifiers), Style::kReference});
    return pieces;
  }
  pieces.push_back({valueText(set, element)});
  const auto* id = dynamic_cast<const Types::UMID32*>(element.wireValue());
  const auto* package = id == nullptr ? nullptr : names_.findPackage(*id);
  if (package != nullptr && package != &set) {
    pieces.push_back({" " + std::string(arrow_) + " " + names_.fullName(*package), Style::kReference});
  }
  if (isUnknown) pieces.push_back({"  (" + unreadValueOf(set, element).reason + ")", Style::kMark});
  if (!isUnknown && isMarked) pieces.push_back({"  (misplaced)", Style::kMark});
  return pieces;
}

PropertyLines::Pieces PropertyLines::ownerOf(const MetadataSet& owner, const OwnedSet& owned) const {
  const auto& symbol = owned.element->metaAttribute().metaElement()->symbol();
  const auto names = propertyName(owner, *owned.element);
  const auto number = owned.number == 0 ? "" : "[" + std::to_string(owned.number) + "]";
  auto pieces = piecesOf(symbol + number + names.substr(symbol.size()), Style::kPlain);
  pieces.push_back({": ", Style::kDim});
  return pieces;
}

PropertyLines::Pieces PropertyLines::nameOf(const MetadataSet& set) const {
  if (set.definition() != nullptr) return piecesOf(names_.nameOf(set), Style::kName);
  const auto* dark = dynamic_cast<const DarkParsedGroup*>(&set);
  const auto size = dark == nullptr ? "" : ", " + std::to_string(dark->value().size()) + " octets";
  return {{set.name(), Style::kMark}, {"  (dark" + size + ")", Style::kMark}};
}

}  // namespace Vantor::Tool
