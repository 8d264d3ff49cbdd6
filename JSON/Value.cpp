#include "JSON/Value.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Vantor::JSON {

namespace {

constexpr uint64 kLargestInteger = static_cast<uint64>(std::numeric_limits<int64>::max());

}  // namespace

Value::Value() = default;
Value::Value(bool value) : value_(value) {}
Value::Value(int64 number) : value_(number) {}
Value::Value(uint64 number) {
  if (number <= kLargestInteger) {
    value_ = static_cast<int64>(number);
  } else {
    value_ = number;
  }
}
Value::Value(double number) : value_(number) {}
Value::Value(std::string text) : value_(std::move(text)) {}
Value::Value(Items items) : value_(std::move(items)) {}
Value::Value(Members members) : value_(std::move(members)) {}
Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

Value Value::object() { return Members(); }
Value Value::array() { return Items(); }

const char* Value::kindName() const {
  static constexpr const char* kNames[] = {"null",     "a Boolean", "a number", "a number",
                                           "a number", "a text",    "an array", "an object"};
  return kNames[value_.index()];
}

const Value* Value::find(std::string_view name) const {
  if (members() == nullptr) return nullptr;
  const auto found =
      std::find_if(members()->begin(), members()->end(), [name](const Member& member) { return member.name == name; });
  return found == members()->end() ? nullptr : &found->value;
}

Value& Value::add(std::string name, Value value) {
  std::get<Members>(value_).push_back({std::move(name), std::move(value)});
  return *this;
}

Value& Value::append(Value item) {
  std::get<Items>(value_).push_back(std::move(item));
  return *this;
}

}  // namespace Vantor::JSON
