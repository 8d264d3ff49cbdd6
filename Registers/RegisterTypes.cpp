#include "Registers/RegisterTypes.h"

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/KLV/Keys.h"
#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

using namespace Types::Identifiers;

struct CoreType {
  KLV::Key key;
  Identifier type;
};

/// Types with a core type of their own, whatever they are made of.
constexpr CoreType kCoreTypes[] = {
    {RegisterKeys::type(0x0101200100000000), kPosition},             // PositionType, an Int64
    {RegisterKeys::type(0x0101200200000000), kLength},               // LengthType, an Int64
    {RegisterKeys::type(0x0103010000000000), kAUID},                 // AUID, also for labels and UUIDs
    {RegisterKeys::type(0x0103020000000000), kUMID32},               // PackageIDType (ST 330)
    {RegisterKeys::type(0x0103030000000000), kUUID},                 // UUID, 16 UInt8
    {RegisterKeys::type(0x0104010000000000), kBoolean},              // Boolean, an enumeration
    {RegisterKeys::type(0x0201012700000000), kSignalStandard},       // SignalStandardType (ST 377-1)
    {RegisterKeys::type(0x0201012800000000), kOrientation},          // ScanningDirectionType (ST 377-1: Orientation)
    {RegisterKeys::type(0x0301010000000000), kRational},             // Rational
    {RegisterKeys::type(0x0301020000000000), kProductVersion},       // ProductVersionType; 10 octets (ST 377-1)
    {RegisterKeys::type(0x0301030000000000), kVersionType},          // VersionType; unsigned (ST 377-1)
    {RegisterKeys::type(0x0301070000000000), kTimestamp},            // TimeStamp
    {RegisterKeys::type(0x03010a0000000000), kJ2KPictureComponent},  // J2KComponentSizing (ST 422)
    {RegisterKeys::type(0x0402010000000000), kRGBALayout},  // RGBALayout; 8 pairs without the header of an array
    {RegisterKeys::type(0x0410010000000000), kDataStream},  // DataValue; bytes without the header of an array
};

/// Strings by the type of their characters.
constexpr CoreType kStrings[] = {
    {RegisterKeys::type(0x0110010000000000), kUTF16String},  // Character
    {RegisterKeys::type(0x0110030000000000), kISO7String},   // Char
    {RegisterKeys::type(0x0110050000000000), kUTF8String},   // UTF8Character
};

/// `kNone` when the type is not among these.
template <std::size_t kCount>
Identifier among(const CoreType (&types)[kCount], const KLV::Key& key) {
  for (const auto& type : types) {
    if (type.key.matches(key)) return type.type;
  }
  return kNone;
}

/// The node of floating-point numbers, which are registered as integers.
bool isFloat(const KLV::Key& key) { return !KLV::isSwappedUUID(key) && key.octet(9) == 0x01 && key.octet(10) == 0x02; }

/// Longer than any chain of types in the registers.
constexpr std::size_t kLongestChain = 100;

RegisteredType single(Identifier value) {
  RegisteredType type;
  type.value = value;
  type.whyBytes = BytesReason::kNone;
  return type;
}

RegisteredType bytes(BytesReason reason) {
  RegisteredType type;
  type.whyBytes = reason;
  return type;
}

RegisteredType integerOf(const TypeEntry& entry) {
  if (isFloat(entry.key)) return bytes(BytesReason::kFloat);
  switch (entry.size) {
    case 1:
      return single(entry.isSigned ? kInt8 : kUInt8);
    case 2:
      return single(entry.isSigned ? kInt16 : kUInt16);
    case 4:
      return single(entry.isSigned ? kInt32 : kUInt32);
    case 8:
      return single(entry.isSigned ? kInt64 : kUInt64);
    default:
      return bytes(BytesReason::kIntegerSize);
  }
}

RegisteredType enumerationOf(const TypeEntry& entry, RegisteredType base) {
  if (base.collection != kNone) return base;
  // The values that the register lists for identifiers are labels.
  if (base.value == kAUID) return single(kUniversalLabel);
  if (isEnumerable(base.value)) base.enumeration = &entry;
  return base;
}

RegisteredType stringOf(const TypeEntry& entry) {
  const Identifier string = entry.base ? among(kStrings, *entry.base) : kNone;
  return string == kNone ? bytes(BytesReason::kCharacters) : single(string);
}

/// A collection whose items are not values, or vary in size, cannot be taken apart.
RegisteredType collectionOf(Identifier collection, RegisteredType item) {
  if (item.collection != kNone || typeSize(item.value) == 0) return bytes(BytesReason::kItems);
  item.collection = collection;
  return item;
}

RegisteredType referenceOf(Identifier value, const TypeEntry& entry) {
  RegisteredType type = single(value);
  type.target = entry.base;
  return type;
}

}  // namespace

std::optional<RegisteredType> RegisterTypes::find(const KLV::Key& key) const {
  const auto* entry = index_.find(key);
  return entry == nullptr ? std::nullopt : std::optional(resolve(*entry, 0));
}

RegisteredType RegisterTypes::resolve(const TypeEntry& entry, std::size_t depth) const {
  const bool isEnumeration = entry.kind == TypeKind::kEnumeration;
  const Identifier known = among(kCoreTypes, entry.key);
  if (known != kNone) return isEnumeration ? enumerationOf(entry, single(known)) : single(known);
  switch (entry.kind) {
    case TypeKind::kOther:
      return bytes(BytesReason::kOther);
    case TypeKind::kCharacter:
      return bytes(BytesReason::kCharacter);
    case TypeKind::kFixedArray:
      return bytes(BytesReason::kFixedArray);
    case TypeKind::kIndirect:
      return bytes(BytesReason::kIndirect);
    case TypeKind::kOpaque:
      return bytes(BytesReason::kOpaque);
    case TypeKind::kRecord:
      return bytes(BytesReason::kRecord);
    case TypeKind::kStream:
      return bytes(BytesReason::kStream);
    case TypeKind::kInteger:
      return integerOf(entry);
    case TypeKind::kString:
      return stringOf(entry);
    case TypeKind::kStrongReference:
      return referenceOf(kStrongReference, entry);
    case TypeKind::kWeakReference:
      return referenceOf(kWeakReference, entry);
    case TypeKind::kRename:
    case TypeKind::kEnumeration:
    case TypeKind::kVariableArray:
    case TypeKind::kSet:
      break;  // carried as the base is
  }
  if (depth == kLongestChain) {
    entries_.refuse(entry.origin,
                    "the type {} is made of itself, or of more than {} types in a row; give it another base",
                    entry.symbol, kLongestChain);
  }
  const auto base = resolve(baseOf(entry), depth + 1);
  if (entry.kind == TypeKind::kRename) return base;
  return isEnumeration ? enumerationOf(entry, base)
                       : collectionOf(entry.kind == TypeKind::kSet ? kBatch : kArray, base);
}

const TypeEntry& RegisterTypes::baseOf(const TypeEntry& entry) const {
  const auto* found = entry.base ? index_.find(*entry.base) : nullptr;
  if (found != nullptr) return *found;
  const std::string base = entry.base ? "of " + MetaMetadata::registerText(*entry.base) : "of nothing";
  entries_.refuse(entry.origin,
                  "the type {} is made {}, which is no type of the register; name one that is as its base",
                  entry.symbol, base);
}

}  // namespace Vantor::Registers
