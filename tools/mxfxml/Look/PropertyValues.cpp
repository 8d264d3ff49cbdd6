#include "Look/PropertyValues.h"

#include <algorithm>
#include <cctype>

#include "Core/Metadata/NameSuggestions.h"
#include "Core/Metadata/SetChoice.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "JSON/PropertyValue.h"

namespace Vantor::Tool {

namespace {

using Exceptions::InvalidFormat;
using Kinds = std::vector<const MetaMetadata::MetaMetadataSet*>;

/// Kinds with those that inherit from them, which abstract ones stand for.
Kinds withHeirs(const Kinds& kinds, const MetaMetadata::Dictionary& dictionary) {
  Kinds all;
  for (auto at = dictionary.metaMetadataSetBegin(); at != dictionary.metaMetadataSetEnd(); ++at) {
    const auto inherits = [at](const auto* kind) { return (*at)->isOrInherits(*kind); };
    if (std::any_of(kinds.begin(), kinds.end(), inherits)) all.push_back(*at);
  }
  return all;
}

/// Of sets that the partition does not have: refuses a name that is no property of theirs.
void requireProperty(const PartitionMetadata& metadata, const SetPath& path, const std::string& property) {
  const auto& dictionary = *metadata.partitionDictionary().dictionary();
  const auto named = dictionary.findSetsByName(path.steps().back().name);
  const auto kinds = withHeirs(named, dictionary);
  const auto hasProperty = [&](const auto* kind) { return kind->findAttribute(property) != nullptr; };
  if (kinds.empty() || std::any_of(kinds.begin(), kinds.end(), hasProperty)) return;
  Exceptions::raise<InvalidFormat>("{} has no property '{}'{}", named.front()->symbol(), property,
                                   suggestProperty(named, property));
}

std::string whyNoSets(const PartitionMetadata& metadata, const SetPath& path, const std::string& property,
                      const SetChoice& choice) {
  try {
    choice.raiseNotFound();
  } catch (const InvalidFormat& error) {
    if (choice.isMistaken()) throw;
    requireProperty(metadata, path, property);
    return error.message();
  }
}

std::string whyNoValues(const PropertyPath& path, const SetChoice& choice) {
  const auto count = choice.sets().size();
  const std::string sets =
      count == 1 ? "the set does not have it" : "none of " + std::to_string(count) + " sets has it";
  return "there is no " + path.choice + ": " + sets;
}

void addValue(const MetadataSet& set, const std::string& property, std::vector<PropertyValue>& values) {
  const auto held = heldProperty(set, property);
  if (const auto line = lineOf(set, held)) values.push_back({&set, held, Utils::wstringToString(*line)});
}

bool areEqual(const std::vector<PropertyValue>& values) {
  return std::all_of(values.begin(), values.end(), [&](const auto& one) { return one.text == values.front().text; });
}

/// "[MCATagSymbol=chC]" for a label of sound; empty for other sets, and for a symbol that a path would need quotes for.
std::string placeInLayout(const MetadataSet& set) {
  const auto* symbol = set.definition()->findAttribute("MCATagSymbol") == nullptr ? nullptr : set.find("MCATagSymbol");
  if (symbol == nullptr || symbol->wireValue() == nullptr) return "";
  const auto text = Utils::wstringToString(set.text("MCATagSymbol"));
  const auto isPlain = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_' || c == '-'; };
  return !text.empty() && std::all_of(text.begin(), text.end(), isPlain) ? "[MCATagSymbol=" + text + "]" : "";
}

}  // namespace

std::string ExactPaths::pathOf(const MetadataSet& set) const {
  const auto& paths = pathsOf(*set.definition());
  const auto found = paths.find(&set);
  if (found != paths.end()) return found->second;
  return set.instanceUID() == nullptr ? set.name() : set.instanceUID()->dottedText();
}

const ExactPaths::Paths& ExactPaths::pathsOf(const MetaMetadata::MetaMetadataSet& kind) const {
  const auto [found, isNew] = paths_.try_emplace(&kind);
  if (!isNew) return found->second;
  std::unordered_map<std::string, std::vector<const MetadataSet*>> byName;
  std::size_t count = 0;
  for (const auto& set : metadata_.findAll(kind.symbol())) {
    ++count;
    const auto place = placeInLayout(set);
    if (place.empty()) found->second.emplace(&set, set.name() + "[" + std::to_string(count) + "]");
    if (!place.empty()) byName[set.name() + place].push_back(&set);
  }
  if (count == 1 && byName.empty()) found->second.begin()->second = found->second.begin()->first->name();
  for (const auto& [name, sets] : byName) {
    for (std::size_t i = 0; i < sets.size(); ++i) {
      found->second.emplace(sets[i], name + (sets.size() == 1 ? "" : "[" + std::to_string(i + 1) + "]"));
    }
  }
  return found->second;
}

PropertyValues valuesOf(const PartitionMetadata& metadata, const PropertyPath& path) {
  const SetPath sets(path.set);
  const SetChoice choice(metadata, sets, path.property);
  PropertyValues found;
  found.isOne = !sets.isForAll();
  for (const auto* set : choice.sets()) addValue(*set, path.property, found.values);
  if (choice.sets().empty()) {
    found.whyNone = whyNoSets(metadata, sets, path.property, choice);
  } else if (found.values.empty()) {
    found.whyNone = whyNoValues(path, choice);
  }
  if (found.isOne && !areEqual(found.values)) choice.raiseAmbiguous(SetChoice::Taken::kSeveral);
  return found;
}

JSON::Value jsonOf(const PropertyValue& value, const ExactPaths& paths) {
  auto json = JSON::Value::object().add("path", paths.pathOf(*value.set)).add("set", value.set->name());
  if (const auto* uid = value.set->instanceUID()) json.add("instanceUID", uid->dottedText());
  json.add("property", value.property.definition->symbol());
  return json.add("value", JSON::valueOf(*value.set, *value.property.element)).add("text", value.text);
}

}  // namespace Vantor::Tool
