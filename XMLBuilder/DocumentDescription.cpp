#include "XMLBuilder/DocumentDescription.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include "Core/DataIO/BigEndian.h"
#include "Core/KLV/IdentifierText.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"

namespace Vantor::XMLBuilder {

namespace {

using LosslessXML::Description;

constexpr std::u16string_view kBlanks = u" \t\n\r";

/// Values by the names of their pseudo-attributes.
using Attributes = std::map<wstring, wstring, std::less<>>;

bool isPartitionName(const std::string& name) {
  if (name == "header" || name == "footer") return true;
  uint32 number = 0;
  const char* const end = name.data() + name.size();
  const auto [stop, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && stop == end;
}

std::optional<uint64> digestFrom(const wstring& text) {
  const auto octets = Platform::bytesFromHex(text);
  if (!octets || octets->size() != sizeof(uint64)) return std::nullopt;
  return DataIO::readBigEndian<uint64>(octets->data());
}

void append(wstring& data, std::u16string_view name, std::u16string_view value) {
  if (!data.empty()) data += u' ';
  data.append(name).append(u"=\"").append(value) += u'"';
}

bool isNameUnit(char16_t unit) {
  return unit > u' ' && unit != u'=' && unit != u'"' && unit != u'\'' && unit != u'<' && unit != u'&';
}

/// Splits `name="value"` pairs; none unless all of the data is such pairs, with blanks between them and no name twice.
std::optional<Attributes> split(std::u16string_view data) {
  Attributes attributes;
  const auto skipBlanks = [&data] {
    const auto begin = std::min(data.find_first_not_of(kBlanks), data.size());
    data.remove_prefix(begin);
    return begin != 0;
  };
  skipBlanks();
  while (!data.empty()) {
    const auto nameEnd = std::find_if_not(data.begin(), data.end(), isNameUnit) - data.begin();
    const wstring name(data.substr(0, static_cast<std::size_t>(nameEnd)));
    data.remove_prefix(name.size());
    skipBlanks();
    if (name.empty() || data.empty() || data.front() != u'=') return std::nullopt;
    data.remove_prefix(1);
    skipBlanks();
    if (data.empty() || (data.front() != u'"' && data.front() != u'\'')) return std::nullopt;
    const auto end = data.find(data.front(), 1);
    if (end == std::u16string_view::npos) return std::nullopt;
    if (!attributes.emplace(name, data.substr(1, end - 1)).second) return std::nullopt;
    data.remove_prefix(end + 1);
    if (!skipBlanks() && !data.empty()) return std::nullopt;
  }
  return attributes;
}

/// Which of two words an attribute holds: true for the first; none for anything else.
std::optional<bool> choice(const Attributes& attributes, std::u16string_view name, std::u16string_view first,
                           std::u16string_view second) {
  const auto found = attributes.find(name);
  if (found == attributes.end() || (found->second != first && found->second != second)) return std::nullopt;
  return found->second == first;
}

}  // namespace

wstring renderDescription(const Description& description) {
  if (!isPartitionName(description.partition)) {
    Exceptions::raise<Exceptions::InvalidFormat>(
        "'{}' names no partition: expected 'header', 'footer' or a number from 0", description.partition);
  }
  wstring data;
  append(data, u"form", description.isNested ? u"nested" : u"flat");
  append(data, u"sets", description.isStructuralOnly ? u"structural" : u"all");
  if (description.start) append(data, u"start", description.start->toString(kUrnForm));
  append(data, u"partition", Platform::stringToWstring(description.partition));
  append(data, u"vocabulary", description.vocabulary == MetaMetadata::Vocabulary::kLegacy ? u"legacy" : u"st434-2014");
  append(data, u"metadata", Platform::hexNumber<wstring>(description.digest));
  return data;
}

std::optional<Description> parseDescription(const wstring& data) {
  const auto attributes = split(data);
  if (!attributes) return std::nullopt;
  const auto isNested = choice(*attributes, u"form", u"nested", u"flat");
  const auto isStructuralOnly = choice(*attributes, u"sets", u"structural", u"all");
  const auto isLegacy = choice(*attributes, u"vocabulary", u"legacy", u"st434-2014");
  const auto partition = attributes->find(u"partition");
  const auto metadata = attributes->find(u"metadata");
  const auto start = attributes->find(u"start");
  if (!isNested || !isStructuralOnly || !isLegacy || partition == attributes->end() || metadata == attributes->end()) {
    return std::nullopt;
  }

  Description description{*isNested, *isStructuralOnly};
  if (start != attributes->end()) {
    std::array<uint8, Types::UUID::kSize> octets{};
    if (!KLV::parseUuidUrn(start->second, octets.data())) return std::nullopt;
    description.start = Types::UUID(octets);
  }
  description.partition = Utils::wstringToString(partition->second);
  description.vocabulary = *isLegacy ? MetaMetadata::Vocabulary::kLegacy : MetaMetadata::Vocabulary::kST434_2014;
  const auto digest = digestFrom(metadata->second);
  if (!digest || !isPartitionName(description.partition)) return std::nullopt;
  description.digest = *digest;
  return description;
}

}  // namespace Vantor::XMLBuilder
