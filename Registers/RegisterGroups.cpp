#include "Registers/RegisterGroups.h"

#include <algorithm>
#include <array>

#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

constexpr uint32 kNone = RegisterIndex::kNotFound;

/// Octet 6 of the keys of local sets with 2-byte tags and lengths (ST 336), as the register writes it.
constexpr std::string_view kLocalSetCoding = "53";

/// Sets of that coding which header metadata does not hold, by the octets of their keys from the ninth on.
struct Elsewhere {
  std::array<uint8, 4> octets;
  std::size_t count;
};
constexpr Elsewhere kColourVolumeTransforms = {{0x05, 0x31}, 2};   // within the essence (ST 2094)
constexpr Elsewhere kAcquisitionSets = {{0x0c, 0x02, 0x01}, 3};    // in ancillary data packets (RDD 18)
constexpr Elsewhere kIndexTables = {{0x0d, 0x01, 0x02, 0x01}, 4};  // in the index segments of partitions (ST 377-1)

constexpr std::size_t kPrefixOctets = 8;

bool isOf(const Elsewhere& elsewhere, const KLV::Key& key) {
  return std::equal(elsewhere.octets.begin(), elsewhere.octets.begin() + elsewhere.count,
                    key.rawBuffer() + kPrefixOctets);
}

bool isElsewhere(const KLV::Key& key) {
  return isOf(kColourVolumeTransforms, key) || isOf(kAcquisitionSets, key) || isOf(kIndexTables, key);
}

bool hasWord(std::string_view words, std::string_view word) {
  for (std::size_t at = words.find(word); at != std::string_view::npos; at = words.find(word, at + 1)) {
    const bool starts = at == 0 || words[at - 1] == ' ';
    const bool ends = at + word.size() == words.size() || words[at + word.size()] == ' ';
    if (starts && ends) return true;
  }
  return false;
}

/// DefinitionObject and MetaDefinition (ST 395).
constexpr KLV::Key kDefinitionRoots[] = {RegisterKeys::group(0x0d01010101011a00),
                                         RegisterKeys::group(0x0d01010102240000)};

bool isDefinitionRoot(const KLV::Key& key) {
  return std::any_of(std::begin(kDefinitionRoots), std::end(kDefinitionRoots),
                     [&](const KLV::Key& root) { return root.matches(key); });
}

}  // namespace

RegisterGroups::RegisterGroups(const Entries& entries) : entries_(entries), index_(entries.groups, entries) {
  findParents();
  findDefinitions();
  findHeaderMetadata();
}

const GroupEntry* RegisterGroups::find(const KLV::Key& key) const {
  const uint32 place = index_.find(key);
  return place == kNone ? nullptr : &entries_.groups[place];
}

const GroupEntry* RegisterGroups::parentOf(const GroupEntry& group) const {
  const uint32 place = parents_[placeOf(group)];
  return place == kNone ? nullptr : &entries_.groups[place];
}

Templates::vector<const GroupEntry*> RegisterGroups::headerMetadata() const {
  Templates::vector<const GroupEntry*> found;
  for (const auto& group : entries_.groups) {
    if (isHeaderMetadata(group)) found.push_back(&group);
  }
  std::sort(found.begin(), found.end(), [](const auto* left, const auto* right) { return left->key < right->key; });
  return found;
}

void RegisterGroups::findParents() {
  parents_.assign(entries_.groups.size(), kNone);
  for (const auto& group : entries_.groups) {
    if (!group.parent) continue;
    parents_[placeOf(group)] = index_.find(*group.parent);
    if (parents_[placeOf(group)] != kNone) continue;
    entries_.refuse(
        group.origin,
        "{} has the parent {}, which is no group of the register; name one that is, or take the parent away",
        group.symbol, MetaMetadata::registerText(*group.parent));
  }
  // Groups that are followed upwards together have one number: one that is met again inherits from itself.
  Templates::vector<uint32> rounds(parents_.size(), 0);
  for (uint32 start = 0; start < parents_.size(); ++start) {
    const std::size_t first = downwards_.size();
    uint32 at = start;
    for (; at != kNone && rounds[at] == 0; at = parents_[at]) {
      rounds[at] = start + 1;
      downwards_.push_back(at);
    }
    if (at != kNone && rounds[at] == start + 1) {
      const auto& group = entries_.groups[downwards_.back()];
      entries_.refuse(group.origin,
                      "{} inherits from itself, by way of {}; give one of the groups between them another parent",
                      group.symbol, entries_.groups[at].symbol);
    }
    std::reverse(downwards_.begin() + static_cast<std::ptrdiff_t>(first), downwards_.end());
  }
}

void RegisterGroups::findDefinitions() {
  isDefinition_.assign(parents_.size(), false);
  for (const uint32 place : downwards_) {
    const bool inherits = parents_[place] != kNone && isDefinition_[parents_[place]];
    isDefinition_[place] = inherits || isDefinitionRoot(entries_.groups[place].key);
  }
}

void RegisterGroups::findHeaderMetadata() {
  isHeaderMetadata_.assign(parents_.size(), false);
  for (std::size_t i = downwards_.size(); i-- > 0;) {
    const uint32 place = downwards_[i];
    const auto& group = entries_.groups[place];
    if (hasWord(group.klvSyntax, kLocalSetCoding) && !isElsewhere(group.key)) isHeaderMetadata_[place] = true;
    if (isHeaderMetadata_[place] && parents_[place] != kNone) isHeaderMetadata_[parents_[place]] = true;
  }
}

}  // namespace Vantor::Registers
