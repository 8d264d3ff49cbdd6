#include "Core/Metadata/PartitionMerge.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "Core/DataIO/Memory.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/DocumentDifference.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PropertyIdentity.h"
#include "Core/Metadata/PropertyPairing.h"
#include "Core/Metadata/ReferenceMerge.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Factories.h"

namespace Vantor {

using namespace DocumentDifference;

namespace {

constexpr const char* kSource = "Core/Metadata/PartitionMerge";

std::string textOf(const Types::UUID& identifier) { return Utils::wstringToString(identifier.toString(kDottedForm)); }

std::string nameOf(const MetadataSet& set) {
  return set.instanceUID() == nullptr ? set.name() : set.name() + " " + textOf(*set.instanceUID());
}

ReferenceTargets targetsOf(const Element* property) {
  ReferenceTargets targets;
  if (property != nullptr) property->appendTargets({true}, targets);
  return targets;
}

ReferenceTargets allTargetsOf(const MetadataSet& set) {
  ReferenceTargets targets;
  for (const Element* property : set.inDefinitionOrder()) property->appendTargets({true}, targets);
  return targets;
}

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
  const auto writeNumber = [&sink](uint32 number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
      const auto octet = static_cast<uint8>(number >> shift);
      sink.write(&octet, 1);
    }
  };
  // A collection starts with the number and the size of its items (ST 377-1).
  writeNumber(static_cast<uint32>(targets.size()));
  writeNumber(Types::UUID::kSize);
  for (const auto& target : targets) sink.write(target.rawBuffer(), Types::UUID::kSize);
  setOctets(property, Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()));
}

/// The tag that a property of a document has in the file, as far as the document tells; 0 for none.
uint16 tagInOctets(const Element& property, const PartitionDictionary& tags) {
  return property.localTag() != 0 ? property.localTag() : PropertyIdentity(property, tags).tag;
}

/// The properties of an edited set that stand for those of the documents.
class Places {
 public:
  Places(const MetadataSet& set, const PartitionDictionary& tags) : set_(set), tags_(tags) {}

  /// @param before, after  null for a property that the document does not have.
  const Element* find(const PropertyPair& pair, const MetadataSet& before, const PartitionDictionary& beforeTags,
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
      if (pair.left != nullptr && pair.right != nullptr) places_.emplace(pair.right, pair.left);
    }
  }

  /// A document that was made without the definition of a property has it as an unknown one, and one that was made
  /// without the definition of a set has the octets of all of it, with the tags of the file.
  const Element* findByTag(const Element& unknown, const PartitionDictionary& unknownTags) const {
    const auto* label = unknownLabelOf(unknown, unknownTags);
    const auto tag = label != nullptr ? tags_.tryFindTag(*label) : tagInOctets(unknown, unknownTags);
    if (tag == 0) return nullptr;
    const auto all = set_.inDefinitionOrder();
    const auto found =
        std::find_if(all.begin(), all.end(), [tag](const Element* property) { return property->localTag() == tag; });
    return found == all.end() ? nullptr : *found;
  }

  const MetadataSet& set_;
  const PartitionDictionary& tags_;
  std::set<const MetadataSet*> entered_;
  std::unordered_map<const Element*, const Element*> places_;
};

class Merge {
 public:
  Merge(const PartitionMetadata& original, const UneditedDocuments& documents, const DocumentContent& edited,
        const MergeRules& rules)
      : original_(original),
        documents_(documents),
        edited_(edited),
        after_(*edited.partition),
        rules_(rules),
        originalTags_(original.partitionDictionary()),
        afterTags_(after_.partitionDictionary()),
        result_(std::make_unique<PartitionMetadata>(original.partitionDictionary().dictionary())) {}

