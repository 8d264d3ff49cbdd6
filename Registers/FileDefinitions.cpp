#include "Registers/FileDefinitions.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Dictionary/DefinitionAdder.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/Chains.h"
#include "Registers/DefinitionNames.h"
#include "Registers/FileClasses.h"
#include "Registers/FileTypes.h"
#include "Registers/KnownProperties.h"
#include "Registers/LabelNames.h"

namespace Vantor::Registers {

namespace {

using Kind = DefinitionProblem::Kind;
using MetaMetadata::DictionaryBuilder;
using Types::UniversalLabel;
using namespace Types::Identifiers;

/// A property of more sets is taken to clash with every registered one of its name.
constexpr std::size_t kMostUsers = 16;
constexpr uint16 kFirstDynamicTag = Types::LocalTag::kFirstDynamic;

bool isPropertyKey(const KLV::Key& key) {
  constexpr uint8 kElement = 0x01;
  return KLV::isSwappedUUID(key) || (KLV::isSmpteLabel(key) && key.octet(5) == kElement);
}

/// That of the namespace where it is there already; else the wanted one, with a number behind it where it is taken.
std::string prefixOf(std::string_view uri, const std::string& wanted, const Definitions& definitions) {
  std::set<std::string_view> taken;
  for (const auto& known : definitions.namespaces()) {
    if (known.uri == uri) return std::string(known.prefix);
    taken.insert(known.prefix);
  }
  std::string prefix = wanted;
  for (std::size_t number = 2; taken.count(prefix) != 0; ++number) prefix = wanted + std::to_string(number);
  return prefix;
}

/// Adds the definitions of one file.
class FileAdder {
 public:
  FileAdder(const PartitionMetadata& metadata, const MetaDictionary& file, std::string name, Definitions& into)
      : tags_(metadata.partitionDictionary()),
        file_(file),
        into_(into),
        identifications_(file, metadata),
        classes_(file, identifications_, into, found_.problems),
        types_(file, found_.problems),
        known_(into) {
    found_.source = into.addRegister(std::move(name));
    found_.isThere = true;
    found_.types = types_.countOfOwn();
    for (const char* reserved : {"InstanceUID", "GenerationUID"}) names_.add(reserved);
    for (const auto& property : into.properties()) {
      if (into.namespaces()[property.chosenNamespace].uri == kOwnProperties) names_.add(property.tagName);
    }
    for (const auto& enumeration : into.enumerations()) enumerationNames_.add(enumeration.name);
  }

  FileDefinitions run() {
    if (classes_.hasTooManyProperties()) {
      found_.problems = {{Kind::kTooMany, "the dictionary of the file"}};
      found_.types = 0;
      return std::move(found_);
    }
    DefinitionAdder adder(into_, Definitions::Overlay::kRefuse);
    adder_ = &adder;
    setNamespace_ = namespaceOf(kOwnSets, "own");
    propertyNamespace_ = namespaceOf(kOwnProperties, "ownP");
    for (auto set : classes_.added()) addSet(std::move(set));
    findClasses();
    nameEnumerations();
    for (uint32 number = 0; number < file_.properties.size(); ++number) planned_.push_back(planOf(number));
    nameProperties();
    addUses();
    for (const auto& [name, enumeration] : enumerations_) addEnumeration(name, *enumeration.first, enumeration.second);
    addLabels();
    adder.finish();
    return std::move(found_);
  }

 private:
  /// What the definitions have, or will have, of a property of the file.
  struct Planned {
    PropertyDefinition definition;
    uint16 tag;
    uint32 status;
    bool isKnown;
    bool hasOtherTags;
  };

  uint32 namespaceOf(std::string_view uri, const char* prefix) {
    return adder_->addNamespace(into_.keep(prefixOf(uri, prefix, into_)), uri, originOf(0));
  }

  void addSet(SetDefinition set) {
    set.chosenNamespace = setNamespace_;
    set.origin.source = found_.source;
    adder_->addSet(std::move(set));
    ++found_.sets;
  }

