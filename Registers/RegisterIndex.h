#pragma once

#include <unordered_map>

#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/Entries.h"

namespace Vantor::Registers {

/// Finds the places of a register's entries by their keys, all sixteen octets compared.
class RegisterIndex {
 public:
  static constexpr uint32 kNotFound = 0xFFFFFFFF;

  /// @throws Exceptions::InvalidFormat when two entries have one key.
  template <class Entry>
  RegisterIndex(const Templates::vector<Entry>& list, const Entries& entries) {
    places_.reserve(list.size());
    for (const auto& entry : list) {
      const auto [known, isNew] = places_.emplace(entry.key, static_cast<uint32>(&entry - list.data()));
      if (isNew) continue;
      const auto& other = list[known->second];
      entries.refuse(entry.origin, "{} has the UL {} of {} ({}); take one of the two entries away", entry.symbol,
                     MetaMetadata::registerText(entry.key), other.symbol, entries.where(other.origin));
    }
  }

  uint32 find(const KLV::Key& key) const {
    const auto found = places_.find(key);
    return found == places_.end() ? kNotFound : found->second;
  }

 private:
  std::unordered_map<KLV::Key, uint32> places_;
};

}  // namespace Vantor::Registers
