#include "Core/Dictionary/DefinitionCheck.h"

#include <map>
#include <unordered_map>
#include <utility>

#include "Core/Dictionary/DefinitionIndex.h"
#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

/// The sets of the registers have up to seven ancestors.
constexpr uint32 kMostAncestors = 100;
/// Of all sets, inherited ones counted in each; the built-in sets have four and a half thousand. Every one takes memory
/// in the dictionary.
constexpr uint64 kMostListedProperties = 1000000;

constexpr uint32 kNoParent = MetaMetadata::HashIndex::kNotFound;

/// Names of documents' own elements: a set of such a name is not found again where it is written.
bool isTakenByDocuments(std::string_view setName) {
  return setName == "DarkMetadata" || setName == "FloatingDarkMetadata" ||
         setName.find("_REF") != std::string_view::npos;
}

/// Two definitions that do not go together, the one that was read first in front: the other one is told to change.
template <class Definition>
std::pair<const Definition&, const Definition&> inOrder(const Definition& one, const Definition& other) {
  const auto read = [](const Definition& definition) {
    return std::make_pair(definition.origin.source, definition.origin.line);
  };
  if (read(other) < read(one)) return {other, one};
  return {one, other};
}

std::string asText(std::u16string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

void DefinitionCheck::refuse(const Origin& origin, const std::string& what, int line) const {
  of_.refuse(origin, what, "Core/Dictionary/DefinitionCheck", line);
}

void DefinitionCheck::run() {
  checkEnumerations();
  completeTypes();
  findParents();
  checkCircles();
  checkExtent();
  for (uint32 set = 0; set < of_.sets_.size(); ++set) checkPropertiesOf(set);
  checkSetNames();
  checkPropertyNames(MetaMetadata::Vocabulary::kLegacy);
  checkPropertyNames(MetaMetadata::Vocabulary::kST434_2014);
}

void DefinitionCheck::checkEnumerations() const {
  for (const auto& enumeration : of_.enumerations_) {
    std::map<int64, const EnumerationValue*> numbers;
    std::map<std::string_view, const EnumerationValue*> names;
    const auto refuseKnown = [&](const EnumerationValue& value, const std::string& what,
                                 const EnumerationValue& known) {
      refuse(value.origin,
             std::string(enumeration.name) + " has the " + what + " already (" + of_.where(known.origin) +
                 "); give each number and each name once",
             __LINE__);
    };
    for (const auto& value : enumeration.values) {
      const auto number = numbers.emplace(value.number, &value);
      if (!number.second) refuseKnown(value, "number " + std::to_string(value.number), *number.first->second);
      const auto name = names.emplace(value.name, &value);
      if (!name.second) refuseKnown(value, "name " + std::string(value.name), *name.first->second);
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

void DefinitionCheck::findParents() {
  parents_.reserve(of_.sets_.size());
  for (const auto& set : of_.sets_) {
    parents_.push_back(set.parent.empty() ? kNoParent : of_.index_->findSet(of_, set.parent));
    if (set.parent.empty() || parents_.back() != kNoParent) continue;
    refuse(set.origin,
           std::string(set.symbol) + " inherits from " + quoted(set.parent) +
               ", which is not defined; name a set of this or another file, or '-'",
           __LINE__);
  }
}

void DefinitionCheck::checkCircles() const {
  // Each round of sets that are followed upwards together has a number; a set that is met again in its own round
  // inherits from itself, one of an earlier round is known to end.
  Templates::vector<uint32> rounds(of_.sets_.size(), 0);
  for (uint32 start = 0; start < of_.sets_.size(); ++start) {
    for (uint32 at = start; rounds[at] == 0; at = parents_[at]) {
      rounds[at] = start + 1;
      const uint32 parent = parents_[at];
      if (parent == kNoParent) break;
      if (rounds[parent] != start + 1) continue;
      const auto& set = of_.sets_[at];
      refuse(set.origin,
             std::string(set.symbol) + " inherits from itself, by way of " + std::string(set.parent) +
                 "; let one of them inherit from another set",
             __LINE__);
    }
  }
}

void DefinitionCheck::checkExtent() const {
  uint64 properties = 0;
  for (uint32 place = 0; place < of_.sets_.size(); ++place) {
    const auto& set = of_.sets_[place];
    uint32 generations = 0;
    for (uint32 at = place; at != kNoParent; at = parents_[at], ++generations) {
      properties += of_.sets_[at].properties.size();
      if (generations <= kMostAncestors) continue;
      refuse(set.origin,
             std::string(set.symbol) + " has more than " + std::to_string(kMostAncestors) +
                 " ancestors; let it inherit from a set that has fewer",
             __LINE__);
    }
    if (properties <= kMostListedProperties) continue;
    refuse(set.origin,
           "up to here the sets have more than " + std::to_string(kMostListedProperties) +
               " properties, inherited ones counted in each set; define fewer",
           __LINE__);
  }
}

void DefinitionCheck::checkPropertiesOf(uint32 set) const {
  std::unordered_map<uint32, const PropertyUse*> byProperty;
  std::unordered_map<uint16, const PropertyUse*> byTag;
  for (uint32 at = set; at != kNoParent; at = parents_[at]) {
    for (const auto& use : of_.sets_[at].properties) {
      const auto [known, isNew] = byProperty.emplace(use.property, &use);
      if (!isNew) {
        checkRepetition(set, *known->second, use, at == set);
        continue;
      }
      if (use.staticLocalTag == 0) continue;
      const auto [holder, isFree] = byTag.emplace(use.staticLocalTag, &use);
      if (!isFree) refuseTag(set, *holder->second, use);
    }
  }
}

void DefinitionCheck::checkRepetition(uint32 set, const PropertyUse& use, const PropertyUse& other,
                                      bool isInOneSet) const {
  if (!isInOneSet && use.staticLocalTag == other.staticLocalTag) return;
  const auto [first, second] = inOrder(use, other);
  refuse(second.origin,
         std::string(of_.sets_[set].symbol) + " has the property " + std::string(of_.properties_[use.property].symbol) +
             " already (" + of_.where(first.origin) +
             (isInOneSet ? "); take this row away" : "), with another local tag; write the one that stands there"),
         __LINE__);
}

void DefinitionCheck::refuseTag(uint32 set, const PropertyUse& use, const PropertyUse& other) const {
  const auto [first, second] = inOrder(use, other);
  const auto symbolOf = [this](const PropertyUse& of) { return std::string(of_.properties_[of.property].symbol); };
  refuse(second.origin,
         symbolOf(second) + " has the local tag of " + symbolOf(first) + " (" + of_.where(first.origin) +
             ") in the set " + std::string(of_.sets_[set].symbol) +
             "; give it another, or '-' for one that each file gives",
         __LINE__);
}

// Readers find sets by their names alone, whatever the namespace.
void DefinitionCheck::checkSetNames() const {
  std::unordered_map<std::string_view, const SetDefinition*> names;
  for (const auto& set : of_.sets_) {
    if (isTakenByDocuments(set.xmlName)) {
      refuse(set.origin,
             std::string(set.symbol) + " has the name " + std::string(set.xmlName) + " in XML, where DarkMetadata, " +
                 "FloatingDarkMetadata and names with '_REF' are no sets; add name=X",
             __LINE__);
    }
    const auto [known, isNew] = names.emplace(set.xmlName, &set);
    if (isNew) continue;
    const auto [first, second] = inOrder(*known->second, set);
    refuse(second.origin,
           std::string(second.symbol) + " has the name of " + std::string(first.symbol) + " (" +
               of_.where(first.origin) + ") in XML, where sets are told apart by it; add name=X",
           __LINE__);
  }
}

void DefinitionCheck::checkPropertyNames(MetaMetadata::Vocabulary vocabulary) const {
  std::unordered_map<std::string, const PropertyDefinition*> names;
  for (const auto& property : of_.properties_) {
    const auto& chosen = of_.namespaces_[property.chosenNamespace];
    const wstring name(property.xmlName.begin(), property.xmlName.end());
    if (property.chosenNamespace != 0 && MetaMetadata::isIdentifierName(name)) {
      refuse(property.origin,
             "the name " + std::string(property.xmlName) + " is that of an attribute of every set, which is in no " +
                 "namespace of yours; add name=X",
             __LINE__);
    }
    const std::string uri = property.chosenNamespace == 0 ? asText(MetaMetadata::elementNamespace(vocabulary, name).uri)
                                                          : std::string(chosen.uri);
    const auto [known, isNew] = names.emplace(uri + " " + std::string(property.xmlName), &property);
    if (isNew || known->second->key == property.key) continue;  // the same one: a newer edition gave it another key
    const auto [first, second] = inOrder(*known->second, property);
    refuse(second.origin,
           std::string(second.symbol) + " has the name of " + std::string(first.symbol) + " (" +
               of_.where(first.origin) + ") in the namespace " + uri +
               "; add name=X, or choose a namespace of your own",
           __LINE__);
  }
}

}  // namespace Vantor
