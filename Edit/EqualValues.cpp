#include "Edit/EqualValues.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "Core/Comparison/ValueText.h"
#include "Edit/EditedSets.h"

namespace Vantor::Edit {

namespace {

using MetaMetadata::MetaElement;

/// Whether an equal value elsewhere may mean the same.
bool isTelling(const Types::SimpleDataType& value) {
  using namespace Types::Identifiers;
  constexpr Identifier kTelling[] = {kUTF16String, kUTF8String, kISO7String, kISO8String,
                                     kPosition,    kLength,     kRational,   kTimestamp};
  return std::find(std::begin(kTelling), std::end(kTelling), value.identifier()) != std::end(kTelling);
}

struct OldValue {
  const Types::SimpleDataType* value;
  EqualValue found;
};
using OldValues = std::unordered_map<const MetaElement*, std::vector<OldValue>>;

OldValues oldValuesOf(const std::vector<EditedSet>& edited) {
  OldValues old;
  for (const auto& set : edited) {
    for (const auto& [before, after] : set.properties) {
      const auto* value = before == nullptr || after == nullptr ? nullptr : before->wireValue();
      const auto* definition = value == nullptr ? nullptr : before->metaAttribute().metaElement();
      if (definition == nullptr || !isTelling(*value)) continue;
      auto& values = old[definition];
      const bool isKnown =
          std::any_of(values.begin(), values.end(), [&](const OldValue& one) { return one.value->equals(*value); });
      if (!isKnown)
        values.push_back({value,
                          {definition->symbol(),
                           valueText(*set.before, *before),
                           {},
                           std::string(set.before->otherNameOf(definition->symbol()))}});
    }
  }
  return old;
}

/// The properties that the edit has given a value.
std::unordered_set<const Element*> editedProperties(const std::vector<EditedSet>& edited) {
  std::unordered_set<const Element*> properties;
  for (const auto& set : edited) {
    for (const auto& [before, after] : set.properties) properties.insert(after);
  }
  return properties;
}

void enterHolders(const MetadataSet& set, const std::unordered_set<const Element*>& edited, OldValues& old) {
  for (const Element& element : set) {
    const auto values = old.find(element.metaAttribute().metaElement());
    if (values == old.end() || element.wireValue() == nullptr || edited.count(&element) != 0) continue;
    for (auto& one : values->second) {
      if (one.value->equals(*element.wireValue())) one.found.sets.push_back(set.fullName());
    }
  }
}

}  // namespace

std::vector<EqualValue> equalValuesOf(const PartitionMetadata& before, PartitionMetadata& after) {
  const auto edited = editedSets(before, after);
  auto old = oldValuesOf(edited);
  std::vector<EqualValue> found;
  if (old.empty()) return found;
  const auto properties = editedProperties(edited);
  for (const MetadataSet* set : after.sets()) enterHolders(*set, properties, old);
  for (auto& [definition, values] : old) {
    for (auto& one : values) {
      if (!one.found.sets.empty()) found.push_back(std::move(one.found));
    }
  }
  std::sort(found.begin(), found.end(), [](const EqualValue& left, const EqualValue& right) {
    return std::tie(left.property, left.value) < std::tie(right.property, right.value);
  });
  return found;
}

}  // namespace Vantor::Edit
