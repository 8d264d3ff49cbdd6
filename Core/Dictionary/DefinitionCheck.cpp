#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "Core/Dictionary/Definitions.h"
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

/// Names that exports use for something else: an import would not find a set of such a name.
bool isReservedName(std::string_view setName) {
  return setName == "DarkMetadata" || setName == "FloatingDarkMetadata" ||
         setName.find("_REF") != std::string_view::npos;
}

/// Two definitions that clash, in the order of reading: the message is about the second.
template <class Definition>
std::pair<const Definition&, const Definition&> inOrder(const Definition& one, const Definition& other) {
  const auto read = [](const Definition& definition) {
    return std::make_pair(definition.origin.source, definition.origin.line);
  };
  if (read(other) < read(one)) return {other, one};
  return {one, other};
}

}  // namespace

/// Checks of `Definitions` that need all of them.
class DefinitionCheck {
 public:
  explicit DefinitionCheck(Definitions& definitions) : of_(definitions) {}

  void run() {
    for (auto& enumeration : of_.enumerations_) dropRepeatedValues(enumeration);
    checkEnumerations();
    for (auto& set : of_.sets_) dropRepeatedUses(set);
    completeTypes();
    findParents();
    checkCircles();
    checkExtent();
    for (uint32 set = 0; set < of_.sets_.size(); ++set) checkPropertiesOf(set);
    checkSetNames();
    checkPropertyNames(MetaMetadata::Vocabulary::kLegacy);
    checkPropertyNames(MetaMetadata::Vocabulary::kST434_2014);
  }

 private:
  /// Values that another source gives once more. One that gives others defines another enumeration.
  void dropRepeatedValues(EnumerationDefinition& enumeration) const {
    auto& values = enumeration.values;
    const auto isFirst = [&](const EnumerationValue& value) {
      return value.origin.source == enumeration.origin.source;
    };
    const auto rest = std::stable_partition(values.begin(), values.end(), isFirst);
    if (rest == values.end()) return;
    std::set<std::pair<int64, std::string_view>> known;
    for (auto at = values.begin(); at != rest; ++at) known.emplace(at->number, at->name);
    for (auto at = rest; at != values.end(); ++at) {
      if (known.count({at->number, at->name}) != 0) continue;
      of_.refuse(at->origin, "there is an enumeration {} already ({}), without the value {} {}", "choose another name",
                 quotedWord(enumeration.name), of_.where(enumeration.origin), at->number, at->name);
    }
    values.erase(rest, values.end());
  }

  /// Properties that another source gives a set once more, in the same way.
  static void dropRepeatedUses(SetDefinition& set) {
    auto& uses = set.properties;
    const auto isOfOther = [&](const PropertyUse& use) { return use.origin.source != uses.front().origin.source; };
    if (std::none_of(uses.begin(), uses.end(), isOfOther)) return;
    std::unordered_map<uint32, PropertyUse> known;
    const auto isRepeated = [&](const PropertyUse& use) {
      const auto [first, isNew] = known.emplace(use.property, use);
      const auto& other = first->second;
      return !isNew && other.origin.source != use.origin.source && other.staticLocalTag == use.staticLocalTag &&
             other.requiredStatus == use.requiredStatus;
    };
    Templates::vector<PropertyUse> kept;
    for (const auto& use : uses) {
      if (!isRepeated(use)) kept.push_back(use);
    }
    uses = std::move(kept);
  }

  void checkEnumerations() const {
    for (const auto& enumeration : of_.enumerations_) {
      std::map<int64, const EnumerationValue*> numbers;
      std::map<std::string_view, const EnumerationValue*> names;
      const auto refuseKnown = [&](const EnumerationValue& value, const std::string& what,
                                   const EnumerationValue& known) {
        of_.refuse(value.origin, "{} has the {} already ({})", "give each number and each name once", enumeration.name,
                   what, of_.where(known.origin));
      };
      for (const auto& value : enumeration.values) {
        const auto number = numbers.emplace(value.number, &value);
        if (!number.second) refuseKnown(value, "number " + std::to_string(value.number), *number.first->second);
        const auto name = names.emplace(value.name, &value);
        if (!name.second) refuseKnown(value, "name " + std::string(value.name), *name.first->second);
      }
    }
  }

  void completeTypes() const {
    for (auto& property : of_.properties_) {
      if (!property.type.enumeration.empty()) {
        const auto* enumeration = of_.findEnumeration(property.type.enumeration);
        if (enumeration == nullptr) {
          of_.refuse(property.origin, "{} is neither a type nor an enumeration",
                     "write a type's name, or define it: enum {} UInt8", quotedWord(property.type.enumeration),
                     property.type.enumeration);
        }
        property.type.value = enumeration->base;
      }
      checkTarget(property);
    }
  }

  void checkTarget(const PropertyDefinition& property) const {
    if (property.type.target.empty() || of_.findSet(property.type.target) != nullptr) return;
    of_.refuse(property.origin, "{} refers to the set {}, which is not defined",
               "define it, or leave out what the reference is to", property.symbol, property.type.target);
  }

