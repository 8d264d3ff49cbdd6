#pragma once

#include <optional>

#include "Core/Types/Identifiers.h"
#include "Registers/Entries.h"
#include "Registers/RegisterIndex.h"

namespace Vantor::Registers {

/// Why values are carried as bytes.
enum class BytesReason : uint8 {
  kNone,  ///< they are not, or bytes are what they are
  kNoType,
  kFloat,
  kIntegerSize,
  kCharacters,  ///< a string of characters of no known coding
  kItems,       ///< a collection whose items have no fixed size, or are collections
  kCharacter,
  kFixedArray,
  kIndirect,
  kOpaque,
  kRecord,
  kStream,
  kOther
};

/// The core types that carry the values of a registered type.
struct RegisteredType {
  /// `kArray`, `kBatch`, or `kNone` for a single value.
  Types::Identifiers::Identifier collection = Types::Identifiers::kNone;
  /// The core type of the value or of every item; `kDataStream` where no other fits.
  Types::Identifiers::Identifier value = Types::Identifiers::kDataStream;
  const TypeEntry* enumeration = nullptr;  ///< names the numbers of the value; null when there are no names
  std::optional<KLV::Key> target;          ///< the group that a reference leads to
  BytesReason whyBytes = BytesReason::kNoType;
};

/// Resolves the types of a register to core types, one by one on request: a wrong type that is never requested does no
/// harm.
class RegisterTypes {
 public:
  /// @param entries  stay where they are, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when two types have one key.
  explicit RegisterTypes(const Entries& entries) : entries_(entries), index_(entries.types, entries) {}

  /// @return none when the register lacks the type.
  /// @throws Exceptions::InvalidFormat when the type has no base, one that the register lacks, or itself.
  std::optional<RegisteredType> find(const KLV::Key& key) const;

 private:
  RegisteredType resolve(const TypeEntry& entry, std::size_t depth) const;
  const TypeEntry& baseOf(const TypeEntry& entry) const;

  const Entries& entries_;
  RegisterIndex<TypeEntry> index_;
};

}  // namespace Vantor::Registers
