#pragma once

#include <cstddef>

#include "Core/Platform/Containers.h"
#include "Core/Types/Identifiers.h"

namespace Vantor::DataIO {
class DataSink;
}

namespace Vantor::Types {

namespace Visitors {
class Visitor;
}

/// The value of a property: a number, text, identifier, record or collection together with its octets on the wire.
///
/// Values do not change once made, but for `RGBALayout::set` and the items of a `Collection`; a value that stays
/// unchanged may be read from several threads. A value that was read writes the same octets again.
class SimpleDataType : public Platform::HeapObject {
 public:
  virtual ~SimpleDataType() = default;

  virtual Identifiers::Identifier identifier() const = 0;

  /// The value's octets on the wire, `encodedSize()` of them; never null, valid until the value changes.
  virtual const uint8* rawBuffer() const = 0;
  virtual uint32 encodedSize() const = 0;
  /// The octets of one item of a collection; of any other value all octets on the wire.
  virtual uint32 serializedSize() const { return encodedSize(); }

  /// Calls the visitor's operation for this value's type.
  virtual void accept(Visitors::Visitor& visitor) const = 0;
  virtual auto_ptr<SimpleDataType> clone() const = 0;

  /// Whether both are of one type and would write the same octets; texts are equal when they differ in nothing but
  /// final NULs, collections when their items are equal and of one size.
  bool equals(const SimpleDataType& other) const;

  /// Writes `encodedSize()` octets.
  void serialize(DataIO::DataSink& sink) const;

 protected:
  SimpleDataType() = default;
  SimpleDataType(const SimpleDataType&) = default;
  SimpleDataType& operator=(const SimpleDataType&) = default;

  /// @param other  of the same type as this value.
  virtual bool hasSameValue(const SimpleDataType& other) const;

  /// @throws InvalidLength when no value can have that many octets: 2^32 or more.
  static void requireEncodable(uint64 octets);
  /// Where the octets stand; never null, also when there are none.
  static const uint8* addressOf(const Bytes& octets);
};

}  // namespace Vantor::Types
