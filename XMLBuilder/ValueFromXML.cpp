#include "XMLBuilder/ValueFromXML.h"

#include <utility>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "XMLBuilder/CompoundValueFromXML.h"
#include "XMLBuilder/NodeText.h"
#include "XMLUtils/Strings.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::XML2Partition {

using xercesc::DOMNode;

namespace {

constexpr std::size_t kBasicUMIDUnits = 95;  // 32 pairs of digits and 31 points
constexpr std::size_t kExtensionOctets = 32;

/// A number read with the width of `Read`, of which a type keeps what fits it.
template <class Type, class Read, class Kept = Read>
auto_ptr<Types::SimpleDataType> number(const wstring& text) {
  return std::make_unique<Type>(static_cast<Kept>(Platform::readDecimal<Read>(text)));
}

template <class Type>
auto_ptr<Types::SimpleDataType> identifier(const wstring& text) {
  return std::make_unique<Type>(firstToken(text), kDottedForm);
}

template <class Type>
auto_ptr<Types::SimpleDataType> narrowText(const wstring& text) {
  return std::make_unique<Type>(Platform::wstringToString(text).c_str());
}

template <class Type>
auto_ptr<Types::SimpleDataType> wideText(const wstring& text) {
  return std::make_unique<Type>(text);
}

/// An ExtendedClipID may be given as a basic UMID; its other half is zero then.
auto_ptr<Types::SimpleDataType> umid64(const DOMNode& node, const wstring& text) {
  wstring token = firstToken(text);
  if (token.size() == kBasicUMIDUnits && XMLUtils::utf16ToWstring(node.getLocalName()) == u"ExtendedClipID") {
    for (std::size_t i = 0; i < kExtensionOctets; ++i) token += u".00";
  }
  return std::make_unique<Types::UMID64>(token, kDottedForm);
}

auto_ptr<Types::SimpleDataType> utf16(const wstring& text) {
  const wstring token = firstToken(text);
  return std::make_unique<Types::UTF16>(token.empty() ? uint16{0} : static_cast<uint16>(token.front()));
}

auto_ptr<Types::SimpleDataType> versionType(const wstring& text) {
  const auto number = Platform::readDecimal<uint32>(text);
  return std::make_unique<Types::VersionType>(static_cast<uint8>(number >> 8), static_cast<uint8>(number));
}

template <class Type>
auto_ptr<Types::SimpleDataType> payload(const wstring& text) {
  const auto bytes = parseHexString(text);
  return std::make_unique<Type>(bytes.data(), bytes.size());
}

using CompoundReader = auto_ptr<Types::SimpleDataType> (*)(const DOMNode&, ReadingRules&);

/// The reader of a type that is made of child elements; null for every other type.
CompoundReader compoundReader(Types::Identifiers::Identifier type) {
  if (type == Types::Identifiers::kProductVersion) return readProductVersion;
  if (type == Types::Identifiers::kRational) return readRational;
  if (type == Types::Identifiers::kTimestamp) return readTimestamp;
  if (type == Types::Identifiers::kRGBALayout) return readRGBALayout;
  if (type == Types::Identifiers::kJ2KPictureComponent) return readJ2KPictureComponent;
  if (type == Types::Identifiers::kJ2KCodingStyleDefault) return readJ2KCodingStyleDefault;
  if (type == Types::Identifiers::kJ2KQuantisationDefault) return readJ2KQuantisationDefault;
  return nullptr;
}

}  // namespace

auto_ptr<Types::SimpleDataType> readText(Types::Identifiers::Identifier type, const DOMNode& node,
                                         const wstring& text) {
  switch (type) {
    case Types::Identifiers::kBoolean:
      return std::make_unique<Types::Boolean>(text != u"0");
    case Types::Identifiers::kDataStream:
      return payload<Types::DataStream>(text);
    case Types::Identifiers::kUnknown:
      return payload<Types::Unknown>(text);
    case Types::Identifiers::kInt8:
      return number<Types::Int8, int32, int8>(text);
    case Types::Identifiers::kInt16:
      return number<Types::Int16, int32, int16>(text);
    case Types::Identifiers::kInt32:
      return number<Types::Int32, int32>(text);
    case Types::Identifiers::kInt64:
      return number<Types::Int64, int64>(text);
    case Types::Identifiers::kLength:
      return number<Types::Length, int64>(text);
    case Types::Identifiers::kPosition:
      return number<Types::Position, int64>(text);
    case Types::Identifiers::kUInt8:
      return number<Types::UInt8, uint32, uint8>(text);
    case Types::Identifiers::kOrientation:
      return number<Types::Orientation, uint32, uint8>(text);
    case Types::Identifiers::kSignalStandard:
      return number<Types::SignalStandard, uint32, uint8>(text);
    case Types::Identifiers::kUInt16:
      return number<Types::UInt16, uint32, uint16>(text);
    case Types::Identifiers::kUInt32:
      return number<Types::UInt32, uint32>(text);
    case Types::Identifiers::kUInt64:
      return number<Types::UInt64, uint64>(text);
    case Types::Identifiers::kVersionType:
      return versionType(text);
    case Types::Identifiers::kISO7String:
      return narrowText<Types::ISO7String>(text);
    case Types::Identifiers::kISO8String:
      return narrowText<Types::ISO8String>(text);
    case Types::Identifiers::kUTF16:
      return utf16(text);
    case Types::Identifiers::kUTF16String:
      return wideText<Types::UTF16String>(text);
    case Types::Identifiers::kUTF8String:
      return wideText<Types::UTF8String>(text);
    case Types::Identifiers::kUMID32:
      return identifier<Types::UMID32>(text);
    case Types::Identifiers::kUMID64:
      return umid64(node, text);
    case Types::Identifiers::kUniversalLabel:
      return identifier<Types::UniversalLabel>(text);
    case Types::Identifiers::kUUID:
      return identifier<Types::UUID>(text);
    case Types::Identifiers::kAUID:
      return identifier<Types::AUID>(text);
    case Types::Identifiers::kNone:
    case Types::Identifiers::kLocalTag:
    case Types::Identifiers::kProductVersion:
    case Types::Identifiers::kRational:
    case Types::Identifiers::kTimestamp:
    case Types::Identifiers::kStrongReference:
    case Types::Identifiers::kWeakReference:
    case Types::Identifiers::kArray:
    case Types::Identifiers::kBatch:
    case Types::Identifiers::kRGBALayout:
    case Types::Identifiers::kDataValue:
    case Types::Identifiers::kJ2KPictureComponent:
    case Types::Identifiers::kJ2KCodingStyleDefault:
    case Types::Identifiers::kJ2KQuantisationDefault:
      break;
  }
  return nullptr;
}

Bytes parseHexString(const wstring& text) {
  using Exceptions::InvalidFormat;
  if (text.size() % 2 != 0) Exceptions::raise<InvalidFormat>({"Value has invalid Length", {kValueSource, 110}});
  if (auto bytes = Platform::bytesFromHex(text)) return *std::move(bytes);
  Exceptions::raise<InvalidFormat>({"Value contains non Hexadecimal characters", {kValueSource, 117}});
}

auto_ptr<Types::SimpleDataType> createValueFromNode(Types::Identifiers::Identifier type, const DOMNode& node,
                                                    ReadingRules& rules) {
  if (rules.isEmpty(node)) return rules.emptyValue(type);
  if (const auto read = compoundReader(type)) return read(node, rules);
  return rules.textValue(type, node);
}

}  // namespace Vantor::XML2Partition
