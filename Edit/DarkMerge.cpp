#include "Edit/DarkMerge.h"

#include <algorithm>

#include "Core/KLV/Keys.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Platform/Strings.h"

namespace Vantor::Edit {

namespace {

void append(const KLV::Key& key, uint8 lengthOctets, const Bytes& value, PartitionMetadata& to) {
  to.addKLV(key, lengthOctets, value.data(), value.size(), 0);
}

}  // namespace

DarkKLVs darkKLVsOf(const PartitionMetadata& partition) {
  DarkKLVs all;
  for (const auto& entry : partition.entries()) {
    const EntryView view(entry);
    if (!view.isDark() || (view.set != nullptr && view.set->instanceUID() != nullptr)) continue;
    if (KLV::isOfObjectDirectory(*view.key)) continue;
    Bytes value(view.octets.begin(), view.octets.end());
    const auto octets = writtenLengthOctets(view.berLength, value.size());
    all[{*view.key, std::move(value)}].push_back(octets);
  }
  return all;
}

bool DarkDifference::isNone() const {
  return added.empty() && std::all_of(kept.begin(), kept.end(), [](const auto& octets) { return octets == 0; });
}

DarkDifference compareDark(const LengthOctets& base, LengthOctets theirs) {
  DarkDifference difference;
  difference.kept.resize(base.size());
  for (std::size_t i = base.size(); i-- > 0;) {
    const auto same = std::find(theirs.begin(), theirs.end(), base[i]);
    if (same == theirs.end()) continue;
    difference.kept[i] = 0;
    theirs.erase(same);
  }
  // Length fields of no given size come first, since they match any.
  std::stable_partition(theirs.begin(), theirs.end(), [](uint8 octets) { return octets == 0; });
  auto next = theirs.begin();
  for (auto& kept : difference.kept) {
    if (!kept && next != theirs.end()) kept = *next++;
  }
  difference.added.assign(next, theirs.end());
  return difference;
}

DarkMerge::DarkMerge(const PartitionMetadata& base, const Theirs& theirs) : mayRemove_(theirs.mayRemove) {
  auto ofBase = darkKLVsOf(base), ofTheirs = darkKLVsOf(theirs.partition);
  for (const auto& [content, octets] : ofBase) ofTheirs[content];  // so that the loop visits each content
  for (const auto& [content, octets] : ofTheirs) {
    auto edits = compareDark(ofBase[content], octets);
    if (edits.isNone()) continue;
    for (const uint8 added : edits.added) added_.emplace(content.first, Coded(added, content.second));
    edits_[content] = std::move(edits);
  }
}

std::optional<uint8> DarkMerge::nextOf(const DarkKey& content) {
  const auto edits = edits_.find(content);
  if (edits == edits_.end()) return 0;
  const auto place = merged_[content]++;
  return place < edits->second.kept.size() ? edits->second.kept[place] : 0;
}

void DarkMerge::merge(const KLV::Key& key, uint8 lengthOctets, const Bytes& value, PartitionMetadata& ours,
                      MergeReport& report) {
  if (const auto kept = nextOf({key, value})) return append(key, *kept == 0 ? lengthOctets : *kept, value, ours);
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
