#pragma once

#include "Core/Platform/Containers.h"
#include "Registers/Entries.h"
#include "Registers/RegisterFields.h"

namespace Vantor::Registers {

/// Reads entries of registers from their fields. Malformed ones are refused with Exceptions::InvalidFormat.
class EntryReader {
 public:
  /// @param into  receives the entries; it holds the name of the file already.
  explicit EntryReader(Entries& into) : into_(into) {}

  /// A record of a group or a facet of a type, for the entry that is added next.
  void addItem(RegisterKind kind, const RegisterFields& fields);
  /// Adds the entry if it is of the kind LEAF.
  void add(RegisterKind kind, const RegisterFields& fields);

 private:
  void addLeaf(RegisterKind kind, const RegisterFields& fields);

  Entries& into_;
  Templates::vector<GroupProperty> properties_;
  Templates::vector<TypeValue> values_;
};

}  // namespace Vantor::Registers
