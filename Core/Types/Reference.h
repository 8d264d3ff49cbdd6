#pragma once

#include "Core/Types/UUID.h"
#include "Core/Types/ValueType.h"

namespace Vantor::Types {

/// The base of strong and weak references: the InstanceUID of the target, 16 octets (ST 377-1).
class Reference : public SimpleDataType {
 public:
  const uint8* rawBuffer() const override { return target_.rawBuffer(); }
  uint32 encodedSize() const override { return UUID::kSize; }

  /// The target's InstanceUID in dotted form.
  virtual wstring toString() const { return target_.toString(kDottedForm); }
  UUID target() const { return target_; }

 protected:
  Reference() = default;
  explicit Reference(const UUID& target) : target_(target) {}

 private:
  UUID target_;
};

/// The constructors of both kinds of reference.
template <class Derived>
class ReferenceType : public ValueType<Derived, Reference> {
 public:
  static_assert(TypeTraits<Derived>::kSize == UUID::kSize, "the type list gives this type another size");

  /// A reference to the InstanceUID of zero octets, which stands for none.
  ReferenceType() = default;
  explicit ReferenceType(const UUID& target) : ValueType<Derived, Reference>(target) {}
  /// Copies 16 octets.
  explicit ReferenceType(const uint8* bytes) : ReferenceType(UUID(bytes)) {}
  /// Reads either text form of a UUID.
  /// @throws InvalidFormat naming the text.
  explicit ReferenceType(const uint16* text) : ReferenceType(UUID(text, kDottedForm)) {}
  explicit ReferenceType(const wstring& text) : ReferenceType(UUID(text, kDottedForm)) {}

  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    return size == UUID::kSize ? std::make_unique<Derived>(bytes) : nullptr;
  }
};

}  // namespace Vantor::Types
