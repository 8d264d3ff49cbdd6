#include "JSON/PropertyValue.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "Core/Metadata/ElementFactory.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Collection.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Text/ListText.h"
#include "JSON/ItemForm.h"
#include "JSON/Refusal.h"

namespace Vantor::JSON {

namespace {

using Types::SimpleDataType;
using Types::Identifiers::Identifier;
using Made = auto_ptr<SimpleDataType>;

constexpr double kTolerance = 1e-9;  // of decimal fractions, relative

const Types::Collection* asCollection(const SimpleDataType& value) {
  const bool isOne = itemForm(value.identifier()) == nullptr;
  return isOne ? static_cast<const Types::Collection*>(&value) : nullptr;
}

Value naturalValue(const PropertyPlace& place, const SimpleDataType& value) {
  const auto* list = asCollection(value);
  if (list == nullptr) return itemForm(value.identifier())->write(place, value);
  auto items = Value::array();
  for (uint32 i = 0; i < list->size(); ++i) {
    const auto& item = list->at(i);
    items.append(itemForm(item.identifier())->write(place, item));
  }
  return items;
}

bool hasSameOctets(const SimpleDataType& left, const SimpleDataType& right) {
  return std::equal(left.rawBuffer(), left.rawBuffer() + left.encodedSize(), right.rawBuffer(),
                    right.rawBuffer() + right.encodedSize());
}

/// Whether the JSON is read back as the value. Texts lose final NULs, but within a collection, where these count, and
/// collections without items the item size.
bool restores(const PropertyPlace& place, const Value& json, const SimpleDataType& value) {
  try {
    const auto read = valueFrom(place, json);
    const auto* list = asCollection(value);
    if (list == nullptr) return read->equals(value);
    return list->size() == 0 || hasSameOctets(*read, value);
  } catch (const Refusal&) {
    return false;
  } catch (const Exceptions::BaseException&) {
    return false;
  }
}

/// @param decode  null when the octets are no value of the type.
template <class Decode>
Made decodedOctets(const Value& json, const std::string& type, Decode&& decode) {
  const auto octets = octetsIn(json);
  auto value = decode(octets.data(), octets.size());
  if (value == nullptr) throw Refusal("its " + std::to_string(octets.size()) + " octets are no " + type);
  return value;
}

bool hasOctets(const Value& json) { return json.find("octets") != nullptr; }

Made itemFrom(const PropertyPlace& place, Identifier type, const Value& json) {
  if (!hasOctets(json)) return itemForm(type)->read(place, type, json);
  return decodedOctets(json, Types::Identifiers::name(type), [type](const uint8* octets, std::size_t size) {
    return Types::Factories::fromBytes(type, octets, size);
  });
}

Made listFrom(const PropertyPlace& place, const MetaMetadata::MetaCollectionElement& definition, const Value& json) {
  if (json.items() == nullptr) throw Refusal(std::string("it is ") + json.kindName() + ", not an array");
  Templates::vector<Made> items;
  for (const auto& item : *json.items()) {
    const auto read = [&] { return itemFrom(place, definition.dataSubType(), item); };
    items.push_back(readingAt(std::to_string(items.size()), item, read));
  }
  return Types::listOf(definition.dataType(), definition.dataSubType(), std::move(items));
}

/// Whether a text stands for an item.
bool stands(const PropertyPlace& place, const std::string& text, const SimpleDataType& item) {
  return Utils::wstringToString(printItem(place, item)) == text || itemFromText(place, text)->equals(item);
}

[[noreturn]] void refuseContradiction(const PropertyPlace& place, const std::string& member, const std::string& text,
                                      const SimpleDataType& item) {
  throw Refusal("\"" + member + "\" has '" + text + "', but the value is " +
                Utils::wstringToString(printItem(place, item)) + "; correct one, or leave \"" + member + "\" out");
}

void requireText(const PropertyPlace& place, const Value& json, const SimpleDataType& item) {
  const auto& text = textOf(json);
  if (!stands(place, text, item)) refuseContradiction(place, "text", text, item);
}

bool isKnownLabel(const PropertyPlace& place, const std::string& label) {
  try {
    itemFromText(place, label);
    return true;
  } catch (const Exceptions::InvalidFormat&) {
    return false;
  }
}

void requireLabel(const PropertyPlace& place, const Value& json, const SimpleDataType& item, Diagnostics& diagnostics) {
  const auto& label = textOf(json);
  const auto text = Utils::wstringToString(printItem(place, item));
  if (text == label) return;
  if (!isKnownLabel(place, label)) {
    diagnostics.push_back({Diagnostic::Kind::kUnknownLabel, {label, text}});
  } else if (!stands(place, label, item)) {
    refuseContradiction(place, "label", label, item);
  }
}

double numberIn(const Value& json) {
  if (json.integer() != nullptr) return static_cast<double>(*json.integer());
  if (json.real() != nullptr) return *json.real();
  throw Refusal(std::string("it is ") + json.kindName() + ", not a number");
}

void requireRatio(const PropertyPlace& place, const Value& json, const Types::Rational& rational) {
  if (json.isNull() && rational.denominator() == 0) return;
  const double number = numberIn(json);
  const double exact = double{1} * rational.numerator() / rational.denominator();
  const bool agrees = rational.denominator() != 0 && std::abs(number - exact) <= kTolerance * std::abs(exact);
  if (!agrees) refuseContradiction(place, "value", std::to_string(number), rational);
}

template <class Check>
void checkMember(const Value& json, const char* name, Diagnostics& diagnostics, Check&& check) {
  const auto* member = json.find(name);
  if (member != nullptr) readingAt(name, *member, diagnostics, [&] { check(*member); });
}

void requireItemAgreement(const PropertyPlace& place, const Value& json, const SimpleDataType& item,
                          Diagnostics& diagnostics) {
  const auto check = [&](const char* name, const auto& action) { checkMember(json, name, diagnostics, action); };
  check("text", [&](const Value& member) { requireText(place, member, item); });
  check("label", [&](const Value& member) { requireLabel(place, member, item, diagnostics); });
  if (item.identifier() != Types::Identifiers::kRational) return;
  const auto& rational = static_cast<const Types::Rational&>(item);
  check("value", [&](const Value& member) { requireRatio(place, member, rational); });
}

}  // namespace

Value octetsOf(const uint8* octets, std::size_t size) {
  return Value::object().add("octets", Platform::hexText<std::string>(octets, size));
}

Value valueOf(const PropertyPlace& place, const SimpleDataType* value) {
  if (value == nullptr) return {};
  auto json = naturalValue(place, *value);
  return restores(place, json, *value) ? json : octetsOf(value->rawBuffer(), value->encodedSize());
}

Value valueOf(const MetadataSet& set, const Element& property) {
  const auto* value = property.wireValue();
  const auto* definition = property.metaAttribute().metaElement();
  if (definition != nullptr) return valueOf({&set, definition}, value);
  return value == nullptr ? octetsOf(nullptr, 0) : octetsOf(value->rawBuffer(), value->encodedSize());
}

Bytes octetsIn(const Value& json) {
  requireMembers(json, {"octets", "text"});
  const auto& digits = requiredText(json, "octets");
  auto octets = Platform::bytesFromHex(Utils::stringToWstring(digits));
  if (!octets) throw Refusal("\"octets\" are hexadecimal digits, two to an octet");
  return std::move(*octets);
}

Made valueFrom(const PropertyPlace& place, const Value& json) {
  if (json.isNull()) return nullptr;
  const auto& definition = *place.definition;
  const auto* list = MetaMetadata::asCollection(definition);
  if (list == nullptr) return itemFrom(place, definition.dataType(), json);
  if (!hasOctets(json)) return listFrom(place, *list, json);
  return decodedOctets(json, typeName(definition), [&definition](const uint8* octets, std::size_t size) {
    return decodeValue(definition, octets, size);
  });
}

bool dependsOnSet(const PropertyPlace& place, const Value& json) {
  return place.definition->dataType() == Types::Identifiers::kPosition && json.text() != nullptr;
}

void requireAgreement(const PropertyPlace& place, const Value& json, const SimpleDataType& value,
                      Diagnostics& diagnostics) {
  const auto* list = asCollection(value);
  if (list == nullptr) return requireItemAgreement(place, json, value, diagnostics);
  if (json.items() == nullptr) return;
  for (uint32 i = 0; i < list->size(); ++i) {
    const auto& item = json.items()->at(i);
    const auto check = [&] { requireItemAgreement(place, item, list->at(i), diagnostics); };
    readingAt(std::to_string(i), item, diagnostics, check);
  }
}

}  // namespace Vantor::JSON
