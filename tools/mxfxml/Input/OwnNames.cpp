#include "Input/OwnNames.h"

#include <algorithm>

#include "Core/Metadata/SetPath.h"

namespace Vantor::Tool {

namespace {

using MetaMetadata::Dictionary;

bool hasProperty(const Dictionary& dictionary, const std::string& set, const std::string& property) {
  const auto kinds = dictionary.findSetsByName(set);
  return std::any_of(kinds.begin(), kinds.end(),
                     [&](const auto* kind) { return kind->findAttribute(property) != nullptr; });
}

/// Whether any set of a step that is no name, such as an InstanceUID, can have the property.
bool hasPropertyInAnySet(const Dictionary& dictionary, const std::string& property) {
  return std::any_of(dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd(),
                     [&](const auto* kind) { return kind->findAttribute(property) != nullptr; });
}

bool isOwnProperty(const Dictionary& used, const Dictionary& own, const std::string& set, const std::string& property) {
  if (property.empty()) return false;
  if (!own.findSetsByName(set).empty()) return !hasProperty(used, set, property) && hasProperty(own, set, property);
  return !hasPropertyInAnySet(used, property) && hasPropertyInAnySet(own, property);
}

}  // namespace

std::string ownNameHint(const Dictionary& used, const Dictionary* own, const std::string& path,
                        const std::string& property) {
  const auto hint = [](const std::string& name) {
    return "; '" + name + "' is defined by the file's own dictionary: add --own-dictionary";
  };
  if (own == nullptr) return "";
  const SetPath steps(path);
  for (const auto& step : steps.steps()) {
    if (used.findSetsByName(step.name).empty() && !own->findSetsByName(step.name).empty()) return hint(step.name);
    for (const auto& selector : step.selectors) {
      if (isOwnProperty(used, *own, step.name, selector.property)) return hint(selector.property);
    }
  }
  return isOwnProperty(used, *own, steps.steps().back().name, property) ? hint(property) : "";
}

}  // namespace Vantor::Tool
