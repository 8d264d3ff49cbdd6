#include "Edit/Changes.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/Metadata/EntryView.h"
#include "Edit/Differences.h"

namespace Vantor::Edit {

namespace {

/// One KLV of header metadata, in its buffer.
struct KLVView {
  KLV::Key key;
  uint8 lengthOctets;
  const uint8* value;
  std::size_t size;
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
    const auto start = source.position();
    source.require(KLV::Key::kSize);
    const KLV::Key key(bytes.data() + start);
    source.skip(KLV::Key::kSize);
    const auto length = KLV::readBERLength(source);
    const uint8* value = bytes.data() + source.position();
    // Fill at the end of a file may be cut off.
    source.skip(KLV::isFill(key) ? std::min(length.value, source.remaining()) : length.value);
    const auto size = static_cast<std::size_t>(length.value);
    if (KLV::isFill(key)) continue;
    if (KLV::isPrimerPack(key)) {
      for (const auto& entry : KLV::readPrimerPack(value, size, 0)) state.primer.push_back(entry);
      continue;
    }
    const auto* octets = reinterpret_cast<const char*>(bytes.data() + start);
    state.sets.push_back(
        {key, length.octets, value, size, {octets, static_cast<std::size_t>(source.position() - start)}});
  }
  return state;
}

/// How many sets at one end of two states have the same octets.
template <class Iterator>
std::ptrdiff_t countCommon(Iterator before, Iterator beforeEnd, Iterator after, Iterator afterEnd) {
  const auto isSame = [](const KLVView& left, const KLVView& right) { return left.octets == right.octets; };
  return std::mismatch(before, beforeEnd, after, afterEnd, isSame).first - before;
}

/// Nearly all sets go here, without a hash table.
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
  std::unordered_map<std::string_view, std::size_t> waiting, common;
  for (const auto& set : after.sets) ++waiting[set.octets];
  const auto takeFrom = [](auto& counts, std::string_view octets) {
    const auto found = counts.find(octets);
    return found != counts.end() && found->second != 0 && found->second-- != 0;
  };
  const auto isInAfter = [&](const KLVView& set) {
    if (!takeFrom(waiting, set.octets)) return false;
    ++common[set.octets];
    return true;
  };
  before.sets.erase(std::remove_if(before.sets.begin(), before.sets.end(), isInAfter), before.sets.end());
  const auto isCommon = [&](const KLVView& set) { return takeFrom(common, set.octets); };
  after.sets.erase(std::remove_if(after.sets.begin(), after.sets.end(), isCommon), after.sets.end());
}

void parse(const State& state, PartitionMetadata& partition) {
  for (const auto& entry : state.primer) partition.partitionDictionary().addPrimerEntry(entry);
  for (const auto& set : state.sets) partition.addKLV(set.key, set.lengthOctets, set.value, set.size, 0);
}

const Types::UUID* instanceUIDOf(const PartitionMetadata::Entry& entry) {
  const auto* set = EntryView(entry).set;
  return set == nullptr ? nullptr : set->instanceUID();
}

/// Counts the differences of two states without their common sets.
class Counter {
 public:
  Counter(const State& before, const State& after, const SharedPtr<const MetaMetadata::Dictionary>& dictionary)
      : before_(dictionary), after_(dictionary) {
    parse(before, before_);
    parse(after, after_);
  }

  Changes count() {
    std::multimap<Types::UUID, const PartitionMetadata::Entry*, Less> byIdentifier;
    std::multimap<KLV::Key, const PartitionMetadata::Entry*> byKey;
    for (const auto& entry : before_.entries()) {
      if (const auto* instanceUID = instanceUIDOf(entry)) {
        byIdentifier.emplace(*instanceUID, &entry);
      } else {
        byKey.emplace(*EntryView(entry).key, &entry);
      }
    }
    for (const auto& entry : after_.entries()) {
      const auto* instanceUID = instanceUIDOf(entry);
      if (instanceUID != nullptr ? take(byIdentifier, *instanceUID, entry)
                                 : take(byKey, *EntryView(entry).key, entry)) {
        continue;
      }
      ++changes_.addedSets;
    }
    changes_.removedSets = byIdentifier.size() + byKey.size();
    return changes_;
  }

 private:
  struct Less {
    bool operator()(const Types::UUID& left, const Types::UUID& right) const {
      return std::lexicographical_compare(left.rawBuffer(), left.rawBuffer() + Types::UUID::kSize, right.rawBuffer(),
                                          right.rawBuffer() + Types::UUID::kSize);
    }
  };

  template <class Map, class Name>
  bool take(Map& map, const Name& name, const PartitionMetadata::Entry& after) {
    const auto found = map.find(name);
    if (found == map.end()) return false;
    countChange(EntryView(*found->second), EntryView(after));
    map.erase(found);
    return true;
  }

  void countChange(const EntryView& before, const EntryView& after) {
    ++changes_.changedSets;
    std::size_t properties = 0;
    if (!before.isDark() && !after.isDark()) {
      properties =
          differingProperties(*before.set, before_.partitionDictionary(), *after.set, after_.partitionDictionary())
              .size();
    }
    changes_.changedProperties += std::max<std::size_t>(properties, 1);
  }

  PartitionMetadata before_;
  PartitionMetadata after_;
  Changes changes_;
};

}  // namespace

Changes changesBetween(const Bytes& before, const Bytes& after,
                       const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  State left = readState(before), right = readState(after);
  removeCommon(left, right);
  if (left.sets.empty() && right.sets.empty()) return {};
  return Counter(left, right, dictionary).count();
}

std::unique_ptr<PartitionMetadata> parseMetadata(const Bytes& state,
                                                 const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  auto partition = std::make_unique<PartitionMetadata>(dictionary);
  parse(readState(state), *partition);
  return partition;
}

}  // namespace Vantor::Edit
