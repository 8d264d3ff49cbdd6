#pragma once

#include "Registers/Entries.h"
#include "Registers/RegisterIndex.h"

namespace Vantor::Registers {

/// The groups of a register as a tree of inheritance, and which of them are sets of header metadata.
class RegisterGroups {
 public:
  /// @param entries  stay where they are, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when a parent is not in the register or a group inherits from itself.
  explicit RegisterGroups(const Entries& entries);

  /// Null when there is none.
  const GroupEntry* find(const KLV::Key& key) const;
  /// Null for a root.
  const GroupEntry* parentOf(const GroupEntry& group) const;

  /// Whether the group defines something that has an identifier of its own, which references to it hold: a data
  /// definition, say, or the definition of a set.
  bool isDefinition(const GroupEntry& group) const { return isDefinition_[placeOf(group)]; }
  /// Whether header metadata holds such sets, coded with 2-byte tags and lengths, or sets that inherit from it.
  bool isHeaderMetadata(const GroupEntry& group) const { return isHeaderMetadata_[placeOf(group)]; }
  /// The groups of which that is so, by key.
  Templates::vector<const GroupEntry*> headerMetadata() const;

 private:
  void findParents();
  void findDefinitions();
  void findHeaderMetadata();
  uint32 placeOf(const GroupEntry& group) const { return static_cast<uint32>(&group - entries_.groups.data()); }

  const Entries& entries_;
  RegisterIndex index_;
  Templates::vector<uint32> parents_;    // `RegisterIndex::kNotFound` for a root
  Templates::vector<uint32> downwards_;  // places of the groups, each after its parent
  Templates::vector<bool> isDefinition_;
  Templates::vector<bool> isHeaderMetadata_;
};

}  // namespace Vantor::Registers