  void findClasses() {
    users_.resize(file_.properties.size());
    for (uint32 number = 0; number < file_.classes.size(); ++number) {
      const uint32 place = classes_.placeOfClass(number);
      for (const auto& instance : file_.classes[number].properties) {
        const auto found = file_.propertiesByInstance.find(instance);
        if (found == file_.propertiesByInstance.end()) {
          found_.problems.push_back(
              {Kind::kMissingProperty, "class " + file_.classes[number].name, instance.dottedText()});
        } else if (place != kChainEnd) {
          users_[found->second].push_back(place);
        }
      }
    }
    for (uint32 number = 0; number < file_.properties.size(); ++number) {
      const auto& memberOf = file_.properties[number].memberOf;
      const uint32 place = memberOf ? classes_.placeOf(*memberOf) : kChainEnd;
      if (place != kChainEnd) users_[number].push_back(place);
    }
  }

  /// None for a property that is left out.
  std::optional<Planned> planOf(uint32 number) {
    const auto& property = file_.properties[number];
    const auto key = property.identification ? identifications_.keyOf(*property.identification) : std::nullopt;
    if (!key || !isPropertyKey(*key)) {
      problem(key ? Kind::kNoPropertyKey : Kind::kNoIdentification, property);
      return std::nullopt;
    }
    const auto [first, isNew] = byKey_.emplace(MetaMetadata::comparableKey(*key), number);
    if (!isNew) {
      problem(Kind::kSecondDefinition, property, file_.properties[first->second].name);
      auto& users = users_[first->second];
      users.insert(users.end(), users_[number].begin(), users_[number].end());
      return std::nullopt;
    }
    const auto* known = into_.findProperty(UniversalLabel(*key));
    return known == nullptr ? planNew(property, *key) : planKnown(property, *known);
  }

  Planned planKnown(const FileProperty& property, const PropertyDefinition& known) const {
    const auto tag = known_.tagOf(static_cast<uint32>(&known - into_.properties().data()));
    return {known, tag.value_or(uint16{0}), statusOf(property), true, !tag};
  }

  /// `nameProperties` names it.
  Planned planNew(const FileProperty& property, const KLV::Key& key) {
    PropertyDefinition definition;
    definition.key = UniversalLabel(key);
    definition.type = typeOf(property);
    definition.chosenNamespace = propertyNamespace_;
    definition.origin = originOf(property.number);
    return {definition, tagOf(property, key), statusOf(property), false, false};
  }

  void nameProperties() {
    std::vector<uint32> added;
    for (uint32 number = 0; number < planned_.size(); ++number) {
      if (!planned_[number] || planned_[number]->isKnown) continue;
      added.push_back(number);
      const auto& name = file_.properties[number].name;
      names_.want(name, "Property", planned_[number]->definition.key.key(), isTaken(name, users_[number]));
    }
    const auto names = names_.take();
    for (std::size_t i = 0; i < added.size(); ++i) {
      auto& definition = planned_[added[i]]->definition;
      const auto& property = file_.properties[added[i]];
      definition.symbol = definition.tagName = into_.keep(names[i]);
      if (names[i] != property.name) problem(Kind::kRenamed, property, names[i]);
    }
  }

  /// The name of a registered property will do, too, where no set has both.
  bool isTaken(const std::string& name, const std::vector<uint32>& users) const {
    return users.size() > kMostUsers || known_.hasNameWith(nameOfLetters(name), users, classes_);
  }

  static uint32 statusOf(const FileProperty& property) {
    return property.isOptional ? DictionaryBuilder::kOptional : DictionaryBuilder::kRequired;
  }

  /// The file's static tag for the property; 0 when there is none, or others may understand it otherwise.
  uint16 tagOf(const FileProperty& property, const KLV::Key& key) {
    const uint16 tag = property.localTag;
    if (tag == 0 || tag >= kFirstDynamicTag) return 0;
    const auto* listed = tags_.tryFind(tag);
    const bool isOfAnother =
        listed != nullptr && MetaMetadata::comparableKey(listed->key()) != MetaMetadata::comparableKey(key);
    if (isOfAnother || known_.isTaken(tag)) {
      problem(Kind::kTagTaken, property, tagText(tag));
      return 0;
    }
    known_.take(tag);
    return tag;
  }

