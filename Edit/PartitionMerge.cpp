#include "Edit/PartitionMerge.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "Core/Comparison/DocumentDifference.h"
#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/Metadata/DarkTags.h"
#include "Edit/DarkMerge.h"
#include "Edit/PropertyMerge.h"

namespace Vantor {

using namespace DocumentDifference;

namespace {

constexpr const char* kSource = "Edit/PartitionMerge";

ReferenceTargets allTargetsOf(const MetadataSet& set) {
  ReferenceTargets targets;
  for (const Element* property : set.inDefinitionOrder()) property->appendTargets({true}, targets);
  return targets;
}

/// Whether a document has a set, other than one whose InstanceUID is made up.
bool isNamed(const MetadataSet& set, const DocumentContent& document) {
  return set.instanceUID() != nullptr && document.unnamed.count(&set) == 0;
}

void reserveTagsOfDark(const PartitionMetadata& partition, PartitionDictionary& tags) {
  for (const MetadataSet* set : partition.sets()) {
    if (const auto* group = asGroup(set))
      reserveDarkTags(group->key(), group->value().data(), group->value().size(), tags);
  }
  for (auto at = partition.darkBegin(); at != partition.darkEnd(); ++at) {
    const auto& value = (*at)->value();
    reserveDarkTags((*at)->key(), value.rawBuffer(), value.serializedSize(), tags);
  }
}

/// Merges set by set; what is within them is for others.
class Merge {
 public:
  Merge(const PartitionMetadata& original, const UneditedDocuments& documents, const DocumentContent& edited,
        const MergeRules& rules);
  auto_ptr<PartitionMetadata> run(MergeSummary* summary);

 private:
  const PartitionMetadata& shown() const { return *documents_.shown.partition; }
  const PartitionMetadata& full() const { return *documents_.full.partition; }

  auto_ptr<PartitionMetadata> makeResult() const;
  MetadataSet& keep(const MetadataSet& set);
  void mergeSet(const MetadataSet& set);
  void mergeSet(const MetadataSet& set, const MetadataSet& after, const DocumentContent& unedited);
  void takeOut(const MetadataSet& set);
  void keepOneOfSeveral(const MetadataSet& set);
  void mergeGroup(const MetadataSet& set, const MetadataSet& before, const MetadataSet& after);
  void mergeProperties(const MetadataSet& set, const DocumentContent& unedited, const MetadataSet& before,
                       const MetadataSet& after);
  void countChanges(std::size_t properties);
  void refuseHiddenReferences() const;
  void addNewSets();
  MetadataSet& addSet(const MetadataSet& set);
  void tellUntakenUnnamed();

