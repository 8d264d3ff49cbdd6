#include "Core/Metadata/PropertyText.h"

#include <array>

#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Collection.h"
#include "Core/Types/Text/ListText.h"
#include "Core/Types/Text/OctetText.h"

namespace Vantor {

namespace {

using Types::Identifiers::Identifier;

/// Null where the texts of the type are all.
const PropertyForm* formOf(const PropertyPlace& place, Identifier type) {
  static constexpr std::array kForms = {&kEnumerationForm, &kLabelForm,        &kTimecodeForm, &kAspectRatioForm,
                                        &kLanguageForm,    &kActiveFormatForm, &kIndirectForm, &kChunkForm};
  if (place.definition == nullptr) return nullptr;
  for (const auto* form : kForms) {
    if (form->applies(place, type)) return form;
  }
  return nullptr;
}

auto_ptr<Types::SimpleDataType> parseItem(const PropertyPlace& place, Identifier type, std::u16string_view text) {
  const auto* form = formOf(place, type);
  if (form == nullptr) return Types::parseValue(type, text);
  auto parsed = form->parse(place, type, text);
  if (!parsed) parsed = Types::typeText(type)->parse(text);
  if (parsed->value != nullptr) return std::move(parsed->value);
  const auto [noun, examples] = form->noun(place);
  Types::refuseText(text, noun, parsed->reason, parsed->hasExamples ? std::string() : examples);
}

bool isCollection(const Types::SimpleDataType& value) {
  return value.identifier() == Types::Identifiers::kArray || value.identifier() == Types::Identifiers::kBatch;
}

}  // namespace

wstring printItem(const PropertyPlace& place, const Types::SimpleDataType& item) {
  const auto* form = formOf(place, item.identifier());
  auto text = form == nullptr ? std::nullopt : form->print(place, item);
  return text ? std::move(*text) : Types::printValue(item);
}

wstring printProperty(const PropertyPlace& place, const Types::SimpleDataType& value) {
  if (!isCollection(value)) return printItem(place, value);
  return Types::printList(static_cast<const Types::Collection&>(value),
                          [&place](const auto& item) { return printItem(place, item); });
}

bool hasForm(const PropertyPlace& place, Identifier type) { return formOf(place, type) != nullptr; }

wstring printRawOctets(const Types::SimpleDataType& value) { return u"0x[" + Types::printOctets(value) + u"]"; }

auto_ptr<Types::SimpleDataType> parseProperty(const PropertyPlace& place, std::u16string_view text) {
  const auto* list = MetaMetadata::asCollection(*place.definition);
  if (list == nullptr) return parseItem(place, place.definition->dataType(), text);
  const auto type = list->dataSubType();
  const auto* form = formOf(place, type);
  return Types::parseList(
      list->dataType(), type, text, [&](auto item) { return parseItem(place, type, item); },
      form == nullptr ? std::string() : form->noun(place).examples);
}

}  // namespace Vantor
