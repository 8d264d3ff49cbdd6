#pragma once

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
  const GroupEntry* find(const KLV::Key& key) const;
  /// Null for a root.
  const GroupEntry* parentOf(const GroupEntry& group) const { return group.parent ? find(*group.parent) : nullptr; }

  /// Whether the group defines something with an identifier of its own, by which references name it: a data definition
  /// or the definition of a set.
  bool isDefinition(const GroupEntry& group) const;
  /// Whether header metadata holds sets of this group, coded with 2-byte tags and lengths, or of one that inherits from
  /// it.
  bool isHeaderMetadata(const GroupEntry& group) const { return isHeaderMetadata_[placeOf(group)]; }
  /// These groups, by key.
  Templates::vector<const GroupEntry*> headerMetadata() const;

 private:
  std::size_t placeOf(const GroupEntry& group) const {
    return static_cast<std::size_t>(&group - entries_.groups.data());
  }

  const Entries& entries_;
  RegisterIndex index_;
  Templates::vector<bool> isHeaderMetadata_;  // beside the groups
};

}  // namespace Vantor::Registers
