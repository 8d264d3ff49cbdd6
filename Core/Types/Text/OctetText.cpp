#include "Core/Types/Text/OctetText.h"

#include <algorithm>

#include "Core/Platform/HexDigits.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

constexpr std::u16string_view kSeparators = u" \t\n\r.,:-_";

std::u16string_view withoutBraces(std::u16string_view text) {
  const bool isBraced = text.size() >= 2 && text.front() == u'{' && text.back() == u'}';
  return isBraced ? trimmed(text.substr(1, text.size() - 2)) : text;
}

/// Takes the group at the front, and the separators behind it.
std::u16string_view takeGroup(std::u16string_view& text) {
  const auto group = text.substr(0, text.find_first_of(kSeparators));
  text.remove_prefix(group.size());
  const auto next = text.find_first_not_of(kSeparators);
  text.remove_prefix(std::min(next, text.size()));
  return group;
}

bool isHexText(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) {
    return Platform::hexDigit(unit) >= 0 || kSeparators.find(unit) != std::u16string_view::npos;
  });
}

}  // namespace

bool isOctetType(Identifiers::Identifier type) {
  return type == Identifiers::kDataStream || type == Identifiers::kDataValue || type == Identifiers::kUnknown;
}

bool isWrittenInOctets(Identifiers::Identifier type) {
  return isOctetType(type) || type == Identifiers::kRGBALayout || type == Identifiers::kJ2KPictureComponent ||
         type == Identifiers::kJ2KCodingStyleDefault || type == Identifiers::kJ2KQuantisationDefault;
}

bool hasHexPrefix(std::u16string_view text) {
  return text.size() >= 2 && text[0] == u'0' && lowerCaseOf(text[1]) == u'x';
}

std::optional<Bytes> octetsInGroups(std::u16string_view text) {
  Bytes octets;
  for (auto rest = withoutBraces(trimmed(text)); !rest.empty();) {
    auto group = takeGroup(rest);
    if (hasHexPrefix(group)) group.remove_prefix(2);
    const auto taken = Platform::bytesFromHex(group);
    if (!taken || taken->empty()) return std::nullopt;
    octets.insert(octets.end(), taken->begin(), taken->end());
  }
  return octets;
}

std::string octetFault(std::u16string_view text, std::size_t wanted) {
  if (const auto octets = octetsInGroups(text)) {
    if (octets->size() == wanted || octets->empty() || wanted == 0) return "";
    return "it has " + std::to_string(octets->size()) + " octets, not " + std::to_string(wanted);
  }
  return !trimmed(text).empty() && isHexText(trimmed(text)) ? "an octet lacks its second digit" : "";
}

wstring printOctets(const SimpleDataType& value) {
  return Platform::hexText<wstring>(value.rawBuffer(), value.encodedSize());
}

ParsedValue decodedOctets(Identifiers::Identifier type, std::u16string_view text) {
  const auto octets = trimmed(text) == u"no octets" ? Bytes() : octetsInGroups(text);
  if (!octets) return ParsedValue(octetFault(text, 0));
  auto value = Factories::fromBytes(type, octets->data(), octets->size());
  return value != nullptr ? ParsedValue(std::move(value)) : ParsedValue(octetFault(text, Identifiers::typeSize(type)));
}

}  // namespace Vantor::Types
