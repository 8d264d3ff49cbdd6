#pragma once

#include <array>

#include "Core/Types/IdentifierType.h"
#include "Core/Types/Text/TypeText.h"
#include "Core/Types/UUID.h"

namespace Vantor::Types {

/// Fills `size` octets from an identifier in any usual spelling.
///
/// Digits without more are the octets as they are stored, in groups of any kind (`octetsInGroups`). A URN names its
/// kind. A UUID of 8-4-4-4-12 digits, in braces, or as a URN may be a label in the order in which AAF keeps it, halves
/// swapped: where its second half begins as all labels do, 06-0e-2b-34, AUIDs and labels are stored as the label.
/// @param reason  why it cannot, where there is more to say than that the text is none.
bool readIdentifier(Identifiers::Identifier type, std::u16string_view text, uint8* octets, std::size_t size,
                    std::string& reason);

/// Dotted pairs.
template <class Type>
wstring printIdentifier(const SimpleDataType& value) {
  return static_cast<const Type&>(value).toString(kDottedForm);
}

template <class Type>
ParsedValue parseIdentifier(std::u16string_view text) {
  std::array<uint8, Type::kSize> octets{};
  ParsedValue parsed;
  const bool isRead = readIdentifier(Type::kIdentifier, text, octets.data(), octets.size(), parsed.reason);
  if (isRead) parsed.value = std::make_unique<Type>(octets);
  return parsed;
}

/// The InstanceUID that it refers to.
wstring printReference(const SimpleDataType& value);

template <class Type>
ParsedValue parseReference(std::u16string_view text) {
  auto target = parseIdentifier<UUID>(text);
  if (target.value == nullptr) return target;
  return std::make_unique<Type>(static_cast<const UUID&>(*target.value));
}

}  // namespace Vantor::Types
