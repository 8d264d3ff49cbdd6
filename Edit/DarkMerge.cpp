#include "Edit/DarkMerge.h"

#include <algorithm>

#include "Core/Platform/Strings.h"

namespace Vantor::Edit {

namespace {

const LengthOctets& find(const DarkKLVs& all, const DarkKey& key) {
  static const LengthOctets kNone;
  const auto found = all.find(key);
  return found == all.end() ? kNone : found->second;
}

/// Translates edits of the KLVs of base to those of ours, whose length fields may have other sizes.
void applyTo(const LengthOctets& ours, const LengthOctets& base, DarkDifference& edits) {
  for (const auto& [ofBase, own] : compareDark(base, ours).recoded) {
    const auto recoded = std::find_if(edits.recoded.begin(), edits.recoded.end(),
                                      [wanted = ofBase](const auto& pair) { return pair.first == wanted; });
    const auto removed = std::find(edits.removed.begin(), edits.removed.end(), ofBase);
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

}  // namespace

DarkMerge::DarkMerge(const PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs)
    : mayRemove_(theirs.mayRemove) {
  const auto ofOurs = darkKLVsOf(ours), ofBase = darkKLVsOf(base);
  auto ofTheirs = darkKLVsOf(theirs.partition);
  for (const auto& [key, octets] : ofBase) ofTheirs[key];  // so that the loop visits each key
  for (const auto& [key, after] : ofTheirs) {
    const auto& before = find(ofBase, key);
    auto edits = compareDark(before, after);
    if (edits.removed.empty() && edits.added.empty() && edits.recoded.empty()) continue;
    isUnchanged_ = false;
    for (const uint8 octets : edits.added) added_.emplace(key.first, Coded(octets, key.second));
    applyTo(find(ofOurs, key), before, edits);
    edits_[key] = std::move(edits);
  }
}

void DarkMerge::merge(const KLV::Key& key, uint8 lengthOctets, const Bytes& value, PartitionMetadata& ours,
                      MergeReport& report) {
  auto& edits = edits_[{key, value}];
  const auto recoded = std::find_if(edits.recoded.begin(), edits.recoded.end(),
                                    [lengthOctets](const auto& pair) { return pair.first == lengthOctets; });
  if (recoded != edits.recoded.end()) {
    append(key, recoded->second, value, ours);
    edits.recoded.erase(recoded);
    return;
  }
  const auto removed = std::find(edits.removed.begin(), edits.removed.end(), lengthOctets);
  if (removed == edits.removed.end()) return append(key, lengthOctets, value, ours);
  edits.removed.erase(removed);
  const auto replacement = added_.find(key);
  if (replacement != added_.end()) {
    const auto& [octets, newValue] = replacement->second;
    append(key, octets == 0 ? lengthOctets : octets, newValue, ours);
    added_.erase(replacement);
  } else if (!mayRemove_) {
    report.kept.push_back({"dark set " + Utils::wstringToString(key.toString()), ""});
    append(key, lengthOctets, value, ours);
  }
}

void DarkMerge::addNew(PartitionMetadata& ours) const {
  for (const auto& [key, coded] : added_) append(key, coded.first, coded.second, ours);
}

}  // namespace Vantor::Edit
