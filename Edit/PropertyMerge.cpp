#include "Edit/PropertyMerge.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "Core/Comparison/DocumentDifference.h"
#include "Core/Comparison/PropertyIdentity.h"
#include "Core/DataIO/Memory.h"
#include "Core/KLV/CollectionHeader.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Types/Factories.h"

namespace Vantor {

using namespace DocumentDifference;

namespace {

constexpr const char* kSource = "Edit/PropertyMerge";

/// Gives a property the value that some octets stand for.
void setOctets(Element& to, const Bytes& octets) {
  const auto* definition = to.metaAttribute().metaElement();
  auto value = definition == nullptr
                   ? Types::Factories::fromBytes(Types::Identifiers::kUnknown, octets.data(), octets.size())
                   : decodeValue(*definition, octets.data(), octets.size());
  if (value == nullptr) {
    throw Exceptions::InvalidFormat("the property " + (definition == nullptr ? "" : definition->symbol()) +
                                        " cannot have a value of " + std::to_string(octets.size()) + " octets",
                                    kSource, __LINE__);
  }
  setDecodedValue(to, std::move(value));
}

/// Gives a property of one partition the value that one of another partition has.
void copyValue(const Element& from, Element& to) {
  to.markPresent();
  if (from.wireValue() == nullptr) return setDecodedValue(to, nullptr);
  setOctets(to, octetsOf(from));
}

void setTargets(const ReferenceTargets& targets, Element& property) {
  DataIO::Memory::MemoryDataSink sink;
  KLV::CollectionHeader{static_cast<uint32>(targets.size()), Types::UUID::kSize}.render(sink);
  for (const auto& target : targets) sink.write(target.rawBuffer(), Types::UUID::kSize);
  setOctets(property, sink.take());
}

/// The tag that a property of a document has in the file, as far as the document tells; 0 for none.
uint16 tagInOctets(const Element& property, const PartitionDictionary& tags) {
  return property.localTag() != 0 ? property.localTag() : PropertyIdentity(property, tags).tag;
}

bool isCollection(const Element& property) { return dynamic_cast<const CollectionElement*>(&property) != nullptr; }

/// Takes those for not shown that the edited document lacks, so that they stay. Returns whether there are any.
bool keepLacking(ReferenceTargets& shown, const ReferenceTargets& edited) {
  const std::unordered_set<Types::UUID> there(edited.begin(), edited.end());
  const auto end = std::remove_if(shown.begin(), shown.end(), [&](const auto& one) { return there.count(one) == 0; });
  const bool isAny = end != shown.end();
  shown.erase(end, shown.end());
  return isAny;
}

std::string keyOf(const MetadataSet& set, const MetaMetadata::MetaElement& definition) {
  return DocumentContent::keyOf(*set.instanceUID(), definition.symbol());
}

/// Whether the document has the property under its definition, not as octets of an unknown one.
bool isToldAs(const Element& place, const PropertyPair& edit) {
  const Element& told = edit.right == nullptr ? *edit.left : *edit.right;
  return told.metaAttribute().metaElement() == place.metaAttribute().metaElement();
}

/// The properties of an edited set that stand for those of the documents.
class Places {
 public:
  Places(MetadataSet& set, const PartitionDictionary& tags) : set_(set), tags_(tags) {
    for (Element& element : set) own_.emplace(&element, &element);
    for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) own_.emplace(&*at, &*at);
  }

