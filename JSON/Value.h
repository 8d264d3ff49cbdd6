#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Core/Platform/Types.h"

namespace Vantor::JSON {

struct Member;

/// A JSON value, to build documents from and to read them. Objects keep the order of their members. A plain value: for
/// one thread at a time to change, for any number to read.
class Value {
 public:
  using Items = std::vector<Value>;
  using Members = std::vector<Member>;

  /// null
  Value();
  Value(bool value);
  Value(int32 number) : Value(int64{number}) {}
  Value(uint32 number) : Value(uint64{number}) {}
  Value(int64 number);
  Value(uint64 number);
  /// @param number  written as null where it is infinite or no number.
  Value(double number);
  /// UTF-8.
  Value(std::string text);
  Value(std::string_view text) : Value(std::string(text)) {}
  Value(const char* text) : Value(std::string(text)) {}
  Value(Items items);
  Value(Members members);
  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();

  /// An empty object, and an empty array.
  static Value object();
  static Value array();

  /// Each gives null for a value of another kind.
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const int64* integer() const { return std::get_if<int64>(&value_); }
  /// Only for whole numbers beyond the range of `integer`.
  const uint64* largeInteger() const { return std::get_if<uint64>(&value_); }
  const double* real() const { return std::get_if<double>(&value_); }
  const std::string* text() const { return std::get_if<std::string>(&value_); }
  const Items* items() const { return std::get_if<Items>(&value_); }
  const Members* members() const { return std::get_if<Members>(&value_); }
  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  /// "a number", "an object" and so on, for messages.
  const char* kindName() const;

  /// The member of an object; null when there is none, or this is no object.
  const Value* find(std::string_view name) const;

  /// Appends a member to an object, whose names have to differ.
  Value& add(std::string name, Value value);
  /// Appends an item to an array.
  Value& append(Value item);

  /// The line of the document that the value was read from, from 1; 0 for one that was made.
  uint32 line() const { return line_; }
  void setLine(uint32 line) { line_ = line; }

 private:
  std::variant<std::monostate, bool, int64, uint64, double, std::string, Items, Members> value_;
  uint32 line_ = 0;
};

/// A member of an object.
struct Member {
  std::string name;
  Value value;
};

}  // namespace Vantor::JSON
