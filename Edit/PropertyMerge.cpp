#include "Edit/PropertyMerge.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "Core/Types/FinalNULs.h"
#include "Core/Types/References.h"
#include "Edit/ReferenceMerge.h"

namespace Vantor::Edit {

namespace {

using Types::Identifiers::kStrongReference;

Types::Identifiers::Identifier referenceType(const MetaMetadata::MetaElement& definition) {
  const auto* collection = MetaMetadata::asCollection(definition);
  return collection == nullptr ? definition.dataType() : collection->dataSubType();
}

bool isCollection(const Element& property) { return dynamic_cast<const CollectionElement*>(&property) != nullptr; }

/// @param property  null for none.
ReferenceTargets targetsOf(const Element* property) {
  ReferenceTargets targets;
  if (property != nullptr) property->appendTargets({true}, targets);
  return targets;
}

auto_ptr<Types::SimpleDataType> clonedValue(const Element& property) {
  return property.wireValue() == nullptr ? nullptr : property.wireValue()->clone();
}

/// The collection of a property with other targets.
auto_ptr<Types::SimpleDataType> collectionOf(const ReferenceTargets& targets, const Element& property) {
  auto value = property.wireValue()->clone();
  auto& collection = static_cast<Types::Collection&>(*value);
  while (collection.size() != 0) collection.removeAt(collection.size() - 1);
  const bool isStrong = referenceType(*property.metaAttribute().metaElement()) == kStrongReference;
  for (const auto& target : targets) {
    if (isStrong) {
      collection.append(std::make_unique<Types::StrongReference>(target));
    } else {
      collection.append(std::make_unique<Types::WeakReference>(target));
    }
  }
  return value;
}

/// The local tag that an unknown property has in its KLV; 0 for none.
uint16 tagInOctets(const Element& property, const PartitionDictionary& tags) {
  return property.localTag() != 0 ? property.localTag() : PropertyIdentity(property, tags).tag;
}

/// The properties of a set of ours that stand for those of base and theirs.
class Places {
 public:
  Places(MetadataSet& set, const PartitionDictionary& tags) : set_(set), tags_(tags) {
    for (Element& element : set) own_.emplace(&element, &element);
    for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) own_.emplace(&*at, &*at);
  }

  Element* find(const PropertyPair& pair, const MetadataSet& base, const PartitionDictionary& baseTags,
                const MetadataSet& theirs, const PartitionDictionary& theirTags) {
    const Element* wanted = pair.left != nullptr ? pair.left : pair.right;
    const auto& wantedTags = pair.left != nullptr ? baseTags : theirTags;
    const auto own = own_.find(wanted);
    if (own != own_.end()) return own->second;  // the base is ours
    enter(pair.left != nullptr ? base : theirs, wantedTags);
    const auto found = places_.find(wanted);
    return found != places_.end() ? found->second : findByTag(*wanted, wantedTags);
  }

 private:
  void enter(const MetadataSet& set, const PartitionDictionary& tags) {
    if (!entered_.insert(&set).second) return;
    for (const auto& pair : pairProperties(set_, tags_, set, tags)) {
      if (pair.left != nullptr && pair.right != nullptr) places_.emplace(pair.right, own_.at(pair.left));
    }
  }

  /// An unknown property of one state may be a known one of the other.
  Element* findByTag(const Element& unknown, const PartitionDictionary& unknownTags) const {
    const auto* label = unknownLabelOf(unknown, unknownTags);
    const auto tag = label != nullptr ? tags_.tryFindTag(*label) : tagInOctets(unknown, unknownTags);
    if (tag == 0) return nullptr;
    const auto all = set_.inDefinitionOrder();
    const auto found =
        std::find_if(all.begin(), all.end(), [tag](const Element* property) { return property->localTag() == tag; });
    return found == all.end() ? nullptr : own_.at(*found);
  }

  const MetadataSet& set_;
  const PartitionDictionary& tags_;
  std::unordered_map<const Element*, Element*> own_;
  std::set<const MetadataSet*> entered_;
  std::unordered_map<const Element*, Element*> places_;
};

}  // namespace

PropertyMerge::PropertyMerge(PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs,
                             const Scope& scope, MergeReport& report)
    : ours_(ours),
      baseTags_(base.partitionDictionary()),
      theirs_(theirs),
      theirTags_(theirs.partition.partitionDictionary()),
      scope_(scope),
      report_(report) {}

std::vector<PropertyEdit> PropertyMerge::plan(const MetadataSet& base, const MetadataSet& theirs, MetadataSet& ours) {
  std::vector<PropertyEdit> edits;
  const auto pairs = differingProperties(base, baseTags_, theirs, theirTags_, scope_.fidelity());
  if (pairs.empty()) return edits;
  Places places(ours, ours_.partitionDictionary());
  for (const auto& pair : pairs) {
    if (!mayChange(pair, ours)) continue;
    Element* place = places.find(pair, base, baseTags_, theirs, theirTags_);
    if (place == nullptr && pair.right == nullptr) continue;
    if (place != nullptr && (areSame(place, pair.right) || planReferences(pair, *place, ours, edits))) continue;
    auto value = pair.right == nullptr ? nullptr
                 : place == nullptr    ? clonedValue(*pair.right)
                                       : valueFor(*place, *pair.right, ours);
    edits.push_back({place, pair.right, std::move(value)});
  }
  return edits;
}

