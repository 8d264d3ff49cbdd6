#include "Summary/Values.h"

#include <algorithm>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/Enumeration.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PropertyText.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/Text/TypeText.h"

namespace Vantor::Summary {

namespace {

Label labelWithNames(const MetadataSet& set, const Types::UniversalLabel& key) {
  if (const auto* names = set.definition()->dictionary().labels().find(key)) {
    return {key, std::string(names->symbol), std::string(names->name)};
  }
  // The same label in another version of the register.
  const auto* names = builtInLabels().findLabel(key);
  if (names == nullptr) return {key, {}, {}};
  return {key, std::string(names->symbol), std::string(names->name)};
}

std::optional<std::string> unlessEmpty(std::string text) {
  return text.empty() ? std::nullopt : std::optional<std::string>(std::move(text));
}

using MetaMetadata::MetaElement;

/// Appends the text of octets without NULs; false when they are none.
bool appendText(const MetaElement& definition, const uint8* octets, std::size_t size, std::string& text) {
  if (size == 0) return true;
  const auto value = decodeValue(definition, octets, size);
  if (value != nullptr) text += Utils::wstringToString(Types::printValue(*value));
  return value != nullptr;
}

/// The text of octets among which NULs stand; none when another part of them is no text.
std::optional<std::string> textBetweenNULs(const MetaElement& definition, const uint8* octets, std::size_t size) {
  const std::size_t unit = definition.dataType() == Types::Identifiers::kUTF16String ? 2 : 1;
  std::string text;
  std::size_t begin = 0;
  for (std::size_t at = 0; at + unit <= size; at += unit) {
    if (std::any_of(octets + at, octets + at + unit, [](uint8 octet) { return octet != 0; })) continue;
    if (!appendText(definition, octets + begin, at - begin, text)) return std::nullopt;
    text += '\0';
    begin = at + unit;
  }
  if (!appendText(definition, octets + begin, size - begin, text)) return std::nullopt;
  text.erase(text.find_last_not_of('\0') + 1);
  return unlessEmpty(std::move(text));
}

/// Of a property that was read as octets.
std::optional<std::string> textWithNULs(const MetadataSet& set, std::string_view property) {
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    const auto* definition = set.definitionOf(*at);
    const auto* value = (*at).wireValue();
    const bool isWanted = definition != nullptr && definition->symbol() == property;
    if (!isWanted || value == nullptr || !Types::isTextType(definition->dataType())) continue;
    return textBetweenNULs(*definition, value->rawBuffer(), value->encodedSize());
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> textIn(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf(set, property);
  if (value == nullptr) return textWithNULs(set, property);
  if (!Types::isTextType(value->identifier())) return std::nullopt;
  return unlessEmpty(Utils::wstringToString(Types::printValue(*value)));
}

std::optional<std::string> printedIn(const MetadataSet& set, std::string_view property) {
  const auto* element = set.find(property);
  const auto* value = valueOf(set, property);
  if (value == nullptr) return std::nullopt;
  return unlessEmpty(Utils::wstringToString(printProperty({&set, set.definitionOf(*element)}, *value)));
}

std::optional<uint32> numberIn(const MetadataSet& set, std::string_view property) {
  const auto number = integerOf(set, property);
  if (!number || *number < 0 || *number > 0xffffffff) return std::nullopt;
  return static_cast<uint32>(*number);
}

std::optional<Ratio> ratioIn(const MetadataSet& set, std::string_view property) {
  const auto ratio = givenRatioIn(set, property);
  return ratio && ratio->isPositive() ? ratio : std::nullopt;
}

std::optional<Ratio> givenRatioIn(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf<Types::Rational>(set, property);
  if (value == nullptr) return std::nullopt;
  return Ratio{value->numerator(), value->denominator()};
}

std::optional<Types::Timestamp> dateIn(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf<Types::Timestamp>(set, property);
  if (value == nullptr || value->equals(Types::Timestamp())) return std::nullopt;
  return *value;
}

std::optional<std::string> nameIn(const MetadataSet& set, std::string_view property) {
  const auto number = integerOf(set, property);
  const auto* definition = number ? set.definitionOf(*set.find(property)) : nullptr;
  if (!number || definition == nullptr || definition->enumeration() == nullptr) return std::nullopt;
  return unlessEmpty(std::string(definition->enumeration()->nameOf(*number)));
}

std::optional<Label> labelIn(const MetadataSet& set, std::string_view property) {
  const auto key = labelOf(set, property);
  if (!key || *key == Types::UniversalLabel()) return std::nullopt;
  return labelWithNames(set, *key);
}

std::vector<Label> labelsIn(const MetadataSet& set, std::string_view property) {
  std::vector<Label> labels;
  for (const auto& key : labelsOf(set, property)) labels.push_back(labelWithNames(set, key));
  return labels;
}

bool isKind(const MetadataSet& set, std::string_view symbol) {
  for (const auto* kind = set.definition(); kind != nullptr; kind = kind->parent()) {
    if (kind->symbol() == symbol) return true;
  }
  return false;
}

std::vector<const MetadataSet*> targetsIn(const PartitionMetadata& metadata, const MetadataSet& set,
                                          std::string_view property) {
  std::vector<const MetadataSet*> targets;
  std::vector<Types::UUID> identifiers;
  if (const auto* element = set.find(property)) element->appendTargets(ReferenceKinds{true}, identifiers);
  for (const auto& identifier : identifiers) {
    const auto& found = metadata.findByInstanceUID(identifier);
    if (!found.empty()) targets.push_back(found.front());
  }
  return targets;
}

const MetadataSet* targetIn(const PartitionMetadata& metadata, const MetadataSet& set, std::string_view property) {
  const auto targets = targetsIn(metadata, set, property);
  return targets.empty() ? nullptr : targets.front();
}

}  // namespace Vantor::Summary
