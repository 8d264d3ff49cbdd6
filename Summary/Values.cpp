#include "Summary/Values.h"

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/Enumeration.h"
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

}  // namespace

std::optional<std::string> textIn(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf(set, property);
  if (value == nullptr || !Types::isTextType(value->identifier())) return std::nullopt;
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
  const auto* value = valueOf<Types::Rational>(set, property);
  if (value == nullptr || value->numerator() <= 0 || value->denominator() <= 0) return std::nullopt;
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
