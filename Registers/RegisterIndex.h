#pragma once

#include <map>

#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/Entries.h"

namespace Vantor::Registers {

/// Finds a register's entries by their keys, all sixteen octets compared.
template <class Entry>
class RegisterIndex {
 public:
  /// @param list  of the entries; stays where it is, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when two entries have one key.
  RegisterIndex(const Templates::vector<Entry>& list, const Entries& entries) {
    for (const auto& entry : list) {
      const auto [known, isNew] = byKey_.emplace(entry.key, &entry);
      if (isNew) continue;
      const auto& other = *known->second;
      entries.refuse(entry.origin, "{} has the UL {} of {} ({}); take one of the two entries away", entry.symbol,
                     MetaMetadata::registerText(entry.key), other.symbol, entries.where(other.origin));
    }
  }

  /// Null when there is none.
  const Entry* find(const KLV::Key& key) const {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? nullptr : found->second;
  }
  const std::map<KLV::Key, const Entry*>& byKey() const { return byKey_; }

 private:
  std::map<KLV::Key, const Entry*> byKey_;
};

}  // namespace Vantor::Registers
