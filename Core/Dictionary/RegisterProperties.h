#pragma once

#include <map>

#include "Core/Dictionary/DictionaryTextWriter.h"
#include "Core/Dictionary/RegisterGroups.h"
#include "Core/Dictionary/RegisterIndex.h"
#include "Core/Dictionary/RegisterTypes.h"
#include "Core/Dictionary/Registers.h"

namespace Vantor {

/// An enumeration that a property uses.
struct UsedEnumeration {
  const TypeEntry* entry = nullptr;
  /// The core type that carries its numbers.
  Types::Identifiers::Identifier carrier = Types::Identifiers::kNone;
};

/// The properties of groups as rows of the dictionary format.
class RegisterProperties {
 public:
  /// @param registers, groups  stay where they are, unchanged, for as long as this object lives.
  /// @throws Exceptions::InvalidFormat when two elements or two types have one key.
  RegisterProperties(const Registers& registers, const RegisterGroups& groups);

  /// @throws Exceptions::InvalidFormat when an element or its type is not in the registers or not what it should be;
  ///         the object is good for nothing but its destruction then.
  DictionaryTextWriter::Table rowsOf(const GroupEntry& group);

  /// Those of all rows so far, by the keys of their types.
  const std::map<KLV::Key, UsedEnumeration>& enumerations() const { return enumerations_; }

 private:
  DictionaryTextWriter::TableRow rowOf(const GroupEntry& group, const GroupProperty& property);
  const ElementEntry& elementOf(const GroupEntry& group, const GroupProperty& property) const;
  RegisteredType typeOf(const ElementEntry& element);
  const RegisteredType& registeredTypeOf(const ElementEntry& element);
  bool leadsToDefinition(const RegisteredType& type) const;
  std::string textOf(const RegisteredType& type);

  const Registers& registers_;
  const RegisterGroups& groups_;
  RegisterIndex elements_;
  RegisterTypes types_;
  std::map<KLV::Key, UsedEnumeration> enumerations_;
};

}  // namespace Vantor
