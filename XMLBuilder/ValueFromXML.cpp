#include "XMLBuilder/ValueFromXML.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "XMLBuilder/CompoundValueFromXML.h"
#include "XMLBuilder/NodeText.h"
#include "XMLUtils/Strings.h"

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

/// The first run of text without white space; empty when there is none.
wstring firstToken(const wstring& text) {
  constexpr const char16_t* kStreamWhiteSpace = u" \t\n\v\f\r";
  const auto begin = std::min(text.find_first_not_of(kStreamWhiteSpace), text.size());
  return text.substr(begin, text.find_first_of(kStreamWhiteSpace, begin) - begin);
}

template <class Type>
auto_ptr<Types::SimpleDataType> identifier(const wstring& text) {
  return std::make_unique<Type>(firstToken(text), kDottedForm);
}

auto_ptr<Types::SimpleDataType> boolean(const wstring& text) { return std::make_unique<Types::Boolean>(text != u"0"); }

template <class Type>
auto_ptr<Types::SimpleDataType> narrowText(const wstring& text) {
  return std::make_unique<Type>(Platform::wstringToString(text).c_str());
}

template <class Type>
auto_ptr<Types::SimpleDataType> wideText(const wstring& text) {
  return std::make_unique<Type>(text);
}

/// An ExtendedClipID may be given as a basic UMID; its other half is zero then.
auto_ptr<Types::SimpleDataType> extendedClipID(const wstring& text) {
  wstring token = firstToken(text);
  if (token.size() == kBasicUMIDUnits) {
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

using namespace Types::Identifiers;

/// The readers of the types that are written as one text.
constexpr std::pair<Identifier, auto_ptr<Types::SimpleDataType> (*)(const wstring&)> kReaders[] = {
    {kBoolean, boolean},
    {kDataStream, payload<Types::DataStream>},
    {kUnknown, payload<Types::Unknown>},
    {kInt8, number<Types::Int8, int32, int8>},
    {kInt16, number<Types::Int16, int32, int16>},
    {kInt32, number<Types::Int32, int32>},
    {kInt64, number<Types::Int64, int64>},
    {kLength, number<Types::Length, int64>},
    {kPosition, number<Types::Position, int64>},
    {kUInt8, number<Types::UInt8, uint32, uint8>},
    {kOrientation, number<Types::Orientation, uint32, uint8>},
    {kSignalStandard, number<Types::SignalStandard, uint32, uint8>},
    {kUInt16, number<Types::UInt16, uint32, uint16>},
    {kUInt32, number<Types::UInt32, uint32>},
    {kUInt64, number<Types::UInt64, uint64>},
    {kVersionType, versionType},
    {kISO7String, narrowText<Types::ISO7String>},
    {kISO8String, narrowText<Types::ISO8String>},
    {kUTF16, utf16},
    {kUTF16String, wideText<Types::UTF16String>},
    {kUTF8String, wideText<Types::UTF8String>},
    {kUMID32, identifier<Types::UMID32>},
    {kUMID64, identifier<Types::UMID64>},
    {kUniversalLabel, identifier<Types::UniversalLabel>},
    {kUUID, identifier<Types::UUID>},
    {kAUID, identifier<Types::AUID>}};

}  // namespace

auto_ptr<Types::SimpleDataType> readText(Identifier type, const DOMNode& node, const wstring& text) {
  if (type == kUMID64 && XMLUtils::viewOf(node.getLocalName()) == u"ExtendedClipID") return extendedClipID(text);
  const auto found =
      std::find_if(std::begin(kReaders), std::end(kReaders), [type](const auto& one) { return one.first == type; });
  return found == std::end(kReaders) ? nullptr : found->second(text);
}

bool isVariableSize(Identifier type) {
  return type == kDataStream || type == kISO7String || type == kUnknown || type == kUTF16String || type == kDataValue ||
         type == kISO8String;
}

void CollectionItems::append(auto_ptr<Types::SimpleDataType> item) {
  if (item != nullptr && item->encodedSize() == 0 && ++emptyItems_ * collection_.itemSize() > kMostPadding) {
    Exceptions::raise<Exceptions::InvalidLength>("{} items without octets cannot be padded to {} octets each",
                                                 emptyItems_, collection_.itemSize());
  }
  collection_.append(std::move(item));
}

Bytes parseHexString(const wstring& text) {
  using Exceptions::InvalidFormat;
  if (text.size() % 2 != 0) Exceptions::raise<InvalidFormat>({"Value has invalid Length", {kValueSource, 110}});
  if (auto bytes = Platform::bytesFromHex(text)) return *std::move(bytes);
  Exceptions::raise<InvalidFormat>({"Value contains non Hexadecimal characters", {kValueSource, 117}});
}

auto_ptr<Types::SimpleDataType> createValueFromNode(Identifier type, const DOMNode& node, ReadingRules& rules) {
  const bool isAttribute = node.getNodeType() == DOMNode::ATTRIBUTE_NODE;
  if (!isAttribute && firstChild(node, rules.blankText()) == nullptr) return rules.emptyValue(type);
  if (const auto read = compoundReader(type)) return read(node, rules);
  return rules.textValue(type, node);
}

}  // namespace Vantor::XML2Partition
