#pragma once

#include <optional>

#include "Core/Types/Identifiers.h"
#include "Registers/Entries.h"
#include "Registers/RegisterIndex.h"

namespace Vantor::Registers {

/// What carries the values of a registered type.
struct RegisteredType {
  /// `kArray`, `kBatch`, or `kNone` for a single value.
  Types::Identifiers::Identifier collection = Types::Identifiers::kNone;
  /// The core type of the value or of every item; `kDataStream` where there is none but the bytes.
  Types::Identifiers::Identifier value = Types::Identifiers::kDataStream;
  const TypeEntry* enumeration = nullptr;  ///< names the numbers of the value; null when there are no names
  std::optional<KLV::Key> target;          ///< the group that a reference leads to
};

/// Finds what carries the types of a register. Types that nobody asks for may be wrong.
class RegisterTypes {
 public:
  /// @param entries  stay where they are, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when two types have one key.
  explicit RegisterTypes(const Entries& entries) : entries_(entries), index_(entries.types, entries) {}

  /// @return none when the register has no such type.
  /// @throws Exceptions::InvalidFormat when the type is made of none, of one that the register does not have, or of
  ///         itself.
  std::optional<RegisteredType> find(const KLV::Key& key) const;

 private:
  RegisteredType resolve(const TypeEntry& entry, std::size_t depth) const;
  const TypeEntry& baseOf(const TypeEntry& entry) const;

  const Entries& entries_;
  RegisterIndex index_;
};

}  // namespace Vantor::Registers
