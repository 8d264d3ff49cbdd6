#include "Core/Metadata/PropertyLine.h"

#include "Core/Metadata/UnreadValue.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/ValueText.h"

namespace Vantor {

namespace {

bool needsQuotes(std::u16string_view text) {
  constexpr std::u16string_view kOctets = u"0x[";
  if (text.empty()) return false;
  if (text.front() == u'"' || Types::trimmed(text).substr(0, kOctets.size()) == kOctets) return true;
  std::size_t escaped = 2;  // the quotes
  for (const char16_t unit : text) escaped += unit == u'"' || unit == u'\\' ? 2 : 1;
  return Types::quotedText(text).size() != escaped;
}

wstring textLine(const Types::SimpleDataType& value, wstring printed) {
  const auto text = Types::textOfValue(value);
  if (text.find(u'\0') != wstring::npos) return printRawOctets(value);
  return needsQuotes(text) ? Types::quotedText(text) : printed;
}

}  // namespace

wstring printLine(const PropertyPlace& place, const Types::SimpleDataType& value) {
  auto printed = printProperty(place, value);
  const bool isText = Types::isTextType(value.identifier()) && value.identifier() != Types::Identifiers::kUTF16;
  return isText ? textLine(value, std::move(printed)) : printed;
}

HeldProperty heldProperty(const MetadataSet& set, std::string_view property) {
  if (const auto* element = set.find(property)) {
    if (element->isPresent()) return {element->metaAttribute().metaElement(), element};
  }
  static_cast<void>(set.namesOf(property));  // refuses a name of none
  const auto* attribute = set.definition() == nullptr ? nullptr : set.definition()->findAttribute(property);
  const auto* definition =
      attribute == nullptr ? set.find(property)->metaAttribute().metaElement() : attribute->metaElement();
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    const bool isUnread = (*at).metaAttribute().asUnknown() != nullptr && set.definitionOf(*at) == definition;
    if (isUnread) return {definition, &*at};
  }
  return {definition, nullptr};
}

std::optional<wstring> lineOf(const MetadataSet& set, const HeldProperty& property) {
  const auto* value = property.element == nullptr ? nullptr : property.element->wireValue();
  if (value == nullptr) return std::nullopt;
  const PropertyPlace place = {&set, property.definition};
  if (property.element->metaAttribute().asUnknown() == nullptr) return printLine(place, *value);
  const auto decoded = unreadValueOf(set, *property.element).value;
  return decoded == nullptr ? printRawOctets(*value) : printLine(place, *decoded);
}

}  // namespace Vantor
