#include "Edit/DarkMerge.h"

#include <algorithm>

#include "Core/Platform/Strings.h"

namespace Vantor {

using namespace DocumentDifference;

namespace {

const LengthOctets& find(const DarkKLVs& all, const DarkKey& key) {
  static const LengthOctets kNone;
  const auto found = all.find(key);
  return found == all.end() ? kNone : found->second;
}

/// A partition may repeat another one with other length fields than the document tells, and has edits of its own KLVs.
void applyTo(const LengthOctets& original, const LengthOctets& before, DarkDifference& edits) {
  for (const auto& difference : compareDark(before, original).recoded) {
    const auto told = difference.first, own = difference.second;
    const auto recoded = std::find_if(edits.recoded.begin(), edits.recoded.end(),
                                      [told](const auto& pair) { return pair.first == told; });
    const auto removed = std::find(edits.removed.begin(), edits.removed.end(), told);
    if (recoded != edits.recoded.end()) {
      recoded->first = own;
    } else if (removed != edits.removed.end()) {
      *removed = own;
    }
  }
}

void append(const KLV::Key& key, uint8 lengthOctets, const Bytes& value, PartitionMetadata& to) {
  to.addKLV(key, lengthOctets, value.data(), value.size(), 0);
}

void countChange(MergeSummary& summary) {
  ++summary.changedSets;
  ++summary.changedProperties;
}

}  // namespace

struct DarkMerge::KLVView {
  DarkKey identity;
  uint8 lengthOctets;
  const KLV::Key& key() const { return identity.first; }
  const Bytes& value() const { return identity.second; }
};

DarkMerge::DarkMerge(const PartitionMetadata& original, const UneditedDocuments& documents,
                     const PartitionMetadata& edited, const MergeRules& rules)
    : mayRemove_(rules.mayRemove) {
  const auto originals = darkKLVsOf(original), shown = darkKLVsOf(*documents.shown.partition);
  const auto full = darkKLVsOf(*documents.full.partition), all = darkKLVsOf(edited);
  for (const auto& [key, before] : shown) {
    if (all.count(key) != 0) continue;
    applyTo(find(originals, key), before, edits_[key] = compareDark(before, {}));
  }
  for (const auto& [key, after] : all) {
    // The user may have brought in what the form of the document leaves out.
    const bool isShown = after.size() <= find(shown, key).size();
    const auto& before = find(isShown ? shown : full, key);
    auto edits = compareDark(before, after);
    if (!isShown) edits.removed.clear();
    for (const uint8 octets : edits.added) added_.emplace(key.first, Coded(octets, key.second));
    applyTo(find(originals, key), before, edits);
    edits_[key] = std::move(edits);
  }
}

void DarkMerge::merge(const DarkMetadataSet& set, PartitionMetadata& result, MergeSummary& summary) {
  const auto& value = set.value();
  const Bytes octets(value.rawBuffer(), value.rawBuffer() + value.serializedSize());
  merge(KLVView{{set.key(), octets}, set.berLength()}, result, summary);
}

void DarkMerge::merge(const DarkParsedGroup& set, PartitionMetadata& result, MergeSummary& summary) {
  merge(KLVView{{set.key(), set.value()}, set.berLength()}, result, summary);
}

void DarkMerge::merge(const KLVView& klv, PartitionMetadata& result, MergeSummary& summary) {
  auto& edits = edits_[klv.identity];
  const auto recoded = std::find_if(edits.recoded.begin(), edits.recoded.end(),
                                    [&klv](const auto& pair) { return pair.first == klv.lengthOctets; });
  const auto removed = std::find(edits.removed.begin(), edits.removed.end(), klv.lengthOctets);
  if (recoded != edits.recoded.end()) {
    if (recoded->second != klv.lengthOctets) countChange(summary);
    append(klv.key(), recoded->second, klv.value(), result);
    edits.recoded.erase(recoded);
  } else if (removed != edits.removed.end()) {
    edits.removed.erase(removed);
    replace(klv, result, summary);
  } else {
    append(klv.key(), klv.lengthOctets, klv.value(), result);
  }
}

void DarkMerge::replace(const KLVView& klv, PartitionMetadata& result, MergeSummary& summary) {
  const auto replacement = added_.find(klv.key());
  if (replacement != added_.end()) {
    countChange(summary);
    const auto& [octets, value] = replacement->second;
    append(klv.key(), octets == 0 ? klv.lengthOctets : octets, value, result);
    added_.erase(replacement);
  } else if (mayRemove_) {
    ++summary.removedSets;
  } else {
    summary.kept.push_back({"dark set " + Utils::wstringToString(klv.key().toString()), ""});
    append(klv.key(), klv.lengthOctets, klv.value(), result);
  }
}

void DarkMerge::addNew(PartitionMetadata& result, MergeSummary& summary) const {
  for (const auto& [key, coded] : added_) {
    ++summary.addedSets;
    append(key, coded.first, coded.second, result);
  }
}

}  // namespace Vantor