  /// @param before, after  null for a property that the document does not have.
  Element* find(const PropertyPair& pair, const MetadataSet& before, const PartitionDictionary& beforeTags,
                const MetadataSet& after, const PartitionDictionary& afterTags) {
    const Element* wanted = pair.left != nullptr ? pair.left : pair.right;
    const auto& wantedTags = pair.left != nullptr ? beforeTags : afterTags;
    enter(pair.left != nullptr ? before : after, wantedTags);
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

  /// A document that was made without the definition of a property has it as an unknown one, and one that was made
  /// without the definition of a set has the octets of all of it, with the tags of the file.
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

ReferenceTargets targetsOf(const Element* property) {
  ReferenceTargets targets;
  if (property != nullptr) property->appendTargets({true}, targets);
  return targets;
}

PropertyMerge::PropertyMerge(const PartitionDictionary& originalTags, const DocumentContent& edited,
                             const MergeRules& rules, PartitionMetadata& result)
    : edited_(edited),
      rules_(rules),
      originalTags_(originalTags),
      editedTags_(edited.partition->partitionDictionary()),
      result_(result) {}

std::size_t PropertyMerge::merge(const DocumentContent& unedited, const MetadataSet& before, const MetadataSet& after,
                                 MetadataSet& merged, MergeSummary& summary) {
  refuseLostReferences(merged, unedited, after);
  const auto& beforeTags = unedited.partition->partitionDictionary();
  Places places(merged, originalTags_);
  std::vector<std::pair<PropertyPair, Element*>> edits;
  for (const auto& pair : differingProperties(before, beforeTags, after, editedTags_)) {
    if (!mayChange(pair, unedited, merged, summary)) continue;
    edits.emplace_back(pair, places.find(pair, before, beforeTags, after, editedTags_));
  }
  std::size_t changed = 0;
  for (const auto& [pair, place] : edits) changed += apply(pair, place, merged, summary) ? 1 : 0;
  return changed;
}

void PropertyMerge::copyAll(const MetadataSet& after, MetadataSet& to) {
  for (const Element* property : after.inDefinitionOrder()) copyValue(*property, addProperty(*property, to));
}

bool PropertyMerge::mayChange(const PropertyPair& edit, const DocumentContent& unedited, const MetadataSet& set,
                              MergeSummary& summary) const {
  const Element& property = edit.left == nullptr ? *edit.right : *edit.left;
  const auto* definition = property.metaAttribute().metaElement();
  if (definition != nullptr && edited_.unread.count(keyOf(set, *definition)) != 0) return false;
  if (edit.right != nullptr || rules_.mayRemove) return true;
  summary.kept.push_back({set.fullName(), propertyName(property, unedited.partition->partitionDictionary())});
  return false;
}

/// @param place  the property of the merged set; null when it has none.
/// @return whether that changes the set.
bool PropertyMerge::apply(const PropertyPair& edit, Element* place, MetadataSet& set, MergeSummary& summary) {
  if (place == nullptr && edit.right == nullptr) return false;
  if (place != nullptr && isSame(place, edit.right)) return false;
  if (place != nullptr && isToldAs(*place, edit) && !isWholeEdit(edit, *place)) {
    return applyReferences(edit, *place, set, summary);
  }
  if (edit.right == nullptr) {
    set.remove(*place);
  } else {
    copyValue(*edit.right, place == nullptr ? addProperty(*edit.right, set) : *place);
  }
  return true;
}

/// Whether all references before the edit are known, and those that it lacks may be taken out.
bool PropertyMerge::isWholeEdit(const PropertyPair& edit, const Element& place) const {
  const auto shown = targetsOf(edit.left);
  if (targetsOf(&place) != shown) return false;
  return rules_.mayRemove || shown.empty() || edit.right == nullptr || !isCollection(place);
}

/// Of references that the document does not all show, or that are to stay where it has others.
bool PropertyMerge::applyReferences(const PropertyPair& edit, Element& place, const MetadataSet& set,
                                    MergeSummary& summary) const {
  const auto all = targetsOf(&place), after = targetsOf(edit.right);
  auto shown = targetsOf(edit.left);
  if (!rules_.mayRemove && keepLacking(shown, after)) {
    summary.kept.push_back({set.fullName(), propertyName(place, originalTags_)});
  }
  const auto merged = isCollection(place) && edit.right != nullptr ? mergeReferences(all, shown, after)
                                                                   : std::optional<ReferenceTargets>();
  if (!merged) refuse(set, place);
  if (*merged == all) return false;
  setTargets(*merged, place);
  return true;
}

/// An element that refers to nothing is what documents have for a reference that they do not show. When it is gone, the
/// user has something in mind.
void PropertyMerge::refuseLostReferences(const MetadataSet& set, const DocumentContent& unedited,
                                         const MetadataSet& after) const {
  if (unedited.unread.empty()) return;
  for (const Element* property : set.inDefinitionOrder()) {
    const auto* definition = property->metaAttribute().metaElement();
    if (definition == nullptr || !isReference(*definition)) continue;
    const auto key = keyOf(set, *definition);
    const auto* edited = after.find(definition->key());
    const bool isGone = edited == nullptr || !edited->isPresent();
    if (unedited.unread.count(key) != 0 && edited_.unread.count(key) == 0 && isGone) refuse(set, *property);
  }
}

void PropertyMerge::refuse(const MetadataSet& set, const Element& property) const {
  throw UnclearEdit("the " + set.fullName() + ": " + propertyName(property, originalTags_) +
                        " was edited, and refers to sets that the document does not show there",
                    kSource, __LINE__);
}

Element& PropertyMerge::addProperty(const Element& property, MetadataSet& set) {
  const auto& dictionary = *result_.partitionDictionary().dictionary();
  const auto* definition = property.metaAttribute().metaElement();
  if (definition == nullptr) {
    return set.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(tagFor(property)));
  }
  const auto* attribute = set.definition()->findAttribute(definition->key());
  if (attribute != nullptr && PropertyIdentity(property, editedTags_).kind == PropertyIdentity::Kind::kValid) {
    return set.createElement(*attribute);
  }
  const auto* known = dictionary.findElement(definition->key());
  return set.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(known));
}

/// Under which tag the result has an unknown property of the edited partition.
Types::LocalTag PropertyMerge::tagFor(const Element& property) {
  auto& tags = result_.partitionDictionary();
  if (const auto* label = unknownLabelOf(property, editedTags_)) return tags.findOrGenerate(*label);
  if (const auto tag = tagInOctets(property, editedTags_)) return Types::LocalTag(tag);
  return tags.unlistedTag(unlisted_++);
}

}  // namespace Vantor
