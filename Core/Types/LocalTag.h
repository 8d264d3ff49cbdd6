#pragma once

#include <type_traits>

#include "Core/DataIO/BigEndian.h"
#include "Core/Types/IdentifierType.h"

namespace Vantor::Types {

/// The two octets that name a property within a local set (ST 336, ST 377-1). Text: "3C.0A" in every form; "3C0A" is
/// read too.
class LocalTag final : public IdentifierType<LocalTag> {
 public:
  /// Tags from here on are given per partition by its primer pack; those below are registered for good (ST 377-1).
  static constexpr uint16 kFirstDynamic = 0x8000;

  using IdentifierType::IdentifierType;
  /// A template so that a literal 0 is a number and not a null pointer.
  template <class Integer, class = std::enable_if_t<std::is_integral_v<Integer>>>
  explicit LocalTag(Integer tag) {
    DataIO::writeBigEndian<uint16>(octets_.data(), static_cast<uint16>(tag));
  }

  uint16 value() const { return DataIO::readBigEndian<uint16>(octets_.data()); }
  bool isStaticLocalTag() const { return value() < kFirstDynamic; }

  static wstring formatText(const uint8* octets, StringRepresentationEncodingType form);
  static bool parseText(std::u16string_view text, uint8* octets);
};

}  // namespace Vantor::Types

template <>
struct std::hash<Vantor::Types::LocalTag> : Vantor::Types::IdentifierHash {};
