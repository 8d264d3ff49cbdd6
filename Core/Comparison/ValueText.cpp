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

constexpr std::size_t kMostOctets = 200;
constexpr std::size_t kMostUnits = 400;
constexpr std::size_t kMostInList = 400;

std::string sizeText(std::size_t size, const char* unit) { return "... (" + std::to_string(size) + " " + unit + ")"; }

std::string quotedBeginning(const wstring& text) {
  std::size_t units = std::min(text.size(), kMostUnits);
  if (units < text.size() && text[units] >= 0xdc00 && text[units] < 0xe000) --units;  // no half of a character
  const std::string shown = Utils::wstringToString(Types::quotedText({text.data(), units}));
  return units == text.size() ? shown : shown + sizeText(text.size(), "code units");
}

/// Of the text of a form.
std::string shortened(const wstring& text) {
  if (text.size() <= kMostUnits) return Utils::wstringToString(text);
  auto rest = std::u16string_view(text);
  wstring inner;
  if (Types::takeQuoted(rest, inner) && rest.empty()) return quotedBeginning(inner);
  return Utils::wstringToString(text.substr(0, kMostUnits)) + sizeText(text.size(), "characters");
}

std::string listText(const PropertyPlace& place, const Types::Collection& value) {
  std::string text;
  for (uint32 i = 0; i < value.size(); ++i) {
    const std::string item = valueText(place, value.at(i));
    if (i != 0 && text.size() + item.size() > kMostInList) return "[" + text + sizeText(value.size(), "items") + "]";
    text += (i == 0 ? "" : ", ") + item;
  }
  return "[" + text + "]";
}

}  // namespace

std::string valueText(const PropertyPlace& place, const Types::SimpleDataType& value) {
  const auto type = value.identifier();
  if (type == Types::Identifiers::kArray || type == Types::Identifiers::kBatch) {
    return listText(place, static_cast<const Types::Collection&>(value));
  }
  const bool isString = Types::isTextType(type) && type != Types::Identifiers::kUTF16;
  if (isString) return quotedBeginning(Types::textOfValue(value));
  if (hasForm(place, type)) return shortened(printItem(place, value));
  if (Types::isOctetType(type)) return octetsText(value.rawBuffer(), value.encodedSize());
  return Utils::wstringToString(Types::printValue(value));
}

std::string valueText(const Types::SimpleDataType& value) { return valueText({}, value); }

std::string valueText(const MetadataSet& set, const Element& element) {
  const auto* value = element.wireValue();
  if (value == nullptr) return "no value";
  if (element.metaAttribute().asUnknown() == nullptr) return valueText({&set, set.definitionOf(element)}, *value);
  const auto unread = unreadValueOf(set, element);
  if (unread.value != nullptr) return valueText({&set, unread.definition}, *unread.value);
  const bool isRaw = unread.definition != nullptr && value->encodedSize() != 0;
  return isRaw ? shortened(printRawOctets(*value)) : valueText(*value);
}

std::string octetsText(const uint8* octets, std::size_t size) {
  if (size == 0) return "no octets";
  const auto text = Platform::hexText<std::string>(octets, std::min(size, kMostOctets));
  return size <= kMostOctets ? text : text + sizeText(size, "octets");
}

}  // namespace Vantor