bool PropertyMerge::mayChange(const PropertyPair& edit, const MetadataSet& set) {
  const Element& property = edit.left == nullptr ? *edit.right : *edit.left;
  const auto* definition = property.metaAttribute().metaElement();
  const bool isUnread = definition != nullptr && set.instanceUID() != nullptr &&
                        theirs_.unread.count({*set.instanceUID(), definition->symbol()}) != 0;
  if (isUnread) return false;
  if (edit.right != nullptr || theirs_.mayRemove || !targetsOf(edit.left).empty()) return true;
  report_.kept.push_back({set.fullName(), propertyName(property, baseTags_)});
  return false;
}

/// Plans a property with references that are hidden or kept. Returns false for any other property.
bool PropertyMerge::planReferences(const PropertyPair& edit, Element& place, const MetadataSet& set,
                                   std::vector<PropertyEdit>& edits) {
  const auto all = targetsOf(&place), theirs = targetsOf(edit.right);
  const auto* definition = place.metaAttribute().metaElement();
  if (all.empty() || definition == nullptr || (!isCollection(place) && !theirs.empty())) return false;
  const bool isStrong = referenceType(*definition) == kStrongReference;
  const std::unordered_set<Types::UUID> there(theirs.begin(), theirs.end());
  ReferenceTargets shown;
  bool keepsOmitted = false;  // as if they were hidden
  for (const auto& target : all) {
    const bool isThere = there.count(target) != 0;
    if (!isThere && scope_.hides(target, isStrong)) continue;
    if (isThere || theirs_.mayRemove) {
      shown.push_back(target);
    } else {
      keepsOmitted = true;
    }
  }
  if (keepsOmitted) report_.kept.push_back({set.fullName(), propertyName(place, ours_.partitionDictionary())});
  if (shown.size() == all.size()) return false;
  if (!isCollection(place)) return true;
  const auto merged = mergeReferences(all, shown, theirs);
  if (merged != all) edits.push_back({&place, &place, collectionOf(merged, place)});
  return true;
}

auto_ptr<Types::SimpleDataType> PropertyMerge::valueFor(const Element& place, const Element& theirs,
                                                        const MetadataSet& set) const {
  const auto* definition = place.metaAttribute().metaElement();
  if (definition == theirs.metaAttribute().metaElement() || theirs.wireValue() == nullptr) {
    const auto* value = place.wireValue();
    return Types::withFinalNULs(clonedValue(theirs), value == nullptr ? 0 : Types::finalNULsOf(*value));
  }
  const auto& octets = *theirs.wireValue();
  auto value = definition == nullptr
                   ? Types::Factories::fromBytes(Types::Identifiers::kUnknown, octets.rawBuffer(), octets.encodedSize())
                   : decodeValue(*definition, octets.rawBuffer(), octets.encodedSize());
  if (value == nullptr) {
    Exceptions::raise<Exceptions::InvalidFormat>("{}: {} cannot have a value of {} octets", set.fullName(),
                                                 definition->symbol(), octets.encodedSize());
  }
  return value;
}

void PropertyMerge::apply(std::vector<PropertyEdit> edits, MetadataSet& ours) {
  for (auto& edit : edits) {
    if (edit.theirs == nullptr) {
      ours.remove(*edit.place);
      continue;
    }
    Element& place = edit.place != nullptr ? *edit.place : addProperty(*edit.theirs, ours);
    place.markPresent();
    setDecodedValue(place, std::move(edit.value));
  }
}

void PropertyMerge::copyAll(const MetadataSet& theirs, MetadataSet& ours) {
  std::vector<PropertyEdit> edits;
  for (const Element* property : theirs.inDefinitionOrder())
    edits.push_back({nullptr, property, clonedValue(*property)});
  apply(std::move(edits), ours);
}

Element& PropertyMerge::addProperty(const Element& theirs, MetadataSet& set) {
  const auto* definition = theirs.metaAttribute().metaElement();
  if (definition == nullptr) {
    return set.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(tagFor(theirs)));
  }
  const auto* attribute = set.definition()->findAttribute(definition->key());
  if (attribute != nullptr && PropertyIdentity(theirs, theirTags_).kind == PropertyIdentity::Kind::kValid) {
    return set.createElement(*attribute);
  }
  return set.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(definition));
}

/// The tag that an unknown property of theirs gets in ours.
Types::LocalTag PropertyMerge::tagFor(const Element& theirs) {
  auto& tags = ours_.partitionDictionary();
  if (const auto* label = unknownLabelOf(theirs, theirTags_)) return tags.findOrGenerate(*label);
  if (const auto tag = tagInOctets(theirs, theirTags_)) return Types::LocalTag(tag);
  return tags.unlistedTag(unlisted_++);
}

}  // namespace Vantor::Edit