  auto_ptr<PartitionMetadata> run(MergeSummary* summary) {
    result_->partitionDictionary().setPrimerCoding(originalTags_.primerKey(), originalTags_.primerLengthOctets());
    for (const auto& entry : original_.partitionDictionary().primerEntries()) {
      result_->partitionDictionary().addPrimerEntry(entry);
    }
    compareDark();
    for (const auto& entry : original_.entries()) {
      if (const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry)) {
        mergeSet(**set);
      } else {
        mergeDark(*std::get<auto_ptr<DarkMetadataSet>>(entry));
      }
    }
    addNewSets();
    for (const auto& [key, octets] : addedDark_) addDark(key, octets);
    refuseHiddenReferences();
    tellUntakenUnnamed();
    if (summary != nullptr) *summary = std::move(summary_);
    return std::move(result_);
  }

 private:
  const PartitionMetadata& shown() const { return *documents_.shown.partition; }
  const PartitionMetadata& full() const { return *documents_.full.partition; }

  void keep(const MetadataSet& set) { append(set, originalTags_, *result_); }

  void mergeSet(const MetadataSet& set) {
    const auto* instanceUID = set.instanceUID();
    if (instanceUID == nullptr) return asGroup(&set) != nullptr ? mergeDark(*asGroup(&set)) : keep(set);
    if (findOnly(original_, *instanceUID) == nullptr) return keepOneOfSeveral(set);
    const bool isShown = findOnly(shown(), *instanceUID) != nullptr;
    const auto* after = findOnly(after_, *instanceUID);
    if (after == nullptr) return isShown ? takeOut(set) : keep(set);
    mergeSet(set, *after, isShown ? documents_.shown : documents_.full);
  }

  void mergeSet(const MetadataSet& set, const MetadataSet& after, const DocumentContent& unedited) {
    const auto* before = findOnly(*unedited.partition, *set.instanceUID());
    if (before == nullptr) {
      summary_.untaken.push_back({nameOf(set), "an unedited document does not have it"});
      keep(set);
    } else if (asGroup(&set) != nullptr || asGroup(&after) != nullptr) {
      mergeGroup(set, *before, after);
    } else if (before->definition() != after.definition()) {
      summary_.untaken.push_back({nameOf(set), "the document has a " + after.name() + " with its InstanceUID"});
      keep(set);
    } else {
      mergeProperties(set, unedited, *before, after);
    }
  }

  void takeOut(const MetadataSet& set) {
    if (rules_.mayRemove) {
      ++summary_.removedSets;
      removed_.emplace(*set.instanceUID(), &set);
    } else {
      summary_.kept.push_back({nameOf(set), ""});
      keep(set);
    }
  }

  /// Which of the sets with one InstanceUID is meant, nobody can tell.
  void keepOneOfSeveral(const MetadataSet& set) {
    keep(set);
    const auto& all = original_.findByInstanceUID(*set.instanceUID());
    const auto* before = findOnly(shown(), *set.instanceUID());
    if (&set != all.front() || before == nullptr) return;
    const auto* after = findOnly(after_, *set.instanceUID());
    if (after != nullptr && areSame(*before, shown().partitionDictionary(), *after, afterTags_)) return;
    if (after == nullptr && !rules_.mayRemove) return summary_.kept.push_back({nameOf(set), ""});
    summary_.untaken.push_back({nameOf(set), "another set has the same InstanceUID"});
  }

  void mergeGroup(const MetadataSet& set, const MetadataSet& before, const MetadataSet& after) {
    const auto *group = asGroup(&before), *edited = asGroup(&after);
    if (group != nullptr && edited != nullptr && group->value() == edited->value()) return keep(set);
    ++summary_.changedSets;
    ++summary_.changedProperties;
    addSet(after);
  }

  void mergeProperties(const MetadataSet& set, const DocumentContent& unedited, const MetadataSet& before,
                       const MetadataSet& after) {
    keep(set);
    MetadataSet& merged = *result_->sets().back();
    refuseLostReferences(merged, unedited, after);
    const auto& beforeTags = unedited.partition->partitionDictionary();
    Places places(merged, originalTags_);
    std::vector<std::pair<PropertyPair, const Element*>> edits;
    for (const auto& pair : differingProperties(before, beforeTags, after, afterTags_)) {
      if (mayChange(pair, merged)) edits.emplace_back(pair, places.find(pair, before, beforeTags, after, afterTags_));
    }
    std::size_t changed = 0;
    for (const auto& [pair, place] : edits) changed += apply(pair, place, merged) ? 1 : 0;
    summary_.changedProperties += changed;
    if (changed != 0) ++summary_.changedSets;
  }

  bool mayChange(const PropertyPair& edit, const MetadataSet& set) {
    const Element& property = edit.left == nullptr ? *edit.right : *edit.left;
    const auto* definition = property.metaAttribute().metaElement();
    const auto key = definition == nullptr ? "" : DocumentContent::keyOf(*set.instanceUID(), definition->symbol());
    if (definition != nullptr && edited_.unread.count(key) != 0) return false;
    if (edit.right != nullptr || rules_.mayRemove) return true;
    summary_.kept.push_back({nameOf(set), propertyName(property, shown().partitionDictionary())});
    return false;
  }

  /// @param place  the property of the merged set; null when it has none.
  /// @return whether that changes the set.
  bool apply(const PropertyPair& edit, const Element* place, MetadataSet& set) {
    if (place == nullptr && edit.right == nullptr) return false;
    if (place != nullptr && isSame(place, edit.right)) return false;
    if (place != nullptr && isToldAs(*place, edit)) {
      const auto all = targetsOf(place), shown = targetsOf(edit.left);
      if (all != shown) return applyReferences(edit, *place, all, shown, set);
    }
    if (edit.right == nullptr) {
      set.remove(*place);
    } else {
      // The set belongs to the result, whose properties may change.
      copyValue(*edit.right, place == nullptr ? addProperty(*edit.right, set) : const_cast<Element&>(*place));
    }
    return true;
  }

  /// Whether the document has the property under its definition, not as octets of an unknown one.
  static bool isToldAs(const Element& place, const PropertyPair& edit) {
    const Element& told = edit.right == nullptr ? *edit.left : *edit.right;
    return told.metaAttribute().metaElement() == place.metaAttribute().metaElement();
  }

  /// Of references that the document does not all show.
  bool applyReferences(const PropertyPair& edit, const Element& place, const ReferenceTargets& all,
                       const ReferenceTargets& shown, const MetadataSet& set) {
    const bool isCollection = dynamic_cast<const CollectionElement*>(&place) != nullptr;
    const auto merged = isCollection && edit.right != nullptr ? mergeReferences(all, shown, targetsOf(edit.right))
                                                              : std::optional<ReferenceTargets>();
    if (!merged) refuse(set, place);
    if (*merged == all) return false;
    setTargets(*merged, const_cast<Element&>(place));
    return true;
  }

  /// An element that refers to nothing is what documents have for a reference that they do not show. When it is gone,
  /// the user has something in mind.
  void refuseLostReferences(const MetadataSet& set, const DocumentContent& unedited, const MetadataSet& after) const {
    if (unedited.unread.empty()) return;
    for (const Element* property : set.inDefinitionOrder()) {
      const auto* definition = property->metaAttribute().metaElement();
      if (definition == nullptr || !isReference(*definition)) continue;
      const auto key = DocumentContent::keyOf(*set.instanceUID(), definition->symbol());
      const auto* edited = after.find(definition->key());
      const bool isGone = edited == nullptr || !edited->isPresent();
      if (unedited.unread.count(key) != 0 && edited_.unread.count(key) == 0 && isGone) refuse(set, *property);
    }
  }

  [[noreturn]] void refuse(const MetadataSet& set, const Element& property) const {
    throw UnclearEdit("the " + nameOf(set) + ": " + propertyName(property, originalTags_) +
                          " was edited, and refers to sets that the document does not show there",
                      kSource, __LINE__);
  }

  /// What the document shows of references to sets that were taken out, it means.
  void refuseHiddenReferences() const {
    if (removed_.empty()) return;
    for (const MetadataSet* set : result_->sets()) {
      const auto* after = set->instanceUID() == nullptr ? nullptr : findOnly(after_, *set->instanceUID());
      const auto shown = after == nullptr ? ReferenceTargets() : allTargetsOf(*after);
      for (const auto& target : allTargetsOf(*set)) {
        const auto removed = removed_.find(target);
        if (removed == removed_.end() || std::find(shown.begin(), shown.end(), target) != shown.end()) continue;
        throw UnclearEdit("the " + nameOf(*removed->second) + " was taken out, and the " + nameOf(*set) +
                              " refers to it, which the document does not show there",
                          kSource, __LINE__);
      }
    }
  }

  Element& addProperty(const Element& property, MetadataSet& set) {
    const auto& dictionary = *result_->partitionDictionary().dictionary();
    const auto* definition = property.metaAttribute().metaElement();
    if (definition == nullptr) {
      return set.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(tagFor(property)));
    }
    const auto* attribute = set.definition()->findAttribute(definition->key());
    if (attribute != nullptr && PropertyIdentity(property, afterTags_).kind == PropertyIdentity::Kind::kValid) {
      return set.createElement(*attribute);
    }
    const auto* known = dictionary.findElement(definition->key());
    return set.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(known));
  }

  /// Under which tag the result has an unknown property of the edited partition.
  Types::LocalTag tagFor(const Element& property) {
    auto& tags = result_->partitionDictionary();
    if (const auto* label = unknownLabelOf(property, afterTags_)) return tags.findOrGenerate(*label);
    if (const auto tag = tagInOctets(property, afterTags_)) return Types::LocalTag(tag);
    return tags.unlistedTag(unlisted_++);
  }

  void addNewSets() {
    for (const MetadataSet* set : after_.sets()) {
      const auto* instanceUID = set->instanceUID();
      if (instanceUID == nullptr || edited_.unnamed.count(set) != 0 ||
          !original_.findByInstanceUID(*instanceUID).empty() || !full().findByInstanceUID(*instanceUID).empty()) {
        continue;
      }
      ++summary_.addedSets;
      addSet(*set);
    }
  }

  /// Sets without InstanceUID are told by what they say; one that says something else is nobody's.
  void tellUntakenUnnamed() {
    std::map<std::string, int64> balance;
    std::map<std::string, std::string> names;
    const auto count = [&](const DocumentContent& document, int64 by) {
      for (const MetadataSet* set : document.unnamed) {
        const auto content = contentOf(*set, document.partition->partitionDictionary());
        balance[content] += by;
        names[content] = set->name();
      }
    };
    count(documents_.shown, -1);
    count(edited_, 1);
    std::set<std::string> untaken;
    for (const auto& [content, difference] : balance) {
      if (difference != 0) untaken.insert(names.at(content));
    }
    for (const auto& name : untaken) summary_.untaken.push_back({name, "it has no InstanceUID"});
  }

  void addSet(const MetadataSet& set) {
    if (const auto* group = asGroup(&set)) {
      return result_->addKLV(group->key(), group->berLength(), group->value().data(), group->value().size(), 0);
    }
    auto& added = *result_->createMetadataSet(set.key());
    added.setBerLength(set.berLength());
    for (const Element* property : set.inDefinitionOrder()) copyValue(*property, addProperty(*property, added));
  }

  // Dark KLVs: what is there before but not after is replaced by what is there after but not before.

  void compareDark() {
    const auto after = countDark(after_), inFull = countDark(full());
    const auto countIn = [](const DarkCounts& counts, const DarkKey& key) {
      const auto found = counts.find(key);
      return found == counts.end() ? int64{0} : found->second;
    };
    for (const auto& [key, count] : countDark(shown())) {
      if (count > countIn(after, key)) removedDark_[key] = count - countIn(after, key);
    }
    for (const auto& [key, count] : after) {
      for (int64 i = countIn(inFull, key); i < count; ++i) addedDark_.emplace(key.first, key.second);
    }
  }

  template <class Set>
  void mergeDark(const Set& set) {
    const auto removed = removedDark_.find(DarkKey(set.key(), octetsOfValue(set)));
    if (removed == removedDark_.end() || removed->second == 0) return append(set, *result_);
    --removed->second;
    const auto replacement = addedDark_.find(set.key());
    if (replacement == addedDark_.end() && !rules_.mayRemove) {
      summary_.kept.push_back({"dark set " + Utils::wstringToString(set.key().toString()), ""});
      return append(set, *result_);
    }
    if (replacement == addedDark_.end()) return void(++summary_.removedSets);
    ++summary_.changedSets;
    ++summary_.changedProperties;
    result_->addKLV(set.key(), set.berLength(), replacement->second.data(), replacement->second.size(), 0);
    addedDark_.erase(replacement);
  }
  static Bytes octetsOfValue(const DarkParsedGroup& group) { return group.value(); }
  static Bytes octetsOfValue(const DarkMetadataSet& set) {
    return Bytes(set.value().rawBuffer(), set.value().rawBuffer() + set.value().serializedSize());
  }
  template <class Set>
  static void append(const Set& set, PartitionMetadata& to) {
    const Bytes octets = octetsOfValue(set);
    to.addKLV(set.key(), set.berLength(), octets.data(), octets.size(), 0);
  }
  static void append(const MetadataSet& set, PartitionDictionary& tags, PartitionMetadata& to) {
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, tags);
    const std::size_t head = KLV::Key::kSize + set.berLength();
    to.addKLV(set.key(), set.berLength(), sink.rawBuffer() + head, sink.serializedSize() - head, 0);
  }

  void addDark(const KLV::Key& key, const Bytes& octets) {
    ++summary_.addedSets;
    result_->addKLV(key, 4, octets.data(), octets.size(), 0);
  }

  const PartitionMetadata& original_;
  const UneditedDocuments& documents_;
  const DocumentContent& edited_;
  const PartitionMetadata& after_;
  const MergeRules& rules_;
  PartitionDictionary originalTags_;  // a copy: writing may enter tags
  PartitionDictionary afterTags_;
  auto_ptr<PartitionMetadata> result_;
  MergeSummary summary_;
  std::size_t unlisted_ = 0;
  std::unordered_map<Types::UUID, const MetadataSet*> removed_;
  std::map<DarkKey, int64> removedDark_;
  std::multimap<KLV::Key, Bytes> addedDark_;
};

