#pragma once

#include <map>

#include "Core/Dictionary/Definitions.h"
#include "Registers/RegisterGroups.h"
#include "Registers/RegisterIndex.h"
#include "Registers/RegisterTypes.h"

namespace Vantor::Registers {

/// An enumeration that a property uses.
struct UsedEnumeration {
  const TypeEntry* entry = nullptr;
  /// The core type that carries its numbers.
  Types::Identifiers::Identifier carrier = Types::Identifiers::kNone;
};

/// Defines the properties of groups.
class RegisterProperties {
 public:
  /// @param entries, groups  stay where they are, unchanged, for as long as this object lives.
  /// @param texts            keeps the texts of the definitions.
  /// @throws Exceptions::InvalidFormat when two elements or two types have one key.
  RegisterProperties(const Entries& entries, const RegisterGroups& groups, Definitions& texts);

  /// The properties that the register lists for the group, after those that files have in addition.
  Templates::vector<GroupProperty> propertiesOf(const GroupEntry& group) const;
  /// The definition of a property, whose origin is that of its element in the registers.
  /// @throws Exceptions::InvalidFormat when the element or its type is missing from the registers or wrong there;
  ///         afterwards the object can only be destroyed.
  PropertyDefinition define(const GroupEntry& group, const GroupProperty& property);

  /// The enumerations of all properties defined so far, by the keys of their types.
  const std::map<KLV::Key, UsedEnumeration>& enumerations() const { return enumerations_; }

 private:
  const ElementEntry& elementOf(const GroupEntry& group, const GroupProperty& property) const;
  RegisteredType carrierOf(const ElementEntry& element) const;
  RegisteredType registeredTypeOf(const ElementEntry& element) const;
  bool leadsToDefinition(const RegisteredType& type) const;
  PropertyType typeOf(const RegisteredType& carrier);

  const Entries& entries_;
  const RegisterGroups& groups_;
  Definitions& texts_;
  RegisterIndex elements_;
  RegisterTypes types_;
  std::map<KLV::Key, UsedEnumeration> enumerations_;
};

}  // namespace Vantor::Registers
