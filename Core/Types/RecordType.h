#pragma once

#include <cassert>
#include <type_traits>

#include "Core/DataIO/BigEndian.h"
#include "Core/Types/FixedSizeType.h"

namespace Vantor::Types {

/// A few numbers one after the other, each big-endian.
///
/// The derived class names its fields once, in wire order, in a public
/// `template <class Self, class Fn> static void forEachField(Self& self, Fn&& fn)`, whose `fn` takes integers,
/// enumerations over integers, and classes with an integer `wireValue()` and `setWireValue(integer)`. Its constructors
/// call `writeFields()` once the fields are set.
template <class Derived>
class RecordType : public FixedSizeType<Derived> {
 public:
  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    auto value = FixedSizeType<Derived>::decode(bytes, size);
    if (value != nullptr) static_cast<RecordType&>(*value).readFields();
    return value;
  }

 protected:
  RecordType() = default;

  void writeFields() {
    uint8* to = this->octets_.data();
    Derived::forEachField(this->derived(), [&to](const auto& field) { to += writeField(to, field); });
    assert(to == this->octets_.data() + this->octets_.size());
  }

 private:
  void readFields() {
    const uint8* from = this->octets_.data();
    Derived::forEachField(static_cast<Derived&>(*this), [&from](auto&& field) { from += readField(from, field); });
    assert(from == this->octets_.data() + this->octets_.size());
  }

  template <class Field>
  static std::size_t writeField(uint8* to, const Field& field) {
    if constexpr (std::is_class_v<Field>) {
      return writeField(to, field.wireValue());
    } else if constexpr (std::is_enum_v<Field>) {
      return writeField(to, static_cast<std::underlying_type_t<Field>>(field));
    } else {
      DataIO::writeBigEndian<Field>(to, field);
      return sizeof(Field);
    }
  }

  template <class Field>
  static std::size_t readField(const uint8* from, Field& field) {
    if constexpr (std::is_class_v<Field>) {
      auto number = field.wireValue();
      const std::size_t size = readField(from, number);
      field.setWireValue(number);
      return size;
    } else if constexpr (std::is_enum_v<Field>) {
      field = static_cast<Field>(DataIO::readBigEndian<std::underlying_type_t<Field>>(from));
      return sizeof(Field);
    } else {
      field = DataIO::readBigEndian<Field>(from);
      return sizeof(Field);
    }
  }
};

}  // namespace Vantor::Types
