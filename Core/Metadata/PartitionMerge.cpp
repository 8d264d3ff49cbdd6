#include "Core/Metadata/PartitionMerge.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "Core/DataIO/Memory.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PropertyIdentity.h"
#include "Core/Metadata/PropertyPairing.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Factories.h"

namespace Vantor {

namespace {

constexpr const char* kSource = "Core/Metadata/PartitionMerge";

Bytes octetsOf(const Element& property) {
  const auto* value = property.wireValue();
  if (value == nullptr) return {};
  return Bytes(value->rawBuffer(), value->rawBuffer() + value->encodedSize());
}

/// Both are read from documents: where these say the same, the values are the same.
bool isSame(const Element* left, const Element* right) {
  if (left == nullptr || right == nullptr) return left == right;
  const auto *leftValue = left->wireValue(), *rightValue = right->wireValue();
  if (leftValue == nullptr || rightValue == nullptr) return leftValue == rightValue;
  return leftValue->identifier() == rightValue->identifier() && octetsOf(*left) == octetsOf(*right);
}

/// The set with an InstanceUID, where there is only one.
const MetadataSet* findOnly(const PartitionMetadata& partition, const Types::UUID& instanceUID) {
  const auto& found = partition.findByInstanceUID(instanceUID);
  return found.size() == 1 ? found.front() : nullptr;
}

const DarkParsedGroup* asGroup(const MetadataSet* set) { return dynamic_cast<const DarkParsedGroup*>(set); }

/// Gives a property of one partition the value that one of another partition has.
void copyValue(const Element& from, Element& to) {
  const auto* definition = to.metaAttribute().metaElement();
  const Bytes octets = octetsOf(from);
  to.markPresent();
  if (from.wireValue() == nullptr) return setDecodedValue(to, nullptr);
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

/// What is to be done to one property.
struct PropertyEdit {
  const Element* before;  ///< null for one that is added
  const Element* after;   ///< null for one that is taken out
};

/// The edits of one set.
std::vector<PropertyEdit> editsOf(const MetadataSet& before, const PartitionDictionary& beforeTags,
                                  const MetadataSet& after, const PartitionDictionary& afterTags) {
  std::vector<PropertyEdit> edits;
  for (const auto& pair : pairProperties(before, beforeTags, after, afterTags)) {
    if (!isSame(pair.left, pair.right)) edits.push_back({pair.left, pair.right});
  }
  return edits;
}

/// KLVs that are told by what they hold.
using DarkKey = std::pair<KLV::Key, Bytes>;

class Merge {
 public:
  Merge(const PartitionMetadata& original, const std::vector<const PartitionMetadata*>& before,
        const PartitionMetadata& after, const MergeRules& rules)
      : original_(original),
        before_(before),
        after_(after),
        rules_(rules),
        originalTags_(original.partitionDictionary()),
        afterTags_(after.partitionDictionary()),
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
    if (summary != nullptr) *summary = summary_;
    return std::move(result_);
  }

 private:
  const PartitionMetadata& fullest() const { return *before_.front(); }
  void keep(const MetadataSet& set) { append(set, originalTags_, *result_); }

  void mergeSet(const MetadataSet& set) {
    const auto* instanceUID = set.instanceUID();
    if (instanceUID == nullptr && asGroup(&set) != nullptr) return mergeDark(*asGroup(&set));
    const auto* before = instanceUID == nullptr || findOnly(original_, *instanceUID) == nullptr
                             ? nullptr
                             : findOnly(fullest(), *instanceUID);
    if (before == nullptr) return keep(set);
    const auto* after = findOnly(after_, *instanceUID);
    if (after == nullptr) {
      rules_.mayRemove && !isMissingInAForm(*instanceUID) ? void(++summary_.removedSets) : keep(set);
    } else if (asGroup(&set) != nullptr || asGroup(after) != nullptr) {
      mergeGroup(set, *after);
    } else {
      mergeProperties(set, *before, *after);
    }
  }

  /// Whether a document that nobody edited may lack the set.
  bool isMissingInAForm(const Types::UUID& instanceUID) const {
    return std::any_of(before_.begin(), before_.end(),
                       [&](const PartitionMetadata* form) { return findOnly(*form, instanceUID) == nullptr; });
  }

  void mergeGroup(const MetadataSet& set, const MetadataSet& after) {
    const auto* edited = asGroup(&after);
    const bool isUnedited = std::any_of(before_.begin(), before_.end(), [&](const PartitionMetadata* form) {
      const auto* group = asGroup(findOnly(*form, *set.instanceUID()));
      return group != nullptr && edited != nullptr && group->value() == edited->value();
    });
    if (isUnedited) return keep(set);
    ++summary_.changedSets;
    ++summary_.changedProperties;
    addSet(after);
  }

  void mergeProperties(const MetadataSet& set, const MetadataSet& before, const MetadataSet& after) {
    auto edits = editsOf(before, fullest().partitionDictionary(), after, afterTags_);
    const auto isNoEdit = [&](const PropertyEdit& edit) { return !isEdit(edit, *set.instanceUID(), after); };
    edits.erase(std::remove_if(edits.begin(), edits.end(), isNoEdit), edits.end());
    keep(set);
    if (edits.empty()) return;
    ++summary_.changedSets;
    summary_.changedProperties += edits.size();
    apply(edits, before, *result_->sets().back());
  }

  /// Whether what differs from the fullest form differs from all of them, and may be changed at all.
  bool isEdit(const PropertyEdit& edit, const Types::UUID& instanceUID, const MetadataSet& after) const {
    if (edit.after == nullptr && !rules_.mayRemove) return false;
    const auto* definition = (edit.before == nullptr ? edit.after : edit.before)->metaAttribute().metaElement();
    if (definition != nullptr && rules_.untouched.count(MergeRules::keyOf(instanceUID, definition->symbol())) != 0) {
      return false;
    }
    return std::none_of(before_.begin() + 1, before_.end(), [&](const PartitionMetadata* form) {
      const auto* set = findOnly(*form, instanceUID);
      return set != nullptr && isSameIn(*form, *set, edit, after);
    });
  }

  /// Whether another form of the unedited document has what the edited one has.
  bool isSameIn(const PartitionMetadata& form, const MetadataSet& set, const PropertyEdit& edit,
                const MetadataSet& after) const {
    const auto pairs = pairProperties(set, form.partitionDictionary(), after, afterTags_);
    if (edit.after != nullptr) {
      return std::any_of(pairs.begin(), pairs.end(), [&](const PropertyPair& pair) {
        return pair.right == edit.after && isSame(pair.left, pair.right);
      });
    }
    const PropertyIdentity removed(*edit.before, fullest().partitionDictionary());
    return std::none_of(pairs.begin(), pairs.end(), [&](const PropertyPair& pair) {
      return pair.left != nullptr && PropertyIdentity(*pair.left, form.partitionDictionary()) == removed;
    });
  }

  void apply(const std::vector<PropertyEdit>& edits, const MetadataSet& before, MetadataSet& set) {
    std::unordered_map<const Element*, const Element*> places;  // by the property before
    for (const auto& pair :
         pairProperties(set, result_->partitionDictionary(), before, fullest().partitionDictionary())) {
      if (pair.right != nullptr) places[pair.right] = pair.left;
    }
    for (const auto& edit : edits) {
      const auto found = places.find(edit.before);
      const Element* place = found == places.end() ? nullptr : found->second;
      if (edit.after == nullptr) {
        if (place != nullptr) set.remove(*place);
      } else {
        // The set belongs to the result, whose properties may change.
        copyValue(*edit.after, place == nullptr ? addProperty(*edit.after, set) : const_cast<Element&>(*place));
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
    const PropertyIdentity identity(property, afterTags_);
    if (identity.kind == PropertyIdentity::Kind::kUnknownTag) return Types::LocalTag(identity.tag);
    return tags.unlistedTag(unlisted_++);
  }

  void addNewSets() {
    for (const MetadataSet* set : after_.sets()) {
      const auto* instanceUID = set->instanceUID();
      if (instanceUID == nullptr || !original_.findByInstanceUID(*instanceUID).empty() ||
          !fullest().findByInstanceUID(*instanceUID).empty() || isNameless(*set)) {
        continue;
      }
      ++summary_.addedSets;
      addSet(*set);
    }
  }

  /// Whether the set may be one that has no InstanceUID in the file, and got another one at every reading.
  bool isNameless(const MetadataSet& set) const {
    const auto& sets = original_.find(set.key());
    return std::any_of(sets.begin(), sets.end(),
                       [](const MetadataSet* known) { return known->instanceUID() == nullptr; });
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

  template <class Add>
  static void forEachDark(const PartitionMetadata& partition, Add&& add) {
    for (auto at = partition.darkBegin(); at != partition.darkEnd(); ++at) {
      const auto& value = (*at)->value();
      add(DarkKey((*at)->key(), Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize())));
    }
    for (const MetadataSet* set : partition.sets()) {
      const auto* group = asGroup(set);
      if (group != nullptr && group->instanceUID() == nullptr) add(DarkKey(group->key(), group->value()));
    }
  }

  void compareDark() {
    std::map<DarkKey, int64> balance;
    forEachDark(fullest(), [&](DarkKey key) { --balance[std::move(key)]; });
    forEachDark(after_, [&](DarkKey key) { ++balance[std::move(key)]; });
    for (auto& [key, count] : balance) {
      for (; count < 0; ++count) ++removedDark_[key];
      for (; count > 0; --count) addedDark_.emplace(key.first, key.second);
    }
  }

  template <class Set>
  void mergeDark(const Set& set) {
    const auto removed = removedDark_.find(DarkKey(set.key(), octetsOfValue(set)));
    if (removed == removedDark_.end() || removed->second == 0) return append(set, *result_);
    const auto replacement = addedDark_.find(set.key());
    if (replacement == addedDark_.end() && !rules_.mayRemove) return append(set, *result_);
    --removed->second;
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
  const std::vector<const PartitionMetadata*>& before_;
  const PartitionMetadata& after_;
  const MergeRules& rules_;
  PartitionDictionary originalTags_;  // a copy: writing may enter tags
  PartitionDictionary afterTags_;
  auto_ptr<PartitionMetadata> result_;
  MergeSummary summary_;
  std::size_t unlisted_ = 0;
  std::map<DarkKey, uint64> removedDark_;
  std::multimap<KLV::Key, Bytes> addedDark_;
};

}  // namespace

std::string MergeRules::keyOf(const Types::UUID& instanceUID, const std::string& symbol) {
  return Utils::wstringToString(instanceUID.toString(kDottedForm)) + " " + symbol;
}

auto_ptr<PartitionMetadata> mergeEdits(const PartitionMetadata& original,
                                       const std::vector<const PartitionMetadata*>& before,
                                       const PartitionMetadata& after, const MergeRules& rules, MergeSummary* summary) {
  return Merge(original, before, after, rules).run(summary);
}

}  // namespace Vantor
