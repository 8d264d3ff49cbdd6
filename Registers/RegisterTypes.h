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

/// Finds what carries the types of a register. A type is looked at when it, or one that is made of it, is first asked
/// for; types that nobody asks for may be wrong.
class RegisterTypes {
 public:
  /// @param entries  stay where they are, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when two types have one key.
  explicit RegisterTypes(const Entries& entries);

  /// @return null when the register has no such type; otherwise valid as long as this object.
  /// @throws Exceptions::InvalidFormat when the type is made of none, of one that the register does not have, or of
  ///         itself; the object is good for nothing but its destruction then.
  const RegisteredType* find(const KLV::Key& key);

 private:
  enum class State : uint8 { kNew, kOpen, kDone };

  const RegisteredType& resolve(uint32 place);
  [[noreturn]] void refuseCircle(uint32 place, uint32 base) const;
  uint32 baseOf(const TypeEntry& entry) const;

  const Entries& entries_;
  RegisterIndex index_;
  Templates::vector<State> states_;
  Templates::vector<RegisteredType> resolved_;
};

}  // namespace Vantor::Registers
