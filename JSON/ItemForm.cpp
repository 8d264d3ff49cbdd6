#include "JSON/ItemForm.h"

#include <cstdlib>
#include <limits>

#include "Core/Metadata/PropertyForm.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Collection.h"
#include "Core/Types/ProductVersion.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/Text/TypeText.h"
#include "Core/Types/ValueText.h"
#include "Core/Types/VersionType.h"
#include "JSON/PropertyValue.h"
#include "JSON/Refusal.h"

namespace Vantor::JSON {

namespace {

using Types::SimpleDataType;
using Types::Identifiers::Identifier;
using Made = auto_ptr<SimpleDataType>;

constexpr int64 kLargestExact = int64{1} << 53;  // beyond, programs that hold numbers as doubles round them (RFC 8259)
constexpr int64 kMost16 = std::numeric_limits<uint16>::max();

std::string textOf(const PropertyPlace& place, const SimpleDataType& item) {
  return Utils::wstringToString(printItem(place, item));
}

template <class Integer>
Integer memberNumber(const Value& object, std::string_view name) {
  const auto& value = requiredMember(object, name);
  using Limits = std::numeric_limits<Integer>;
  return static_cast<Integer>(readingAt(name, value, [&] { return numberOf(value, Limits::min(), Limits::max()); }));
}

// Numbers and Booleans.

/// Whether people write the values of a property otherwise.
bool hasTexts(const PropertyPlace& place, Identifier type) {
  return place.definition->enumeration() != nullptr || kTimecodeForm.applies(place, type);
}

Value withText(const PropertyPlace& place, const SimpleDataType& item, Value exact) {
  return Value::object().add("value", std::move(exact)).add("text", textOf(place, item));
}

Value scalar(const PropertyPlace& place, const SimpleDataType& item, Value exact) {
  const bool isPlain = !hasTexts(place, item.identifier()) && printItem(place, item) == Types::printValue(item);
  return isPlain ? exact : withText(place, item, std::move(exact));
}

/// The value within an object that has a text for people beside it; any other as it is.
const Value& exactOf(const Value& json) {
  if (json.members() == nullptr) return json;
  requireMembers(json, {"value", "text"});
  return requiredMember(json, "value");
}

Value writeNumber(const PropertyPlace& place, const SimpleDataType& item) {
  const auto digits = Types::textOfValue(item);
  int64 number = 0;
  const bool isExact = Types::readWholeNumber(digits, number) && number <= kLargestExact && number >= -kLargestExact;
  return scalar(place, item, isExact ? Value(number) : Value(Utils::wstringToString(digits)));
}

Made readNumber(const PropertyPlace& place, Identifier type, const Value& json) {
  const auto& exact = exactOf(json);
  if (const auto* number = exact.integer()) return Types::parseValue(type, Platform::toDecimal(*number));
  if (const auto* number = exact.largeInteger()) return Types::parseValue(type, Platform::toDecimal(*number));
  if (exact.real() != nullptr) throw Refusal("it is no whole number");
  return itemFromText(place, JSON::textOf(exact));
}

Value writeBoolean(const PropertyPlace& place, const SimpleDataType& item) {
  return scalar(place, item, Types::textOfValue(item) == u"1");
}

Made readBoolean(const PropertyPlace& place, Identifier type, const Value& json) {
  const auto& exact = exactOf(json);
  if (const auto* boolean = exact.boolean()) return Types::parseValue(type, *boolean ? u"true" : u"false");
  return itemFromText(place, JSON::textOf(exact));
}

Value writeVersion(const PropertyPlace& place, const SimpleDataType& item) {
  const auto& version = static_cast<const Types::VersionType&>(item);
  return withText(place, item, int64{version.major()} << 8 | version.minor());
}

Made readVersion(const PropertyPlace& place, Identifier, const Value& json) {
  const auto& exact = exactOf(json);
  if (exact.text() != nullptr) return itemFromText(place, *exact.text());
  const auto number = numberOf(exact, 0, kMost16);
  return std::make_unique<Types::VersionType>(static_cast<uint8>(number >> 8), static_cast<uint8>(number & 0xFF));
}

// Records.

Value writeRational(const PropertyPlace& place, const SimpleDataType& item) {
  const auto& rational = static_cast<const Types::Rational&>(item);
  auto value = Value::object();
  value.add("numerator", rational.numerator()).add("denominator", rational.denominator());
  if (rational.denominator() != 0) value.add("value", double{1} * rational.numerator() / rational.denominator());
  return value.add("text", textOf(place, item));
}

Made readRational(const PropertyPlace& place, Identifier, const Value& json) {
  if (json.text() != nullptr) return itemFromText(place, *json.text());
  requireMembers(json, {"numerator", "denominator", "value", "text"});
  const auto numerator = memberNumber<int32>(json, "numerator");
  return std::make_unique<Types::Rational>(numerator, memberNumber<int32>(json, "denominator"));
}

Value writeProductVersion(const PropertyPlace& place, const SimpleDataType& item) {
  const auto& version = static_cast<const Types::ProductVersion&>(item);
  auto value = Value::object();
  value.add("major", int64{version.major()}).add("minor", int64{version.minor()});
  value.add("patch", int64{version.patch()}).add("build", int64{version.build()});
  return value.add("release", static_cast<int64>(version.releaseVersion())).add("text", textOf(place, item));
}

Made readProductVersion(const PropertyPlace& place, Identifier, const Value& json) {
  if (json.text() != nullptr) return itemFromText(place, *json.text());
  requireMembers(json, {"major", "minor", "patch", "build", "release", "text"});
  const auto part = [&json](std::string_view name) { return memberNumber<uint16>(json, name); };
  const auto release = static_cast<Types::ReleaseVersion>(part("release"));
  return std::make_unique<Types::ProductVersion>(part("major"), part("minor"), part("patch"), part("build"), release);
}

// Texts.

Value writeText(const PropertyPlace&, const SimpleDataType& item) {
  return Utils::wstringToString(Types::textOfValue(item));
}

/// Quoted, so that quotes around the text stay. The code unit NUL is an empty text.
Made readText(const PropertyPlace&, Identifier type, const Value& json) {
  const auto text = Utils::stringToWstring(JSON::textOf(json));
  if (text.empty()) return Types::emptyValue(type);
  return Types::parseValue(type, Types::quotedText(text));
}

Value writeWord(const PropertyPlace& place, const SimpleDataType& item) { return textOf(place, item); }
Made readWord(const PropertyPlace& place, Identifier, const Value& json) {
  return itemFromText(place, JSON::textOf(json));
}

Value writeLabel(const PropertyPlace& place, const SimpleDataType& item) {
  const auto digits = Utils::wstringToString(Types::printValue(item));
  const auto symbol = textOf(place, item);
  auto value = Value::object().add("value", digits);
  if (symbol != digits) value.add("label", symbol);
  return value;
}

Made readLabel(const PropertyPlace& place, Identifier type, const Value& json) {
  if (json.text() != nullptr) return itemFromText(place, *json.text());
  requireMembers(json, {"value", "label"});
  return Types::parseValue(type, Utils::stringToWstring(requiredText(json, "value")));
}

Value writeOctets(const PropertyPlace& place, const SimpleDataType& item) {
  auto value = octetsOf(item.rawBuffer(), item.encodedSize());
  const auto text = textOf(place, item);
  if (text != *value.find("octets")->text()) value.add("text", text);
  return value;
}

constexpr ItemForm kNumberForm = {writeNumber, readNumber};
constexpr ItemForm kBooleanForm = {writeBoolean, readBoolean};
constexpr ItemForm kVersionForm = {writeVersion, readVersion};
constexpr ItemForm kRationalForm = {writeRational, readRational};
constexpr ItemForm kProductVersionForm = {writeProductVersion, readProductVersion};
constexpr ItemForm kTextForm = {writeText, readText};
constexpr ItemForm kWordForm = {writeWord, readWord};
constexpr ItemForm kLabelItems = {writeLabel, readLabel};
constexpr ItemForm kOctetsForm = {writeOctets, readWord};

}  // namespace

const ItemForm* itemForm(Identifier type) {
  using namespace Types::Identifiers;
  switch (type) {
    case kInt8:
    case kInt16:
    case kInt32:
    case kInt64:
    case kUInt8:
    case kUInt16:
    case kUInt32:
    case kUInt64:
    case kLength:
    case kPosition:
    case kOrientation:
    case kSignalStandard:
      return &JSON::kNumberForm;
    case kBoolean:
      return &JSON::kBooleanForm;
    case kVersionType:
      return &JSON::kVersionForm;
    case kRational:
      return &JSON::kRationalForm;
    case kProductVersion:
      return &JSON::kProductVersionForm;
    case kUTF16:
    case kUTF16String:
    case kUTF8String:
    case kISO7String:
    case kISO8String:
      return &JSON::kTextForm;
    case kTimestamp:
    case kUUID:
    case kUMID32:
    case kUMID64:
    case kLocalTag:
    case kStrongReference:
    case kWeakReference:
      return &JSON::kWordForm;
    case kUniversalLabel:
    case kAUID:
      return &kLabelItems;
    case kDataStream:
    case kDataValue:
    case kUnknown:
    case kRGBALayout:
    case kJ2KPictureComponent:
    case kJ2KCodingStyleDefault:
    case kJ2KQuantisationDefault:
      return &JSON::kOctetsForm;
    case kArray:
    case kBatch:
    case kNone:
      return nullptr;
  }
  return nullptr;
}

Made itemFromText(const PropertyPlace& place, std::string_view text) {
  const auto written = Utils::stringToWstring(std::string(text));
  if (MetaMetadata::asCollection(*place.definition) == nullptr) return parseProperty(place, written);
  const auto list = parseProperty(place, u"[" + written + u"]");
  const auto& items = static_cast<const Types::Collection&>(*list);
  if (items.size() != 1) throw Refusal("\"" + std::string(text) + "\" is no item of a list");
  return items.at(0).clone();
}

}  // namespace Vantor::JSON
