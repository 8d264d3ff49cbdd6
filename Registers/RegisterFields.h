#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "Core/KLV/Key.h"
#include "Core/Platform/Types.h"
#include "Registers/Entries.h"

namespace Vantor::Registers {

/// The fields of entries, records and facets that the library needs, named after their elements.
enum class RegisterField : uint8 {
  kUL,
  kSymbol,
  kName,
  kKind,
  kParent,
  kIsConcrete,
  kKLVSyntax,
  kType,
  kTypeKind,
  kTypeSize,
  kTypeQualifiers,
  kBaseType,
  kLocalTag,
  kIsOptional,
  kValue,
};

constexpr std::size_t kRegisterFields = 15;

/// The texts of one entry's fields. One object serves all entries, so that it rarely allocates.
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
  std::string text(RegisterField field) const;
  /// None when there is no such field, or it is empty.
  /// @throws Exceptions::InvalidFormat when it is no UL.
  std::optional<KLV::Key> key(RegisterField field) const;
  /// @throws Exceptions::InvalidFormat when the field is neither true nor false.
  bool flag(RegisterField field, bool byDefault) const;
  /// 0 when there is no local tag.
  /// @throws Exceptions::InvalidFormat when it is no hexadecimal number of four digits or less.
  uint16 localTag() const;

 private:
  const Entries& entries_;
  Origin origin_;
  std::array<wstring, kRegisterFields> texts_;
};

}  // namespace Vantor::Registers
