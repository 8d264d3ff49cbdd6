#include "Report/UnreadText.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/Comparison/ValueText.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/UnreadValue.h"
#include "Terminal/ErrorText.h"
#include "Terminal/TextTable.h"

namespace Vantor::Tool {

namespace {

struct UnreadKind {
  std::string property;
  std::string reason;
  std::string value;  // in the first set
  std::size_t count;
  bool isOneValue;
};

std::string unreadNameOf(const UnreadValue& unread, const PartitionDictionary& tags) {
  if (unread.definition != nullptr) return unread.set->name() + "." + unread.definition->symbol();
  return unread.set->name() + ": " + propertyName(*unread.element, tags);
}

UnreadKind kindOf(const UnreadValue& unread, const PartitionDictionary& tags) {
  return {unreadNameOf(unread, tags), unread.reason, valueText(*unread.set, *unread.element), 1, true};
}

void enter(UnreadKind kind, std::vector<UnreadKind>& kinds, std::unordered_map<std::string, std::size_t>& places) {
  const auto [at, isNew] = places.emplace(kind.property + "\n" + kind.reason, kinds.size());
  if (isNew) {
    kinds.push_back(std::move(kind));
    return;
  }
  auto& known = kinds[at->second];
  ++known.count;
  known.isOneValue = known.isOneValue && known.value == kind.value;
}

/// Those that were not read for one reason.
std::vector<UnreadValue> unreadFor(const PartitionMetadata& metadata, Unread why) {
  auto values = unreadValues(metadata);
  const auto isOther = [why](const auto& unread) {
    return (unread.definition == nullptr) != (why == Unread::kUnknown);
  };
  values.erase(std::remove_if(values.begin(), values.end(), isOther), values.end());
  return values;
}

}  // namespace

std::string listOfUnread(const PartitionMetadata& metadata, Unread why) {
  std::vector<UnreadKind> kinds;
  std::unordered_map<std::string, std::size_t> places;
  for (const auto& unread : unreadFor(metadata, why)) {
    enter(kindOf(unread, metadata.partitionDictionary()), kinds, places);
  }
  TextTable table(
      {TextTable::Align::kRight, TextTable::Align::kLeft, TextTable::Align::kLeft, TextTable::Align::kLeft});
  for (const auto& kind : kinds) {
    const std::string value = kind.isOneValue ? kind.value : kind.value + " and others";
    table.addRow({std::to_string(kind.count), kind.property, kind.reason, oneLine(value)});
  }
  return table.text();
}

std::vector<std::string> unreadNames(const PartitionMetadata& metadata, Unread why) {
  std::vector<std::string> names;
  std::unordered_set<std::string> known;
  for (const auto& unread : unreadFor(metadata, why)) {
    auto name = unreadNameOf(unread, metadata.partitionDictionary());
    if (known.insert(name).second) names.push_back(std::move(name));
  }
  return names;
}

}  // namespace Vantor::Tool