  PropertyType typeOf(const FileProperty& property) {
    auto type = types_.find(property.type);
    if (type.whyBytes != BytesReason::kNone) {
      found_.problems.push_back({Kind::kBytes, "property " + property.name, {}, type.whyBytes});
    }
    PropertyType result{type.collection, type.value, enumerationOf(type), {}};
    const bool isReference = type.value == kStrongReference || type.value == kWeakReference;
    const uint32 target = isReference && type.target ? classes_.placeOf(*type.target) : kChainEnd;
    if (target == kChainEnd) return result;
    if (type.value == kWeakReference && classes_.isDefinition(target)) {
      result.value = kAUID;
    } else {
      result.target = classes_.symbolOf(target);
    }
    return result;
  }

  /// The name of the enumeration of a type; empty when it has none that names numbers.
  std::string_view enumerationOf(const RegisteredType& type) {
    if (type.enumeration == nullptr) return {};
    const auto* own = types_.ownEnumeration(type);
    if (own == nullptr) {
      const auto* known = into_.findEnumeration(type.enumeration->symbol);
      return known == nullptr ? std::string_view() : known->name;
    }
    const auto name = ownEnumerations_.at(own);
    enumerations_.emplace(name, std::make_pair(own, type.value));
    return name;
  }

  /// Those that properties have. Types have names, too.
  void nameEnumerations() {
    std::vector<const FileType*> wanted;
    for (const auto& property : file_.properties) {
      const auto* own = types_.ownEnumeration(types_.find(property.type));
      if (own == nullptr || !ownEnumerations_.emplace(own, std::string_view()).second) continue;
      wanted.push_back(own);
      const bool isType = propertyTypeNamed(nameOfLetters(own->name)) != kNone;
      enumerationNames_.want(own->name, "Enumeration", *own->identification, isType);
    }
    const auto names = enumerationNames_.take();
    for (std::size_t i = 0; i < wanted.size(); ++i) ownEnumerations_[wanted[i]] = into_.keep(names[i]);
  }

  void addUses() {
    std::map<uint32, std::vector<const Planned*>> uses;  // by place of the set
    for (std::size_t i = 0; i < planned_.size(); ++i) {
      if (!planned_[i]) continue;
      for (const uint32 place : users_[i]) uses[place].push_back(&*planned_[i]);
      if (users_[i].empty() && !planned_[i]->isKnown) problem(Kind::kNoClass, file_.properties[i]);
    }
    for (const uint32 place : parentsFirst(uses)) addUses(place, uses[place]);
  }

  /// So that a set does not get what its parent gets.
  template <class Uses>
  std::vector<uint32> parentsFirst(const Uses& uses) const {
    std::vector<std::pair<uint32, uint32>> order;  // generations above, and place
    for (const auto& [place, properties] : uses) {
      uint32 generation = 0;
      for (uint32 at = classes_.parentOf(place); at != kChainEnd; at = classes_.parentOf(at)) ++generation;
      order.emplace_back(generation, place);
    }
    std::sort(order.begin(), order.end());
    std::vector<uint32> places;
    for (const auto& entry : order) places.push_back(entry.second);
    return places;
  }

  void addUses(uint32 place, const std::vector<const Planned*>& properties) {
    std::set<uint32> listed;
    for (uint32 at = place; at != kChainEnd; at = classes_.parentOf(at)) {
      for (const auto& use : into_.sets()[at].properties) listed.insert(use.property);
    }
    for (const auto* planned : properties) {
      const auto* known = into_.findProperty(planned->definition.key);
      const bool isListed = known != nullptr && listed.count(placeOf(*known)) != 0;
      if (isListed) continue;
      if (planned->hasOtherTags) {
        found_.problems.push_back({Kind::kOtherTags, "property " + std::string(planned->definition.symbol),
                                   std::string(classes_.symbolOf(place))});
        continue;
      }
      addUse(place, *planned);
      listed.insert(placeOf(*into_.findProperty(planned->definition.key)));
    }
  }

  void addUse(uint32 set, const Planned& planned) {
    const std::size_t before = into_.properties().size();
    adder_->addProperty(set, planned.definition,
                        {0, planned.tag, planned.status, {found_.source, planned.definition.origin.line}});
    const bool isNew = into_.properties().size() != before;
    const bool isKnownSet = into_.sets()[set].origin.source != found_.source;
    found_.properties += isNew ? 1 : 0;
    found_.extensions += !isNew && isKnownSet ? 1 : 0;
  }

