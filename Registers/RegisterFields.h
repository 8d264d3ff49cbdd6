#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Core/KLV/Key.h"
#include "Core/Platform/Types.h"
#include "Registers/Entries.h"

namespace Vantor::Registers {

/// The texts of the fields of an entry, a record or a facet that the library needs, by the names of their elements. One
/// object serves all entries, so that it rarely allocates.
class RegisterFields {
 public:
  /// @param entries  name the file in messages.
  explicit RegisterFields(const Entries& entries) : entries_(entries) {}

  /// Forgets all texts.
  void begin(const Origin& origin);
  const Origin& origin() const { return origin_; }

  /// The place for the text of the element with this name; null for an element that the library does not need.
  wstring* textOf(std::u16string_view name);

  /// UTF-8, trimmed, with single blanks between words. Empty when there is no such field.
  std::string text(std::u16string_view name) const;
  /// None when there is no such field, or it is empty.
  /// @throws Exceptions::InvalidFormat when it is no UL.
  std::optional<KLV::Key> key(std::u16string_view name) const;
  /// @throws Exceptions::InvalidFormat when the field is neither true nor false.
  bool flag(std::u16string_view name, bool byDefault) const;
  /// 0 when there is no local tag.
  /// @throws Exceptions::InvalidFormat when it is no hexadecimal number of four digits or less.
  uint16 localTag() const;

 private:
  const Entries& entries_;
  Origin origin_;
  std::map<std::u16string_view, wstring> texts_ = {
      {u"UL", {}},         {u"Symbol", {}},          {u"Name", {}},     {u"Kind", {}},     {u"Parent", {}},
      {u"IsConcrete", {}}, {u"KLVSyntax", {}},       {u"Type", {}},     {u"TypeKind", {}}, {u"TypeSize", {}},
      {u"BaseType", {}},   {u"TypeQualifiers", {}},  {u"LocalTag", {}}, {u"Value", {}},    {u"IsOptional", {}},
      {u"Definition", {}}, {u"DefiningDocument", {}}};
};

}  // namespace Vantor::Registers
