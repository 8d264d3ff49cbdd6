#pragma once

#include <map>

#include "Registers/Entries.h"
#include "Registers/RegisterIndex.h"

namespace Vantor::Registers {

/// The groups of a register as a tree of inheritance, and which of them are sets of header metadata. Circles of
/// inheritance are left to `Definitions::check`.
class RegisterGroups {
 public:
  /// @param entries  stay where they are, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when the parent of a set of header metadata is not in the register.
  explicit RegisterGroups(const Entries& entries);

  /// Null when there is none.
  const GroupEntry* find(const KLV::Key& key) const { return index_.find(key); }
  /// Null for a root.
  const GroupEntry* parentOf(const GroupEntry& group) const { return group.parent ? find(*group.parent) : nullptr; }

  /// Whether the group defines something with an identifier of its own, by which references name it: a data definition
  /// or the definition of a set.
  bool isDefinition(const GroupEntry& group) const;
  /// Whether header metadata holds sets of this group, coded with 2-byte tags and lengths, or of one that inherits from
  /// it.
  bool isHeaderMetadata(const GroupEntry& group) const { return headerMetadata_.count(group.key) != 0; }
  /// These groups, by key.
  const std::map<KLV::Key, const GroupEntry*>& headerMetadata() const { return headerMetadata_; }

 private:
  RegisterIndex<GroupEntry> index_;
  std::map<KLV::Key, const GroupEntry*> headerMetadata_;
};

}  // namespace Vantor::Registers
