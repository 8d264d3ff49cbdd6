#include <algorithm>
#include <array>

#include "Core/Metadata/PropertyForm.h"
#include "Core/Platform/Numbers.h"
#include "Core/Types/DataStream.h"
#include "Core/Types/Text/NumberText.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/ValueText.h"

/// Values of an indirect type: an octet for the order of octets, the label of the type as an AUID in that order, then
/// the value. Texts and integers are written as such, all others as octets.
namespace Vantor {

namespace {

constexpr std::size_t kHeaderSize = 17;

enum class Order : uint8 { kBig = 0x42, kLittle = 0x4c };
enum class IndirectKind : uint8 { kText, kSigned, kUnsigned };

/// The labels of types (ST 2003) differ in three octets; an AUID has the halves of a label swapped.
struct IndirectType {
  std::array<uint8, 3> place;  // octets 10 to 12 of the label
  IndirectKind kind;
  std::size_t size;  // 0 for texts
};
constexpr IndirectType kText = {{0x10, 0x02, 0x00}, IndirectKind::kText, 0};
constexpr std::array kTypes = {kText,
                               IndirectType{{0x01, 0x01, 0x00}, IndirectKind::kUnsigned, 1},
                               IndirectType{{0x01, 0x02, 0x00}, IndirectKind::kUnsigned, 2},
                               IndirectType{{0x01, 0x03, 0x00}, IndirectKind::kUnsigned, 4},
                               IndirectType{{0x01, 0x04, 0x00}, IndirectKind::kUnsigned, 8},
                               IndirectType{{0x01, 0x05, 0x00}, IndirectKind::kSigned, 1},
                               IndirectType{{0x01, 0x06, 0x00}, IndirectKind::kSigned, 2},
                               IndirectType{{0x01, 0x07, 0x00}, IndirectKind::kSigned, 4},
                               IndirectType{{0x01, 0x08, 0x00}, IndirectKind::kSigned, 8}};

/// Reverses the octets of each of the numbers.
void swapNumbers(uint8* octets, std::size_t size, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) std::reverse(octets + i * size, octets + (i + 1) * size);
}

Bytes headerOf(Order order, const IndirectType& type) {
  Bytes header = {static_cast<uint8>(order), 0x01, 0, 0, 0, 0, 0, 0, 0, 0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01};
  std::copy(type.place.begin(), type.place.end(), header.begin() + 2);
  if (order == Order::kLittle) swapNumbers(header.data() + 1, 4, 1);
  return header;
}

/// What a value has before its octets.
struct Header {
  Order order = Order::kBig;
  IndirectType type = kText;
};

std::optional<Header> headerIn(const Types::SimpleDataType& value) {
  if (value.encodedSize() < kHeaderSize) return std::nullopt;
  for (const auto order : {Order::kBig, Order::kLittle}) {
    for (const auto& type : kTypes) {
      const auto header = headerOf(order, type);
      if (std::equal(header.begin(), header.end(), value.rawBuffer())) return Header{order, type};
    }
  }
  return std::nullopt;
}

/// The octets behind the header, in big-endian order.
Bytes contentOf(const Types::SimpleDataType& value, const Header& header) {
  Bytes content(value.rawBuffer() + kHeaderSize, value.rawBuffer() + value.encodedSize());
  const std::size_t size = header.type.kind == IndirectKind::kText ? sizeof(char16_t) : header.type.size;
  if (header.order == Order::kLittle) swapNumbers(content.data(), size, content.size() / size);
  return content;
}

auto_ptr<Types::SimpleDataType> valueOf(const Header& header, Bytes content) {
  Bytes octets = headerOf(header.order, header.type);
  const std::size_t size = header.type.kind == IndirectKind::kText ? sizeof(char16_t) : header.type.size;
  if (header.order == Order::kLittle) swapNumbers(content.data(), size, content.size() / size);
  octets.insert(octets.end(), content.begin(), content.end());
  return std::make_unique<Types::DataStream>(std::move(octets));
}

wstring textIn(const Bytes& content) {
  wstring text;
  for (std::size_t i = 0; i + 1 < content.size(); i += 2) {
    text += static_cast<char16_t>(content[i] << 8 | content[i + 1]);
  }
  return text;
}

std::size_t countFinalNULs(const wstring& text) {
  const auto last = text.find_last_not_of(u'\0');
  return last == wstring::npos ? text.size() : text.size() - last - 1;
}

std::optional<wstring> printText(const Bytes& content) {
  if (content.size() % 2 != 0) return std::nullopt;
  wstring text = textIn(content);
  text.resize(text.size() - countFinalNULs(text));
  auto quoted = Types::quotedText(text);
  wstring read;
  std::string reason;
  return Types::readString(quoted, 0xffff, read, reason) ? std::optional(std::move(quoted)) : std::nullopt;
}

std::optional<wstring> printInteger(const Bytes& content, const IndirectType& type) {
  if (content.size() != type.size) return std::nullopt;
  uint64 number = 0;
  for (const uint8 octet : content) number = number << 8 | octet;
  if (type.kind == IndirectKind::kUnsigned) return Platform::toDecimal(number);
  const auto unused = static_cast<int>(8 * (sizeof number - type.size));
  return Platform::toDecimal(static_cast<int64>(number << unused) >> unused);
}

/// The text of a value whose type is one of the table's; none for any other.
std::optional<wstring> printTyped(const Types::SimpleDataType& value) {
  const auto header = headerIn(value);
  if (!header) return std::nullopt;
  const auto content = contentOf(value, *header);
  return header->type.kind == IndirectKind::kText ? printText(content) : printInteger(content, header->type);
}

/// Octets are printed behind 0x, so that nothing reads them as a text.
std::optional<wstring> printIndirect(const PropertyPlace&, const Types::SimpleDataType& value) {
  if (value.encodedSize() == 0) return wstring(u"no octets");
  auto text = printTyped(value);
  return text ? std::move(text) : u"0x" + Types::printOctets(value);
}

Types::ParsedValue parseText(const Header& header, std::u16string_view text, std::size_t nulls) {
  wstring string;
  Types::ParsedValue parsed;
  if (!Types::readString(text, 0xffff, string, parsed.reason)) return parsed;
  string.append(nulls, u'\0');
  Bytes content;
  for (const char16_t unit : string) {
    content.push_back(static_cast<uint8>(unit >> 8));
    content.push_back(static_cast<uint8>(unit));
  }
  return valueOf(header, std::move(content));
}

/// Null for a number that the type does not have.
auto_ptr<Types::SimpleDataType> parseInteger(const Header& header, std::u16string_view text) {
  int64 number = 0;
  uint64 bits = 0;
  const bool isSigned = header.type.kind == IndirectKind::kSigned;
  if (!(isSigned ? Types::readWholeNumber(text, number) : Types::readWholeNumber(text, bits))) return nullptr;
  if (isSigned) bits = static_cast<uint64>(number);
  Bytes content;
  for (std::size_t i = header.type.size; i > 0; --i) content.push_back(static_cast<uint8>(bits >> 8 * (i - 1)));
  auto value = valueOf(header, std::move(content));
  return printTyped(*value) == wstring(text) ? std::move(value) : nullptr;
}

const Types::SimpleDataType* valueThere(const PropertyPlace& place) {
  const auto* element = place.set == nullptr ? nullptr : place.set->find(place.definition->key());
  return element == nullptr ? nullptr : element->wireValue();
}

bool isIndirect(const PropertyPlace& place, Types::Identifiers::Identifier) {
  return place.definition->symbol() == "IndirectValue";
}

TextNoun nounOfIndirect(const PropertyPlace& place) {
  const auto* before = valueThere(place);
  const auto header = before == nullptr ? std::nullopt : headerIn(*before);
  const bool isNumber = header && header->type.kind != IndirectKind::kText;
  return isNumber ? TextNoun{"a number of the type that is there", "25"} : TextNoun{"a text", "Weekly"};
}

/// Whether a text is the octets of a whole value: with a prefix, or with a header.
bool isOctets(std::u16string_view text) {
  const auto word = Types::trimmed(text);
  if (Types::hasHexPrefix(word) || word == u"no octets") return true;
  const auto octets = Types::octetsInGroups(word);
  return octets && octets->size() >= kHeaderSize && (octets->front() == 0x42 || octets->front() == 0x4c);
}

std::optional<Types::ParsedValue> parseIndirect(const PropertyPlace& place, Types::Identifiers::Identifier type,
                                                std::u16string_view text) {
  if (isOctets(text)) return Types::typeText(type)->parse(text);
  const auto* before = valueThere(place);
  const auto header = before == nullptr ? std::nullopt : headerIn(*before);
  if (!header) return parseText({}, text, 0);
  if (header->type.kind != IndirectKind::kText) return parseInteger(*header, Types::trimmed(text));
  return parseText(*header, text, countFinalNULs(textIn(contentOf(*before, *header))));
}

}  // namespace

const PropertyForm kIndirectForm = {isIndirect, nounOfIndirect, printIndirect, parseIndirect};

}  // namespace Vantor
