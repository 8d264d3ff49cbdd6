#include "Core/Metadata/NameSuggestions.h"

#include <algorithm>
#include <unordered_map>

#include "Core/MetaMetadata/OtherNames.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/NearestName.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

/// Names to compare with, and what is shown for each.
class Candidates {
 public:
  template <class Definition>
  void add(const Definition& definition, std::string_view commonName, const std::string& shown) {
    if (!shown_.emplace(definition.symbol(), shown).second) return;
    names_.push_back(definition.symbol());
    add(Utils::wstringToString(definition.extensionAttribute(MetaMetadata::kTagName)), shown);
    add(std::string(commonName), shown);
  }

  std::string suggestion(std::string_view name) const {
    std::vector<std::string> found;
    for (const auto symbol : MetaMetadata::symbolsMeantBy(name)) addShown(std::string(symbol), found);
    if (!found.empty()) return Platform::suggestionOf(found);
    for (const auto& near : Platform::nearestNames(name, names_, 3 * Platform::kMostNearNames)) addShown(near, found);
    return Platform::suggestionOf(found);
  }

 private:
  void add(const std::string& name, const std::string& shown) {
    if (!name.empty() && shown_.emplace(name, shown).second) names_.push_back(name);
  }

  void addShown(const std::string& name, std::vector<std::string>& found) const {
    const auto shown = shown_.find(name);
    if (shown == shown_.end() || found.size() == Platform::kMostNearNames) return;
    if (std::find(found.begin(), found.end(), shown->second) == found.end()) found.push_back(shown->second);
  }

  std::vector<std::string> names_;
  std::unordered_map<std::string, std::string> shown_;
};

void add(const MetaMetadata::MetaMetadataSet& set, Candidates& candidates) {
  candidates.add(set, set.commonName(), MetaMetadata::namesOf(set));
}

}  // namespace

std::string suggestSet(const PartitionMetadata& partition, std::string_view name) {
  Candidates candidates;
  for (const auto* set : partition.sets()) {
    if (set->definition() != nullptr) add(*set->definition(), candidates);
  }
  const auto& dictionary = *partition.partitionDictionary().dictionary();
  for (auto set = dictionary.metaMetadataSetBegin(); set != dictionary.metaMetadataSetEnd(); ++set) {
    add(**set, candidates);
  }
  return candidates.suggestion(name);
}

std::string suggestProperty(const std::vector<const MetaMetadata::MetaMetadataSet*>& sets, std::string_view name) {
  Candidates candidates;
  for (const auto* set : sets) {
    for (const auto& attribute : set->attributes()) {
      const auto& element = *attribute.metaElement();
      candidates.add(element, set->commonNameOf(element), MetaMetadata::namesOf(*set, element));
    }
  }
  return candidates.suggestion(name);
}

}  // namespace Vantor
