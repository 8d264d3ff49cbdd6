#pragma once

#include <unordered_map>

#include "Core/Dictionary/Registers.h"
#include "Core/MetaMetadata/RegisterKey.h"

namespace Vantor {

/// Finds the places of a register's entries by their keys, all sixteen octets compared.
class RegisterIndex {
 public:
  static constexpr uint32 kNotFound = 0xFFFFFFFF;

  /// @throws Exceptions::InvalidFormat when two entries have one key.
  template <class Entry>
  RegisterIndex(const Templates::vector<Entry>& entries, const Registers& registers) {
    places_.reserve(entries.size());
    for (const auto& entry : entries) {
      const auto [known, isNew] = places_.emplace(entry.key, static_cast<uint32>(&entry - entries.data()));
      if (isNew) continue;
      const auto& other = entries[known->second];
      registers.refuse(entry.origin,
                       entry.symbol + " has the UL " + MetaMetadata::registerText(entry.key) + " of " + other.symbol +
                           " (" + registers.where(other.origin) + "); take one of the two entries away",
                       "Core/Dictionary/RegisterIndex", __LINE__);
    }
  }

  uint32 find(const KLV::Key& key) const {
    const auto found = places_.find(key);
    return found == places_.end() ? kNotFound : found->second;
  }

 private:
  std::unordered_map<KLV::Key, uint32> places_;
};

}  // namespace Vantor
