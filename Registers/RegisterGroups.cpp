#include "Registers/RegisterGroups.h"

#include <algorithm>
#include <array>

#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

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

/// As many as `Definitions::check` allows a set.
constexpr std::size_t kMostAncestors = 100;

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

RegisterGroups::RegisterGroups(const Entries& entries)
    : entries_(entries), index_(entries.groups, entries), isHeaderMetadata_(entries.groups.size(), false) {
  for (const auto& group : entries_.groups) {
    if (!hasWord(group.klvSyntax, kLocalSetCoding) || isElsewhere(group.key)) continue;
    // A marked group has marked its ancestors already. This also ends cycles.
    for (const auto* at = &group; at != nullptr && !isHeaderMetadata(*at); at = parentOf(*at)) {
      isHeaderMetadata_[placeOf(*at)] = true;
      if (!at->parent || find(*at->parent) != nullptr) continue;
      entries_.refuse(
          at->origin,
          "{} has the parent {}, which is no group of the register; name one that is, or take the parent away",
          at->symbol, MetaMetadata::registerText(*at->parent));
    }
  }
}

const GroupEntry* RegisterGroups::find(const KLV::Key& key) const {
  const uint32 place = index_.find(key);
  return place == RegisterIndex::kNotFound ? nullptr : &entries_.groups[place];
}

bool RegisterGroups::isDefinition(const GroupEntry& group) const {
  const auto* at = &group;
  for (std::size_t i = 0; at != nullptr && i < kMostAncestors; ++i, at = parentOf(*at)) {
    if (isDefinitionRoot(at->key)) return true;
  }
  return false;
}

Templates::vector<const GroupEntry*> RegisterGroups::headerMetadata() const {
  Templates::vector<const GroupEntry*> found;
  for (const auto& group : entries_.groups) {
    if (isHeaderMetadata(group)) found.push_back(&group);
  }
  std::sort(found.begin(), found.end(), [](const auto* left, const auto* right) { return left->key < right->key; });
  return found;
}

}  // namespace Vantor::Registers