std::size_t countEditsOfSet(const MetadataSet& before, const PartitionDictionary& beforeTags, const MetadataSet* after,
                            const PartitionDictionary& afterTags) {
  if (after == nullptr) return 1;
  if (asGroup(&before) == nullptr && asGroup(after) == nullptr) {
    return differingProperties(before, beforeTags, *after, afterTags).size();
  }
  return areSame(before, beforeTags, *after, afterTags) ? 0 : 1;
}

std::size_t countDarkEdits(const PartitionMetadata& before, const PartitionMetadata& after) {
  auto balance = countDark(before);
  for (const auto& [key, count] : countDark(after)) balance[key] -= count;
  std::size_t edits = 0;
  for (const auto& [key, count] : balance) edits += static_cast<std::size_t>(count < 0 ? -count : count);
  return edits;
}

}  // namespace

std::string DocumentContent::keyOf(const Types::UUID& instanceUID, const std::string& symbol) {
  return textOf(instanceUID) + " " + symbol;
}

auto_ptr<PartitionMetadata> mergeEdits(const PartitionMetadata& original, const UneditedDocuments& documents,
                                       const DocumentContent& edited, const MergeRules& rules, MergeSummary* summary) {
  return Merge(original, documents, edited, rules).run(summary);
}

std::size_t countEdits(const DocumentContent& unedited, const DocumentContent& edited) {
  const PartitionMetadata &before = *unedited.partition, &after = *edited.partition;
  const auto &beforeTags = before.partitionDictionary(), &afterTags = after.partitionDictionary();
  std::size_t edits = countDarkEdits(before, after);
  for (const MetadataSet* set : before.sets()) {
    if (set->instanceUID() == nullptr || unedited.unnamed.count(set) != 0) continue;
    edits += countEditsOfSet(*set, beforeTags, findOnly(after, *set->instanceUID()), afterTags);
  }
  for (const MetadataSet* set : after.sets()) {
    if (set->instanceUID() == nullptr || edited.unnamed.count(set) != 0) continue;
    if (before.findByInstanceUID(*set->instanceUID()).empty()) ++edits;
  }
  return edits;
}

}  // namespace Vantor