  uint32 placeOf(const PropertyDefinition& known) const {
    return static_cast<uint32>(&known - into_.properties().data());
  }

  void addEnumeration(std::string_view name, const FileType& type, Identifier base) {
    const uint32 place = adder_->addEnumeration({name, base, {}, originOf(type.number)});
    DefinitionNames names;
    std::set<int64> numbers;
    std::vector<int64> named;
    const auto count = std::min(type.elementNames.size(), type.elementNumbers.size());
    for (std::size_t i = 0; i < count; ++i) {
      const int64 number = type.elementNumbers[i];
      if (!fitsInto(base, number) || !numbers.insert(number).second) continue;
      named.push_back(number);
      names.want(type.elementNames[i], "Value", std::to_string(number));
    }
    const auto taken = names.take();
    for (std::size_t i = 0; i < named.size(); ++i) {
      adder_->addValue(place, std::to_string(named[i]), into_.keep(taken[i]), originOf(type.number));
    }
    if (numbers.size() != std::max(type.elementNames.size(), type.elementNumbers.size())) {
      found_.problems.push_back({Kind::kUnnamedValues, "type " + type.name});
    }
  }

  void addLabels() {
    std::vector<LabelDefinition> added;
    for (const auto& type : file_.types) planLabels(type, added);
    if (added.empty()) return;
    LabelNames names(into_);
    for (const auto& label : added) names.want(label.name, label.key.key());
    const auto taken = names.take();
    for (std::size_t i = 0; i < added.size(); ++i) {
      added[i].symbol = added[i].name = into_.keep(taken[i]);
      adder_->addLabel(added[i]);
    }
  }

  /// @param added  receives them, named as the file names them.
  void planLabels(const FileType& type, std::vector<LabelDefinition>& added) {
    const auto count = std::min(type.elementNames.size(), type.elementLabels.size());
    for (std::size_t i = 0; i < count; ++i) {
      const auto key = identifications_.keyOf(type.elementLabels[i]);
      if (!key || !KLV::isSmpteLabel(*key) || isKnownLabel(UniversalLabel(*key))) continue;
      if (!labels_.insert(MetaMetadata::comparableKey(*key)).second) continue;
      added.push_back({UniversalLabel(*key), {}, type.elementNames[i], originOf(type.number)});
    }
  }

  bool isKnownLabel(const UniversalLabel& label) const {
    return into_.findLabel(label) != nullptr || builtInLabels().findLabel(label) != nullptr;
  }

  Origin originOf(uint32 number) const { return {found_.source, number}; }
  void problem(Kind kind, const FileProperty& property, std::string detail = {}) {
    found_.problems.push_back({kind, "property " + property.name, std::move(detail)});
  }

  FileDefinitions found_;
  const PartitionDictionary& tags_;
  const MetaDictionary& file_;
  Definitions& into_;
  Identifications identifications_;
  FileClasses classes_;
  FileTypes types_;
  KnownProperties known_;
  DefinitionNames names_, enumerationNames_;
  DefinitionAdder* adder_ = nullptr;
  uint32 setNamespace_ = 0, propertyNamespace_ = 0;
  std::vector<std::vector<uint32>> users_;                    // the sets that list them, beside the file's properties
  std::vector<std::optional<Planned>> planned_;               // beside the file's properties
  std::unordered_map<KLV::Key, uint32, KLV::KeyHash> byKey_;  // places in the file's properties
  std::unordered_set<KLV::Key, KLV::KeyHash> labels_;         // of the file's enumerations
  std::unordered_map<const FileType*, std::string_view> ownEnumerations_;
  std::map<std::string_view, std::pair<const FileType*, Identifier>> enumerations_;
};

}  // namespace

FileDefinitions addFileDefinitions(const PartitionMetadata& metadata, std::string name, Definitions& into) {
  const MetaDictionary file(metadata);
  if (file.isEmpty()) return {};
  auto found = FileAdder(metadata, file, std::move(name), into).run();
  into.check();
  return found;
}

}  // namespace Vantor::Registers
