#include "Registers/RegisterGroups.h"

#include <algorithm>
#include <string_view>

#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

/// As many as `Definitions::check` allows a set.
constexpr std::size_t kMostAncestors = 100;

/// Sets with 2-byte tags and lengths that header metadata does not hold, by the octets of their keys from the ninth on.
constexpr std::string_view kElsewhere[] = {
    "\x05\x31",          // colour volume transforms: within the essence (ST 2094)
    "\x0c\x02\x01",      // acquisition sets: in ancillary data packets (RDD 18)
    "\x0d\x01\x02\x01",  // index tables: in the index segments of partitions (ST 377-1)
};

bool isElsewhere(const KLV::Key& key) {
  const std::string_view octets(reinterpret_cast<const char*>(key.rawBuffer()) + 8, 8);
  return std::any_of(std::begin(kElsewhere), std::end(kElsewhere),
                     [&](std::string_view start) { return octets.substr(0, start.size()) == start; });
}

/// Whether octet 6 of its keys may be that of local sets with 2-byte tags and lengths (ST 336).
bool isLocalSet(const GroupEntry& group) { return (" " + group.klvSyntax + " ").find(" 53 ") != std::string::npos; }

}  // namespace

RegisterGroups::RegisterGroups(const Entries& entries) : index_(entries.groups, entries) {
  for (const auto& group : entries.groups) {
    if (!isLocalSet(group) || isElsewhere(group.key)) continue;
    // A known group has brought its ancestors already. This also ends cycles.
    for (const auto* at = &group; at != nullptr && !isHeaderMetadata(*at); at = parentOf(*at)) {
      headerMetadata_.emplace(at->key, at);
      if (!at->parent || find(*at->parent) != nullptr) continue;
      entries.refuse(
          at->origin,
          "{} has the parent {}, which is no group of the register; name one that is, or take the parent away",
          at->symbol, MetaMetadata::registerText(*at->parent));
    }
  }
}

bool RegisterGroups::isDefinition(const GroupEntry& group) const {
  const auto* at = &group;
  for (std::size_t i = 0; at != nullptr && i < kMostAncestors; ++i, at = parentOf(*at)) {
    if (RegisterKeys::isDefinitionRoot(at->key)) return true;
  }
  return false;
}

}  // namespace Vantor::Registers
