#include "Core/Dictionary/PropertyTypeText.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Platform/HexDigits.h"

namespace Vantor {

namespace {

using namespace Types::Identifiers;

constexpr Identifier kAllTypes[] = {
#define VANTOR_LIST_TYPE(Type, number, octets) k##Type,
    VANTOR_FOR_EACH_TYPE(VANTOR_LIST_TYPE)
#undef VANTOR_LIST_TYPE
};

/// Collections have a notation of their own; an `Unknown` value has no definition; a local tag and a data value have no
/// form that would be read back.
bool isPropertyType(Identifier type) {
  return type != kArray && type != kBatch && type != kUnknown && type != kLocalTag && type != kDataValue;
}

/// Takes `name(` and `)` from around a text that has both.
bool unwrap(std::string_view& text, std::string_view name) {
  if (text.size() < name.size() + 2 || text.substr(0, name.size()) != name || text[name.size()] != '(' ||
      text.back() != ')') {
    return false;
  }
  text = text.substr(name.size() + 1, text.size() - name.size() - 2);
  return true;
}

bool isWord(std::string_view text) { return !text.empty() && text.find_first_of("()") == std::string_view::npos; }

void readItem(std::string_view text, PropertyType& type) {
  if (unwrap(text, "StrongReference")) {
    type.value = kStrongReference;
    type.target = text;
  } else if (unwrap(text, "WeakReference")) {
    type.value = kWeakReference;
    type.target = text;
  } else {
    type.value = propertyTypeNamed(text);
    if (type.value == kNone) type.enumeration = text;
  }
}

}  // namespace

Identifier propertyTypeNamed(std::string_view name) {
  static const auto types = [] {
    std::unordered_map<std::string_view, Identifier> named;
    for (const auto type : kAllTypes) {
      if (isPropertyType(type)) named.emplace(Types::Identifiers::name(type), type);
    }
    return named;
  }();
  const auto found = types.find(name);
  return found == types.end() ? kNone : found->second;
}

bool isEnumerable(Identifier type) {
  constexpr Identifier kEnumerable[] = {kInt8,   kInt16,  kInt32,  kInt64,          kUInt8,
                                        kUInt16, kUInt32, kUInt64, kSignalStandard, kOrientation};
  return std::find(std::begin(kEnumerable), std::end(kEnumerable), type) != std::end(kEnumerable);
}

bool fitsInto(Identifier type, int64 number) {
  const bool isSigned = type == kInt8 || type == kInt16 || type == kInt32 || type == kInt64;
  const uint32 bits = 8 * typeSize(type) - (isSigned ? 1 : 0);
  if (number < 0) return isSigned && (bits >= 63 || number >= -(int64{1} << bits));
  return bits >= 63 || number < int64{1} << bits;
}

std::optional<PropertyType> parsePropertyType(std::string_view text, std::string& whyNot) {
  PropertyType type;
  const std::string_view whole = text;
  if (unwrap(text, "ArrayOf")) {
    type.collection = kArray;
  } else if (unwrap(text, "BatchOf")) {
    type.collection = kBatch;
  }
  readItem(text, type);
  const bool isNamed = type.value != kNone || isWord(type.enumeration);
  const bool hasTarget = type.target.data() == nullptr || isWord(type.target);
  if (!isNamed || !hasTarget) {
    whyNot = quotedWord(whole) +
             " is no type; write a type's name, StrongReference(Set), WeakReference(Set), ArrayOf(...) " +
             "or BatchOf(...)";
    return std::nullopt;
  }
  if (type.collection != kNone && type.value != kNone && typeSize(type.value) == 0) {
    whyNot = quotedWord(whole) + " has items of no fixed size, which nothing could tell apart; make it a DataStream";
    return std::nullopt;
  }
  return type;
}

std::string textOf(const PropertyType& type) {
  std::string text(type.enumeration.empty() ? std::string_view(name(type.value)) : type.enumeration);
  if (!type.target.empty()) text += "(" + std::string(type.target) + ")";
  if (type.collection != kNone) text = std::string(name(type.collection)) + "Of(" + text + ")";
  return text;
}

std::string tagText(uint16 tag) {
  return tag == 0 ? "-" : Platform::hexNumber<std::string>(tag, Platform::DigitCase::kLower);
}

}  // namespace Vantor
