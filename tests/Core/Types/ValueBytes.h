#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/Types.h"

namespace Vantor::Types {

/// What a value writes into a sink.
inline Bytes toBytes(const SimpleDataType& value) {
  DataIO::Memory::MemoryDataSink sink;
  value.serialize(sink);
  return sink.take();
}

/// Reads a value; the octets must be one.
template <class T>
T fromBytes(const Bytes& bytes) {
  const auto value = Factories::fromBytes(T::kIdentifier, bytes.data(), bytes.size());
  if (value == nullptr) throw Exceptions::InvalidFormat("These octets do not decode", "ValueBytes", __LINE__);
  return dynamic_cast<const T&>(*value);
}

template <class T>
bool decodes(const Bytes& bytes) {
  return Factories::fromBytes(T::kIdentifier, bytes.data(), bytes.size()) != nullptr;
}

/// Names the typed tests of each type after the type.
struct TypeNames {
  template <class T>
  static std::string GetName(int) {
    return Identifiers::name(T::kIdentifier);
  }
};

/// The NUL-terminated UTF-16 that interfaces ask for; valid as long as the object.
class Utf16 {
 public:
  explicit Utf16(const wstring& text) : units_(text.begin(), text.end()) { units_.push_back(0); }
  operator const uint16*() const { return units_.data(); }  // NOLINT(google-explicit-constructor): stands for the text

 private:
  Templates::vector<uint16> units_;
};

}  // namespace Vantor::Types
