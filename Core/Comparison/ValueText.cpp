#include "Core/Comparison/ValueText.h"

#include <algorithm>

#include "Core/Metadata/UnreadValue.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Collection.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/ValueText.h"

namespace Vantor {

namespace {

constexpr std::size_t kMostOctets = 32;
constexpr std::size_t kMostUnits = 80;
constexpr uint32 kMostItems = 4;

std::string sizeText(std::size_t size, const char* unit) { return "... (" + std::to_string(size) + " " + unit + ")"; }

std::string quoted(const wstring& text) {
  std::size_t units = std::min(text.size(), kMostUnits);
  if (units < text.size() && text[units] >= 0xdc00 && text[units] < 0xe000) --units;  // no half of a character
  const std::string shown = Utils::wstringToString(Types::quotedText({text.data(), units}));
  return units == text.size() ? shown : shown + sizeText(text.size(), "code units");
}

std::string listText(const PropertyPlace& place, const Types::Collection& value) {
  const uint32 shown = std::min(value.size(), kMostItems);
  std::string text;
  for (uint32 i = 0; i < shown; ++i) text += (i == 0 ? "" : ", ") + valueText(place, value.at(i));
  if (shown < value.size()) text += sizeText(value.size(), "items");
  return "[" + text + "]";
}

}  // namespace

std::string valueText(const PropertyPlace& place, const Types::SimpleDataType& value) {
  const auto type = value.identifier();
  if (type == Types::Identifiers::kArray || type == Types::Identifiers::kBatch) {
    return listText(place, static_cast<const Types::Collection&>(value));
  }
  if (Types::isOctetType(type)) return octetsText(value.rawBuffer(), value.encodedSize());
  const bool isString = Types::isTextType(type) && type != Types::Identifiers::kUTF16;
  return isString ? quoted(Types::textOfValue(value)) : Utils::wstringToString(printItem(place, value));
}

std::string valueText(const Types::SimpleDataType& value) { return valueText({}, value); }

std::string valueText(const MetadataSet& set, const Element& element) {
  const auto* value = element.wireValue();
  if (value == nullptr) return "no value";
  if (element.metaAttribute().asUnknown() == nullptr) return valueText({&set, set.definitionOf(element)}, *value);
  const auto unread = unreadValueOf(set, element);
  return valueText({&set, unread.definition}, unread.value == nullptr ? *value : *unread.value);
}

std::string octetsText(const uint8* octets, std::size_t size) {
  if (size == 0) return "no octets";
  const auto text = Platform::hexText<std::string>(octets, std::min(size, kMostOctets));
  return size <= kMostOctets ? text : text + sizeText(size, "octets");
}

}  // namespace Vantor