  void findParents() {
    parents_.reserve(of_.sets_.size());
    for (const auto& set : of_.sets_) {
      parents_.push_back(set.parent.empty() ? kNoParent : of_.placeOfSet(set.parent));
      if (set.parent.empty() || parents_.back() != kNoParent) continue;
      of_.refuse(set.origin, "{} inherits from {}, which is not defined", "name a set of this or another file, or '-'",
                 set.symbol, quotedWord(set.parent));
    }
  }

  void checkCircles() const {
    // Each walk upwards has a number: a set that the same walk meets again inherits from itself; one that an earlier
    // walk met leads to a root.
    Templates::vector<uint32> rounds(of_.sets_.size(), 0);
    for (uint32 start = 0; start < of_.sets_.size(); ++start) {
      for (uint32 at = start; rounds[at] == 0; at = parents_[at]) {
        rounds[at] = start + 1;
        const uint32 parent = parents_[at];
        if (parent == kNoParent) break;
        if (rounds[parent] != start + 1) continue;
        const auto& set = of_.sets_[at];
        of_.refuse(set.origin, "{} inherits from itself, by way of {}", "let one of them inherit from another set",
                   set.symbol, set.parent);
      }
    }
  }

  /// Refuses what would make a dictionary too large for memory.
  void checkExtent() const {
    uint64 properties = 0;
    for (uint32 place = 0; place < of_.sets_.size(); ++place) {
      const auto& set = of_.sets_[place];
      uint32 generations = 0;
      for (uint32 at = place; at != kNoParent; at = parents_[at], ++generations) {
        properties += of_.sets_[at].properties.size();
        if (generations <= kMostAncestors) continue;
        of_.refuse(set.origin, "{} has more than {} ancestors", "let it inherit from a set that has fewer", set.symbol,
                   kMostAncestors);
      }
      if (properties <= kMostListedProperties) continue;
      of_.refuse(set.origin, "up to here the sets have more than {} properties, inherited ones counted in each set",
                 "define fewer", kMostListedProperties);
    }
  }

  void checkPropertiesOf(uint32 set) const {
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

  void checkRepetition(uint32 set, const PropertyUse& use, const PropertyUse& other, bool isInOneSet) const {
    if (!isInOneSet && use.staticLocalTag == other.staticLocalTag) return;
    const auto [first, second] = inOrder(use, other);
    of_.refuse(second.origin,
               isInOneSet ? "{} has the property {} already ({})"
                          : "{} has the property {} already ({}), with another local tag",
               isInOneSet ? "take this row away" : "write the one that stands there", of_.sets_[set].symbol,
               of_.properties_[use.property].symbol, of_.where(first.origin));
  }

  [[noreturn]] void refuseTag(uint32 set, const PropertyUse& use, const PropertyUse& other) const {
    const auto [first, second] = inOrder(use, other);
    of_.refuse(second.origin, "{} has the local tag of {} ({}) in the set {}",
               "give it another, or '-' for one that each file gives", of_.properties_[second.property].symbol,
               of_.properties_[first.property].symbol, of_.where(first.origin), of_.sets_[set].symbol);
  }

  /// Readers find sets by their names alone, whatever the namespace.
  void checkSetNames() const {
    std::unordered_map<std::string_view, const SetDefinition*> names;
    for (const auto& set : of_.sets_) {
      if (isReservedName(set.tagName)) {
        of_.refuse(
            set.origin,
            "{} has the name {} in XML, where DarkMetadata, FloatingDarkMetadata and names with '_REF' are no sets",
            "add name=X", set.symbol, set.tagName);
      }
      const auto [known, isNew] = names.emplace(set.tagName, &set);
      if (isNew) continue;
      const auto [first, second] = inOrder(*known->second, set);
      of_.refuse(second.origin, "{} has the name of {} ({}) in XML, where sets are told apart by it", "add name=X",
                 second.symbol, first.symbol, of_.where(first.origin));
    }
  }

  void checkPropertyNames(MetaMetadata::Vocabulary vocabulary) const {
    std::unordered_map<std::string, const PropertyDefinition*> names;
    for (const auto& property : of_.properties_) {
      const auto& chosen = of_.namespaces_[property.chosenNamespace];
      const wstring name(property.tagName.begin(), property.tagName.end());
      if (property.chosenNamespace != 0 && MetaMetadata::isIdentifierName(name)) {
        of_.refuse(property.origin,
                   "the name {} is that of an attribute of every set, which is in no namespace of yours", "add name=X",
                   property.tagName);
      }
      const std::string uri =
          property.chosenNamespace == 0
              ? Utils::wstringToString(wstring(MetaMetadata::elementNamespace(vocabulary, name).uri))
              : std::string(chosen.uri);
      const auto [known, isNew] = names.emplace(uri + " " + std::string(property.tagName), &property);
      if (isNew || known->second->key == property.key) continue;  // the same one: a newer edition gave it another key
      const auto [first, second] = inOrder(*known->second, property);
      of_.refuse(second.origin, "{} has the name of {} ({}) in the namespace {}",
                 "add name=X, or choose a namespace of your own", second.symbol, first.symbol, of_.where(first.origin),
                 uri);
    }
  }

  Definitions& of_;
  Templates::vector<uint32> parents_;  // beside the sets: the places of their parents
};

void Definitions::check() {
  if (isChecked_) return;
  DefinitionCheck(*this).run();
  isChecked_ = true;
}

}  // namespace Vantor
