#include "Core/Types/Text/IdentifierText.h"

#include <algorithm>

#include "Core/Types/Reference.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

enum class Notation { kOctets, kLabel, kUUID, kUMID };

struct NotationPrefix {
  std::u16string_view text;
  Notation notation;
};
constexpr std::array kPrefixes = {
    NotationPrefix{u"urn:smpte:ul:", Notation::kLabel}, NotationPrefix{u"urn:uuid:", Notation::kUUID},
    NotationPrefix{u"uuid:", Notation::kUUID}, NotationPrefix{u"urn:smpte:umid:", Notation::kUMID}};

/// Whether the digits stand as in a UUID, 8-4-4-4-12, maybe in braces (RFC 4122).
bool hasFormOfUUID(std::u16string_view text) {
  constexpr std::u16string_view kForm = u"xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() == kForm.size() + 2 && text.front() == u'{' && text.back() == u'}') {
    text = text.substr(1, kForm.size());
  }
  return text.size() == kForm.size() &&
         std::equal(text.begin(), text.end(), kForm.begin(),
                    [](char16_t one, char16_t x) { return (one == u'-') == (x == u'-'); });
}

/// Takes a URN's name off the front.
Notation takeNotation(std::u16string_view& text) {
  const wstring lower = lowerCaseOf(text);
  for (const auto& prefix : kPrefixes) {
    if (lower.compare(0, prefix.text.size(), prefix.text) != 0) continue;
    text.remove_prefix(prefix.text.size());
    return prefix.notation;
  }
  return hasFormOfUUID(text) ? Notation::kUUID : Notation::kOctets;
}

bool beginsAsLabel(const uint8* octets) {
  constexpr std::array<uint8, 4> kLabelStart = {0x06, 0x0e, 0x2b, 0x34};  // ST 298
  return std::equal(kLabelStart.begin(), kLabelStart.end(), octets);
}

/// What values of a type cannot be written as; empty for every notation that means one.
std::string mismatchOf(Identifiers::Identifier type, Notation notation) {
  const bool isUMID = type == Identifiers::kUMID32 || type == Identifiers::kUMID64;
  const bool mayBeLabel = type == Identifiers::kUniversalLabel || type == Identifiers::kAUID;
  const bool mayBeUUID = mayBeLabel || type == Identifiers::kUUID;
  if (notation == Notation::kLabel && !mayBeLabel) return "that is a universal label";
  if (notation == Notation::kUUID && !mayBeUUID) return "that is a UUID";
  if (notation == Notation::kUMID && !isUMID) return "that is a UMID";
  return "";
}

}  // namespace

bool readIdentifier(Identifiers::Identifier type, std::u16string_view text, uint8* octets, std::size_t size,
                    std::string& reason) {
  auto rest = trimmed(text);
  const auto notation = takeNotation(rest);
  const auto read = octetsInGroups(rest);
  reason = read && !read->empty() ? mismatchOf(type, notation) : "";
  if (reason.empty()) reason = octetFault(rest, size);
  if (!read || read->size() != size || !reason.empty()) return false;
  std::copy(read->begin(), read->end(), octets);
  if (notation != Notation::kUUID || type == Identifiers::kUUID) return true;
  if (beginsAsLabel(octets + size / 2)) std::rotate(octets, octets + size / 2, octets + size);
  if (type == Identifiers::kAUID || beginsAsLabel(octets)) return true;
  reason = "that is a UUID";
  return false;
}

wstring printReference(const SimpleDataType& value) { return static_cast<const Reference&>(value).toString(); }

}  // namespace Vantor::Types
