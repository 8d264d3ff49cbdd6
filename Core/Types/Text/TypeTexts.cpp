#include <algorithm>
#include <array>

#include "Core/Platform/Raise.h"
#include "Core/Types/Text/DateText.h"
#include "Core/Types/Text/IdentifierText.h"
#include "Core/Types/Text/ListText.h"
#include "Core/Types/Text/NumberText.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/RationalText.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/Text/TypeText.h"
#include "Core/Types/Text/VersionText.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

constexpr const char* kLabelExamples =
    "urn:smpte:ul:060e2b34.04010101.0d010201.01010900 or 06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00";
constexpr const char* kUMIDExamples =
    "0x060A2B340101010501010D4313000000D3B6D3D7C1A14B4F8C0F0123456789AB or "
    "urn:smpte:umid:060a2b34.01010105.01010d43.13000000.d3b6d3d7.c1a14b4f.8c0f0123.456789ab";
constexpr const char* kLongUMIDExamples =
    "urn:smpte:umid:060a2b34.01010105.01010d43.33000000.d3b6d3d7.c1a14b4f.8c0f0123.456789ab.00000000.00000000."
    "00000000.00000000.00000000.00000000.00000000.00000000";
constexpr const char* kSigned8 = "a whole number from -128 to 127";
constexpr const char* kSigned16 = "a whole number from -32768 to 32767";
constexpr const char* kSigned32 = "a whole number from -2147483648 to 2147483647";
constexpr const char* kSigned64 = "a whole number from -9223372036854775808 to 9223372036854775807";
constexpr const char* kUnsigned8 = "a whole number from 0 to 255";
constexpr const char* kUnsigned16 = "a whole number from 0 to 65535";
constexpr const char* kUnsigned32 = "a whole number from 0 to 4294967295";
constexpr const char* kUnsigned64 = "a whole number from 0 to 18446744073709551615";
constexpr const char* kNumbers = "25 or 0x19";
constexpr const char* kTexts = "A title";
constexpr const char* kOctets = "0A1B or 0x0A1B";

template <class Type>
constexpr TypeText number(const char* noun) {
  return {TypeTraits<Type>::kIdentifier, noun, kNumbers, printNumber<Type>, parseNumber<Type>};
}
template <class Type>
constexpr TypeText identifier(const char* noun, const char* examples) {
  return {TypeTraits<Type>::kIdentifier, noun, examples, printIdentifier<Type>, parseIdentifier<Type>};
}
template <class Type>
constexpr TypeText reference() {
  return {TypeTraits<Type>::kIdentifier, "the InstanceUID of a set", kUUIDExamples, printReference,
          parseReference<Type>};
}
template <class Type>
constexpr TypeText narrowText(const char* noun) {
  return {TypeTraits<Type>::kIdentifier, noun, kTexts, printString, parseNarrowString<Type>};
}
template <class Type>
constexpr TypeText wideText() {
  return {TypeTraits<Type>::kIdentifier, "a text", kTexts, printString, parseWideString<Type>};
}
template <class Type>
constexpr TypeText octets(const char* noun, const char* examples) {
  return {TypeTraits<Type>::kIdentifier, noun, examples, printOctets, parseOctets<Type>};
}

constexpr std::array kRows = {
    number<Int8>(kSigned8),
    number<Int16>(kSigned16),
    number<Int32>(kSigned32),
    number<Int64>(kSigned64),
    number<Length>(kSigned64),
    number<Position>(kSigned64),
    number<UInt8>(kUnsigned8),
    number<UInt16>(kUnsigned16),
    number<UInt32>(kUnsigned32),
    number<UInt64>(kUnsigned64),
    number<Orientation>(kUnsigned8),
    number<SignalStandard>(kUnsigned8),
    TypeText{Identifiers::kBoolean, "true or false", "true, false, yes, no, on, off, 1 or 0", printBoolean,
             parseBoolean},
    TypeText{Identifiers::kRational, "a rate or ratio", "25, 30000/1001, 29.97 or 16:9", printRational, parseRational},
    TypeText{Identifiers::kVersionType, "a version", "1.3", printVersionType, parseVersionType},
    TypeText{Identifiers::kProductVersion, "a version", "1.2.3.4 release or 1.2 beta", printProductVersion,
             parseProductVersion},
    TypeText{Identifiers::kTimestamp, "a date and time", "2024-02-09T03:04:05.008Z or 2024-02-09", printTimestamp,
             parseTimestamp},
    identifier<UUID>("a UUID", kUUIDExamples),
    identifier<AUID>("a label or UUID", kLabelExamples),
    identifier<UniversalLabel>("a label", kLabelExamples),
    identifier<UMID32>("a UMID of 32 octets", kUMIDExamples),
    identifier<UMID64>("a UMID of 64 octets", kLongUMIDExamples),
    identifier<LocalTag>("a local tag", "3C.0A or 0x3C0A"),
    reference<StrongReference>(),
    reference<WeakReference>(),
    wideText<UTF16String>(),
    wideText<UTF8String>(),
    narrowText<ISO7String>("a text of ISO 7-bit characters"),
    narrowText<ISO8String>("a text of ISO 8-bit characters"),
    TypeText{Identifiers::kUTF16, "one UTF-16 code unit", "A", printCodeUnit, parseCodeUnit},
    octets<DataStream>("a run of octets", kOctets),
    octets<DataValue>("a run of octets", kOctets),
    octets<Unknown>("a run of octets", kOctets),
    octets<RGBALayout>("a pixel layout of 16 octets", "52084708420800000000000000000000"),
    octets<J2KPictureComponent>("a picture component of 3 octets", "090101"),
    octets<J2KCodingStyleDefault>("a coding style of 5 octets or more", "0104000101"),
    octets<J2KQuantisationDefault>("a quantisation of 1 octet or more", "42771E"),
};

constexpr bool hasRow(Identifiers::Identifier type) {
  for (const auto& row : kRows) {
    if (row.type == type) return true;
  }
  return type == Identifiers::kArray || type == Identifiers::kBatch;
}
#define VANTOR_REQUIRE_ROW(Type, number, octets) static_assert(hasRow(Identifiers::k##Type), "a row for " #Type);
VANTOR_FOR_EACH_TYPE(VANTOR_REQUIRE_ROW)
#undef VANTOR_REQUIRE_ROW

}  // namespace

const TypeText* typeText(Identifiers::Identifier type) {
  const auto* found =
      std::find_if(kRows.begin(), kRows.end(), [type](const TypeText& row) { return row.type == type; });
  return found == kRows.end() ? nullptr : found;
}

wstring printValue(const SimpleDataType& value) {
  const auto* row = typeText(value.identifier());
  return row != nullptr ? row->print(value) : printList(static_cast<const Collection&>(value));
}

auto_ptr<SimpleDataType> parseValue(Identifiers::Identifier type, std::u16string_view text) {
  const auto* row = typeText(type);
  if (row == nullptr) {
    Exceptions::raise<Exceptions::InvalidFormat>("{} is text for a value whose type is not given", excerpt(text));
  }
  auto parsed = row->parse(text);
  if (parsed.value == nullptr) refuseText(text, row->noun, parsed.reason, row->examples);
  return std::move(parsed.value);
}

void refuseText(std::u16string_view text, std::string_view noun, std::string_view reason, std::string_view examples) {
  const std::string why = reason.empty() ? "" : " (" + std::string(reason) + ")";
  const std::string such = examples.empty() ? "" : "; for example " + std::string(examples);
  Exceptions::raise<Exceptions::InvalidFormat>("{} is not {}{}{}", excerpt(text), noun, why, such);
}

}  // namespace Vantor::Types