  const PartitionMetadata& original_;
  const UneditedDocuments& documents_;
  const DocumentContent& edited_;
  const PartitionMetadata& after_;
  const MergeRules& rules_;
  PartitionDictionary originalTags_;  // a copy: writing may enter tags
  auto_ptr<PartitionMetadata> result_;
  PropertyMerge properties_;
  DarkMerge dark_;
  MergeSummary summary_;
  std::unordered_map<Types::UUID, const MetadataSet*> removed_;
};

Merge::Merge(const PartitionMetadata& original, const UneditedDocuments& documents, const DocumentContent& edited,
             const MergeRules& rules)
    : original_(original),
      documents_(documents),
      edited_(edited),
      after_(*edited.partition),
      rules_(rules),
      originalTags_(original.partitionDictionary()),
      result_(makeResult()),
      properties_(originalTags_, edited, rules, *result_),
      dark_(original, documents, after_, rules) {}

auto_ptr<PartitionMetadata> Merge::makeResult() const {
  auto result = std::make_unique<PartitionMetadata>(originalTags_.dictionary());
  auto& tags = result->partitionDictionary();
  tags.setPrimerCoding(originalTags_.primerKey(), originalTags_.primerLengthOctets());
  for (const auto& entry : originalTags_.primerEntries()) tags.addPrimerEntry(entry);
  for (const auto* partition : {&original_, &after_}) reserveTagsOfDark(*partition, tags);
  return result;
}

auto_ptr<PartitionMetadata> Merge::run(MergeSummary* summary) {
  for (const auto& entry : original_.entries()) {
    if (const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry)) {
      mergeSet(**set);
    } else {
      dark_.merge(*std::get<auto_ptr<DarkMetadataSet>>(entry), *result_, summary_);
    }
  }
  addNewSets();
  dark_.addNew(*result_, summary_);
  refuseHiddenReferences();
  tellUntakenUnnamed();
  if (summary != nullptr) *summary = std::move(summary_);
  return std::move(result_);
}

MetadataSet& Merge::keep(const MetadataSet& set) {
  DataIO::Memory::MemoryDataSink sink;
  set.serialize(sink, originalTags_);
  DataIO::Memory::MemoryDataSource source(sink.rawBuffer(), sink.serializedSize());
  source.skip(KLV::Key::kSize);
  KLV::readBERLength(source);
  result_->addKLV(set.key(), set.berLength(), sink.rawBuffer() + source.position(), source.remaining(), 0);
  return *result_->sets().back();
}

void Merge::mergeSet(const MetadataSet& set) {
  const auto* instanceUID = set.instanceUID();
  if (instanceUID == nullptr) {
    if (const auto* group = asGroup(&set)) return dark_.merge(*group, *result_, summary_);
    return void(keep(set));
  }
  if (findOnly(original_, *instanceUID) == nullptr) return keepOneOfSeveral(set);
  const bool isShown = findOnly(shown(), *instanceUID) != nullptr;
  const auto* after = findOnly(after_, *instanceUID);
  if (after != nullptr) return mergeSet(set, *after, isShown ? documents_.shown : documents_.full);
  if (isShown) return takeOut(set);
  keep(set);
}

void Merge::mergeSet(const MetadataSet& set, const MetadataSet& after, const DocumentContent& unedited) {
  const auto* before = findOnly(*unedited.partition, *set.instanceUID());
  if (before == nullptr) {
    summary_.untaken.push_back({set.fullName(), "an unedited document does not have it"});
    keep(set);
  } else if (asGroup(&set) != nullptr || asGroup(&after) != nullptr) {
    mergeGroup(set, *before, after);
  } else if (before->definition() != after.definition()) {
    summary_.untaken.push_back({set.fullName(), "the document has a " + after.name() + " with its InstanceUID"});
    keep(set);
  } else {
    mergeProperties(set, unedited, *before, after);
  }
}

void Merge::takeOut(const MetadataSet& set) {
  if (rules_.mayRemove) {
    ++summary_.removedSets;
    removed_.emplace(*set.instanceUID(), &set);
  } else {
    summary_.kept.push_back({set.fullName(), ""});
    keep(set);
  }
}

/// Which of the sets with one InstanceUID is meant, nobody can tell.
void Merge::keepOneOfSeveral(const MetadataSet& set) {
  keep(set);
  const auto& all = original_.findByInstanceUID(*set.instanceUID());
  const auto* before = findOnly(shown(), *set.instanceUID());
  if (&set != all.front() || before == nullptr) return;
  const auto* after = findOnly(after_, *set.instanceUID());
  if (after == nullptr && !rules_.mayRemove) return summary_.kept.push_back({set.fullName(), ""});
  if (after != nullptr && !hasOtherLengthOctets(*before, *after) &&
      areSame(*before, shown().partitionDictionary(), *after, after_.partitionDictionary())) {
    return;
  }
  summary_.untaken.push_back({set.fullName(), "another set has the same InstanceUID"});
}

void Merge::mergeGroup(const MetadataSet& set, const MetadataSet& before, const MetadataSet& after) {
  const bool isRecoded = hasOtherLengthOctets(before, after);
  const bool isSame = areSame(before, originalTags_, after, after_.partitionDictionary());
  auto& merged = isSame ? keep(set) : addSet(after);
  if (isSame && !isRecoded) return;
  merged.setBerLength(isRecoded ? after.berLength() : set.berLength());
  countChanges(1);
}

void Merge::mergeProperties(const MetadataSet& set, const DocumentContent& unedited, const MetadataSet& before,
                            const MetadataSet& after) {
  auto& merged = keep(set);
  auto changed = properties_.merge(unedited, before, after, merged, summary_);
  // Documents that were made without the definition of the set say how long its length field is.
  if (hasOtherLengthOctets(before, after)) {
    merged.setBerLength(after.berLength());
    ++changed;
  }
  countChanges(changed);
}

void Merge::countChanges(std::size_t properties) {
  summary_.changedProperties += properties;
  if (properties != 0) ++summary_.changedSets;
}

/// What the document shows of references to sets that were taken out, it means.
void Merge::refuseHiddenReferences() const {
  if (removed_.empty()) return;
  for (const MetadataSet* set : result_->sets()) {
    const auto* after = set->instanceUID() == nullptr ? nullptr : findOnly(after_, *set->instanceUID());
    const auto shown = after == nullptr ? ReferenceTargets() : allTargetsOf(*after);
    for (const auto& target : allTargetsOf(*set)) {
      const auto removed = removed_.find(target);
      if (removed == removed_.end() || std::find(shown.begin(), shown.end(), target) != shown.end()) continue;
      throw UnclearEdit("the " + removed->second->fullName() + " was taken out, and the " + set->fullName() +
                            " refers to it, which the document does not show there",
                        kSource, __LINE__);
    }
  }
}

void Merge::addNewSets() {
  for (const MetadataSet* set : after_.sets()) {
    if (!isNamed(*set, edited_)) continue;
    const auto& instanceUID = *set->instanceUID();
    if (!original_.findByInstanceUID(instanceUID).empty() || !full().findByInstanceUID(instanceUID).empty()) continue;
    ++summary_.addedSets;
    addSet(*set);
  }
}

MetadataSet& Merge::addSet(const MetadataSet& set) {
  if (const auto* group = asGroup(&set)) {
    result_->addKLV(group->key(), group->berLength(), group->value().data(), group->value().size(), 0);
    return *result_->sets().back();
  }
  auto& added = *result_->createMetadataSet(set.key());
  added.setBerLength(set.berLength());
  properties_.copyAll(set, added);
  return added;
}

/// Sets without InstanceUID are told by what they say; one that says something else is nobody's.
void Merge::tellUntakenUnnamed() {
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

/// @param after  null when the document does not have the set.
std::size_t countEditsOfSet(const MetadataSet& before, const PartitionDictionary& beforeTags, const MetadataSet* after,
                            const PartitionDictionary& afterTags) {
  if (after == nullptr) return 1;
  const std::size_t recoded = hasOtherLengthOctets(before, *after) ? 1 : 0;
  if (asGroup(&before) == nullptr && asGroup(after) == nullptr) {
    return differingProperties(before, beforeTags, *after, afterTags).size() + recoded;
  }
  return areSame(before, beforeTags, *after, afterTags) ? recoded : 1;
}

std::size_t countDarkEdits(const PartitionMetadata& before, const PartitionMetadata& after) {
  auto befores = darkKLVsOf(before), afters = darkKLVsOf(after);
  for (const auto& [key, octets] : befores) afters[key];  // so that each key is met
  std::size_t edits = 0;
  for (const auto& [key, octets] : afters) {
    const auto difference = compareDark(befores[key], octets);
    edits += difference.removed.size() + difference.added.size() + difference.recoded.size();
  }
  return edits;
}

}  // namespace

std::string DocumentContent::keyOf(const Types::UUID& instanceUID, const std::string& symbol) {
  return instanceUID.dottedText() + " " + symbol;
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
    if (!isNamed(*set, unedited)) continue;
    edits += countEditsOfSet(*set, beforeTags, findOnly(after, *set->instanceUID()), afterTags);
  }
  for (const MetadataSet* set : after.sets()) {
    if (isNamed(*set, edited) && before.findByInstanceUID(*set->instanceUID()).empty()) ++edits;
  }
  return edits;
}

}  // namespace Vantor
