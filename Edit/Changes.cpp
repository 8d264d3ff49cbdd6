#include "Edit/Changes.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Metadata/EntryView.h"
#include "Edit/Differences.h"

namespace Vantor::Edit {

namespace {

/// One KLV of header metadata, in its buffer.
struct KLVView {
  KLV::Key key;
  KLV::BERLength length;
  const uint8* value;
  std::string_view octets;  // key, length and value
};

/// The sets of one state, and the rows of its primer packs.
struct State {
  std::vector<KLVView> sets;
  std::vector<KLV::PrimerEntry> primer;
};

State readState(const Bytes& bytes) {
  State state;
  DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
  while (source.remaining() != 0) {
    const auto klv = MXF::readKLVHeader(source);
    const bool isFill = KLV::isFill(klv.key);
    // Fill at the end of a file may be cut off.
    source.skip(isFill ? std::min(klv.length.value, source.remaining()) : klv.length.value);
    const uint8* value = bytes.data() + klv.valueOffset;
    if (KLV::isPrimerPack(klv.key)) {
      const auto rows = KLV::readPrimerPack(value, static_cast<std::size_t>(klv.length.value), 0);
      state.primer.insert(state.primer.end(), rows.begin(), rows.end());
    } else if (!isFill && !KLV::isOfObjectDirectory(klv.key)) {
      const auto* octets = reinterpret_cast<const char*>(bytes.data() + klv.offset);
      state.sets.push_back(
          {klv.key, klv.length, value, {octets, static_cast<std::size_t>(source.position() - klv.offset)}});
    }
  }
  return state;
}

/// How many sets at one end of two states have the same octets.
template <class Iterator>
std::ptrdiff_t countCommon(Iterator before, Iterator beforeEnd, Iterator after, Iterator afterEnd) {
  const auto isSame = [](const KLVView& left, const KLVView& right) { return left.octets == right.octets; };
  return std::mismatch(before, beforeEnd, after, afterEnd, isSame).first - before;
}

/// Nearly all sets go here, without sorting.
void removeCommonEnds(std::vector<KLVView>& before, std::vector<KLVView>& after) {
  const auto last = countCommon(before.rbegin(), before.rend(), after.rbegin(), after.rend());
  before.erase(before.end() - last, before.end());
  after.erase(after.end() - last, after.end());
  const auto first = countCommon(before.begin(), before.end(), after.begin(), after.end());
  before.erase(before.begin(), before.begin() + first);
  after.erase(after.begin(), after.begin() + first);
}

/// Removes the sets that both states have with the same octets.
void removeCommon(State& before, State& after) {
  removeCommonEnds(before.sets, after.sets);
  const auto isLess = [](const KLVView& left, const KLVView& right) { return left.octets < right.octets; };
  std::stable_sort(before.sets.begin(), before.sets.end(), isLess);
  std::stable_sort(after.sets.begin(), after.sets.end(), isLess);
  const auto difference = [isLess](const std::vector<KLVView>& of, const std::vector<KLVView>& without) {
    std::vector<KLVView> rest;
    std::set_difference(of.begin(), of.end(), without.begin(), without.end(), std::back_inserter(rest), isLess);
    return rest;
  };
  auto onlyAfter = difference(after.sets, before.sets);
  before.sets = difference(before.sets, after.sets);
  after.sets = std::move(onlyAfter);
}

std::unique_ptr<PartitionMetadata> parse(const State& state,
                                         const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  auto partition = std::make_unique<PartitionMetadata>(dictionary);
  for (const auto& entry : state.primer) partition->partitionDictionary().addPrimerEntry(entry);
  for (const auto& set : state.sets) {
    partition->addKLV(set.key, set.length.octets, set.value, static_cast<std::size_t>(set.length.value), 0);
  }
  return partition;
}

/// What pairs sets of two states: the InstanceUID, or else the key.
std::string nameOf(const EntryView& entry) {
  const auto* instanceUID = entry.set == nullptr ? nullptr : entry.set->instanceUID();
  const auto* octets = instanceUID != nullptr ? instanceUID->rawBuffer() : entry.key->rawBuffer();
  return (instanceUID != nullptr ? "InstanceUID " : "key ") + std::string(octets, octets + KLV::Key::kSize);
}

std::size_t countProperties(const EntryView& before, const PartitionDictionary& beforeTags, const EntryView& after,
                            const PartitionDictionary& afterTags) {
  if (before.isDark() || after.isDark()) return 1;
  return std::max<std::size_t>(differingProperties(*before.set, beforeTags, *after.set, afterTags).size(), 1);
}

/// Counts the differences of two states without their common sets.
Changes count(const PartitionMetadata& before, const PartitionMetadata& after) {
  Changes changes;
  std::multimap<std::string, EntryView> unpaired;
  for (const auto& entry : before.entries()) unpaired.emplace(nameOf(EntryView(entry)), entry);
  for (const auto& entry : after.entries()) {
    const EntryView view(entry);
    const auto found = unpaired.find(nameOf(view));
    if (found == unpaired.end()) {
      ++changes.addedSets;
      continue;
    }
    ++changes.changedSets;
    changes.changedProperties +=
        countProperties(found->second, before.partitionDictionary(), view, after.partitionDictionary());
    unpaired.erase(found);
  }
  changes.removedSets = unpaired.size();
  return changes;
}

}  // namespace

Changes changesBetween(const Bytes& before, const Bytes& after,
                       const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  State left = readState(before), right = readState(after);
  removeCommon(left, right);
  if (left.sets.empty() && right.sets.empty()) return {};
  return count(*parse(left, dictionary), *parse(right, dictionary));
}

}  // namespace Vantor::Edit
