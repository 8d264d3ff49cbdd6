#include "Core/Dictionary/DefinitionCheck.h"

#include <set>
#include <unordered_map>
#include <utility>

#include "Core/Dictionary/DefinitionIndex.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

using Types::Identifiers::kNone;

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }
std::string asText(std::u16string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

void DefinitionCheck::run() {
  checkEnumerations();
  completeTypes();
  checkParents();
  checkPropertiesOfSets();
  checkSetNames();
  checkPropertyNames(MetaMetadata::Vocabulary::kLegacy);
  checkPropertyNames(MetaMetadata::Vocabulary::kST434_2014);
}

void DefinitionCheck::checkEnumerations() const {
  for (const auto& enumeration : of_.enumerations_) {
    std::set<int64> numbers;
    std::set<std::string_view> names;
    for (const auto& value : enumeration.values) {
      if (numbers.insert(value.number).second && names.insert(value.name).second) continue;
      refuse(value.origin,
             std::string(enumeration.name) + " has the number " + std::to_string(value.number) + " or the name " +
                 quoted(value.name) + " already; give each number and each name once",
             __LINE__);
    }
  }
}

void DefinitionCheck::completeTypes() const {
  for (auto& property : of_.properties_) {
    if (!property.type.enumeration.empty()) {
      const auto* enumeration = of_.findEnumeration(property.type.enumeration);
      if (enumeration == nullptr) {
        refuse(property.origin,
               quoted(property.type.enumeration) + " is neither a type nor an enumeration; write a type's name, or " +
                   "define it: enum " + std::string(property.type.enumeration) + " UInt8",
               __LINE__);
      }
      property.type.value = enumeration->base;
    }
    checkTarget(property);
  }
}

void DefinitionCheck::checkTarget(const PropertyDefinition& property) const {
  if (property.type.target.empty() || of_.findSet(property.type.target) != nullptr) return;
  refuse(property.origin,
         std::string(property.symbol) + " refers to the set " + std::string(property.type.target) +
             ", which is not defined; define it, or leave out what the reference is to",
         __LINE__);
}

void DefinitionCheck::checkParents() const {
  // Each round of sets that are followed upwards together has a number; a set that is met again in its own round
  // inherits from itself, one of an earlier round is known to end.
  Templates::vector<uint32> rounds(of_.sets_.size(), 0);
  for (uint32 start = 0; start < of_.sets_.size(); ++start) {
    for (uint32 at = start; rounds[at] == 0;) {
      rounds[at] = start + 1;
      const auto& set = of_.sets_[at];
      if (set.parent.empty()) break;
      const uint32 parent = of_.index_->findSet(of_, set.parent);
      if (parent == Definitions::Index::kNotFound) {
        refuse(set.origin,
               std::string(set.symbol) + " inherits from " + quoted(set.parent) +
                   ", which is not defined; name a set of this or another file, or '-'",
               __LINE__);
      }
      if (rounds[parent] == start + 1) {
        refuse(set.origin,
               std::string(set.symbol) + " inherits from itself, by way of " + std::string(set.parent) +
                   "; let one of them inherit from another set",
               __LINE__);
      }
      at = parent;
    }
  }
}

void DefinitionCheck::checkPropertiesOfSets() const {
  for (const auto& set : of_.sets_) {
    std::unordered_map<uint32, const PropertyUse*> byProperty;
    std::unordered_map<uint16, const PropertyUse*> byTag;
    for (const auto* from = &set; from != nullptr; from = from->parent.empty() ? nullptr : of_.findSet(from->parent)) {
      for (const auto& use : from->properties) {
        const auto& symbol = of_.properties_[use.property].symbol;
        const auto property = byProperty.emplace(use.property, &use);
        if (!property.second && from == &set) {
          refuse(use.origin,
                 std::string(set.symbol) + " has the property " + std::string(symbol) + " already; take this row away",
                 __LINE__);
        }
        if (use.staticLocalTag == 0 || !property.second) continue;
        const auto tag = byTag.emplace(use.staticLocalTag, &use);
        if (tag.second) continue;
        const auto& other = *tag.first->second;
        refuse(other.origin,
               std::string(of_.properties_[other.property].symbol) + " has the local tag of " + std::string(symbol) +
                   " (" + of_.where(use.origin) + ") in the set " + std::string(set.symbol) +
                   "; give it another, or '-' for one that each file gives",
               __LINE__);
      }
    }
  }
}

// Readers find sets by their names alone, whatever the namespace.
void DefinitionCheck::checkSetNames() const {
  std::unordered_map<std::string_view, const SetDefinition*> names;
  for (const auto& set : of_.sets_) {
    const auto [known, isNew] = names.emplace(set.xmlName, &set);
    if (isNew) continue;
    refuse(set.origin,
           std::string(set.symbol) + " has the name of " + std::string(known->second->symbol) + " (" +
               of_.where(known->second->origin) + ") in XML, where sets are told apart by it; add name=X",
           __LINE__);
  }
}

void DefinitionCheck::checkPropertyNames(MetaMetadata::Vocabulary vocabulary) const {
  std::unordered_map<std::string, const PropertyDefinition*> names;
  for (const auto& property : of_.properties_) {
    const auto& chosen = of_.namespaces_[property.chosenNamespace];
    const wstring name(property.xmlName.begin(), property.xmlName.end());
    const std::string uri = property.chosenNamespace == 0 ? asText(MetaMetadata::elementNamespace(vocabulary, name).uri)
                                                          : std::string(chosen.uri);
    const auto [known, isNew] = names.emplace(uri + " " + std::string(property.xmlName), &property);
    if (isNew) continue;
    refuse(property.origin,
           std::string(property.symbol) + " has the name of " + std::string(known->second->symbol) + " (" +
               of_.where(known->second->origin) + ") in the namespace " + uri + "; add name=X, or choose a namespace " +
               "of your own",
           __LINE__);
  }
}

}  // namespace Vantor
