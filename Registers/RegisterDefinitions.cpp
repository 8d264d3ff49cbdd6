#include "Registers/RegisterDefinitions.h"

#include <algorithm>
#include <array>
#include <map>

#include "Core/Dictionary/DefinitionAdder.h"
#include "Registers/RegisterGroups.h"
#include "Registers/RegisterIndex.h"
#include "Registers/RegisterKeys.h"
#include "Registers/RegisterTypes.h"

namespace Vantor::Registers {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using MetaMetadata::registerText;
using namespace Types::Identifiers;

constexpr KLV::Key kInstanceID = MetaMetadata::MetaMetadataSet::kInstanceUID;

/// Files refer to this set, and so give it an InstanceUID, although the register does not list one for it.
constexpr KLV::Key kMetaDictionary = RegisterKeys::group(0x0d01010102250000);

/// Properties that files code differently from the registers.
struct PropertyRule {
  KLV::Key key;
  Identifier type;
  const char* tagName;  // null where it is the symbol
};
constexpr PropertyRule kRules[] = {
    {kInstanceID, kUUID, "InstanceUID"},                                   // ST 377-1
    {RegisterKeys::element(0x0520070108000000), kUUID, "GenerationUID"},   // ST 377-1; an AUID in the register
    {RegisterKeys::element(0x0601010401080000), kWeakReference, nullptr},  // ST 377-1: PrimaryPackage, not by UMID
    {RegisterKeys::element(0x0101150900000000), kUMID64, nullptr},         // ExtendedClipID: 64 octets (ST 330)
    {RegisterKeys::element(0x040106030c000000), kJ2KCodingStyleDefault, nullptr},   // ST 422: a marker's parameters
    {RegisterKeys::element(0x040106030d000000), kJ2KQuantisationDefault, nullptr},  // ST 422: a marker's parameters
};

bool lists(const GroupEntry& group, const KLV::Key& element) {
  return std::any_of(group.properties.begin(), group.properties.end(),
                     [&](const GroupProperty& property) { return property.element.matches(element); });
}

const PropertyRule* ruleOf(const KLV::Key& key) {
  const auto* const found = std::find_if(std::begin(kRules), std::end(kRules),
                                         [&](const PropertyRule& rule) { return rule.key.matches(key); });
  return found == std::end(kRules) ? nullptr : found;
}

/// Values of `PropertyUse::requiredStatus`.
constexpr uint32 kRequired = 0;
constexpr uint32 kOptional = 4;

void expectDefinitionRegisters(const Entries& entries) {
  std::string given;
  const char* missing = nullptr;
  for (const auto kind : {RegisterKind::kGroups, RegisterKind::kElements, RegisterKind::kTypes}) {
    const auto& file = entries.file(kind);
    if (given.empty()) given = file;
    if (missing == nullptr && file.empty()) missing = kRegisterNames[static_cast<std::size_t>(kind)];
  }
  if (given.empty()) raise<InvalidFormat>("no register defines sets; give Groups.xml, Elements.xml and Types.xml");
  if (missing == nullptr) return;
  raise<InvalidFormat>("{}: the {} register is missing; give {}.xml of the same release, too", given, missing, missing);
}

/// Translates places in the registers into places in the sources of `Definitions`.
class Origins {
 public:
  Origins(const Entries& entries, Definitions& into) {
    std::transform(entries.files.begin(), entries.files.end(), sources_.begin(),
                   [&](const std::string& file) { return file.empty() ? 0 : into.addRegister(file); });
  }
  Origin operator()(const Origin& origin) const { return {sources_[origin.source], origin.line}; }

 private:
  std::array<uint32, kRegisterKinds> sources_{};
};

Explanation explanationOf(const EntryTexts& texts, Definitions& into) {
  return {into.keep(texts.definition), into.keep(texts.document)};
}

/// Adds the sets of header metadata with their properties, then the enumerations that these use.
class SetAdder {
 public:
  SetAdder(const Entries& entries, Definitions& into)
      : entries_(entries),
        into_(into),
        groups_(entries),
        elements_(entries.elements, entries),
        types_(entries),
        originOf_(entries, into),
        adder_(into, Definitions::Overlay::kReplace) {}

  void run() {
    for (const auto& [key, group] : groups_.headerMetadata()) addGroup(*group);
    for (const auto& [key, type] : enumerations_) addEnumeration(type);
    adder_.finish();
  }

 private:
  void addGroup(const GroupEntry& group) {
    SetDefinition set;
    set.key = group.key;
    set.symbol = set.tagName = into_.keep(group.symbol);
    if (const auto* parent = groups_.parentOf(group)) set.parent = into_.keep(parent->symbol);
    set.isConcrete = group.isConcrete;
    set.origin = originOf_(group.origin);
    set.explanation = explanationOf(group.texts, into_);
    const uint32 place = adder_.addSet(std::move(set));
    if (kMetaDictionary.matches(group.key) && !lists(group, kInstanceID)) {
      addProperty(place, group, {kInstanceID, MetaMetadata::MetaMetadataSet::kInstanceUIDTag, true, group.origin});
    }
    for (const auto& property : group.properties) addProperty(place, group, property);
  }

  void addProperty(uint32 set, const GroupEntry& group, const GroupProperty& listed) {
    const auto& element = elementOf(group, listed);
    const auto* rule = ruleOf(element.key);
    PropertyDefinition property;
    property.key = Types::UniversalLabel(element.key);
    property.symbol = into_.keep(element.symbol);
    property.tagName = rule != nullptr && rule->tagName != nullptr ? rule->tagName : property.symbol;
    property.type = typeOf(element, rule);
    property.origin = originOf_(element.origin);
    property.explanation = explanationOf(element.texts, into_);
    const uint32 status = listed.isOptional ? kOptional : kRequired;
    adder_.addProperty(set, std::move(property), {0, listed.staticLocalTag, status, originOf_(listed.origin)});
  }

  void addEnumeration(const RegisteredType& type) {
    EnumerationDefinition enumeration;
    enumeration.name = into_.keep(type.enumeration->symbol);
    enumeration.base = type.value;
    enumeration.origin = originOf_(type.enumeration->origin);
    const uint32 place = adder_.addEnumeration(std::move(enumeration));
    for (const auto& value : type.enumeration->values) {
      adder_.addValue(place, value.value, into_.keep(value.symbol), originOf_(value.origin));
    }
  }

  const ElementEntry& elementOf(const GroupEntry& group, const GroupProperty& property) const {
    if (const auto* element = elements_.find(property.element)) return *element;
    entries_.refuse(property.origin,
                    "the property {} of {} is not in {}; give the Elements register of the same release",
                    registerText(property.element), group.symbol, entries_.file(RegisterKind::kElements));
  }

  PropertyType typeOf(const ElementEntry& element, const PropertyRule* rule) {
    auto type = element.type ? registeredTypeOf(element) : RegisteredType();
    const auto* target = type.target ? groups_.find(*type.target) : nullptr;
    if (rule != nullptr) {
      type.collection = kNone;
      type.value = rule->type;
      type.enumeration = nullptr;
    } else if (type.value == kWeakReference && target != nullptr && groups_.isDefinition(*target)) {
      type.value = kAUID;
    }
    PropertyType result{type.collection, type.value, {}, {}};
    if (type.enumeration != nullptr) {
      result.enumeration = into_.keep(type.enumeration->symbol);
      enumerations_[type.enumeration->key] = type;
    }
    const bool isReference = type.value == kStrongReference || type.value == kWeakReference;
    if (isReference && target != nullptr && groups_.isHeaderMetadata(*target)) {
      result.target = into_.keep(target->symbol);
    }
    return result;
  }

  RegisteredType registeredTypeOf(const ElementEntry& element) const {
    if (auto type = types_.find(*element.type)) return *type;
    entries_.refuse(element.origin, "the type {} of {} is not in {}; give the Types register of the same release",
                    registerText(*element.type), element.symbol, entries_.file(RegisterKind::kTypes));
  }

  const Entries& entries_;
  Definitions& into_;
  RegisterGroups groups_;
  RegisterIndex<ElementEntry> elements_;
  RegisterTypes types_;
  Origins originOf_;
  DefinitionAdder adder_;
  std::map<KLV::Key, RegisteredType> enumerations_;  // by the keys of their types
};

}  // namespace

void addDefinitions(const Entries& entries, Definitions& into) {
  expectDefinitionRegisters(entries);
  SetAdder(entries, into).run();
}

void addLabels(const Entries& entries, Definitions& into) {
  if (entries.file(RegisterKind::kLabels).empty()) {
    raise<InvalidFormat>("no register defines labels; give Labels.xml");
  }
  const RegisterIndex index(entries.labels, entries);
  const Origins originOf(entries, into);
  DefinitionAdder adder(into, Definitions::Overlay::kReplace);
  for (const auto& [key, label] : index.byKey()) {
    const auto symbol = into.keep(label->symbol);
    const auto name = label->name.empty() ? symbol : into.keep(label->name);
    adder.addLabel(
        {Types::UniversalLabel(key), symbol, name, originOf(label->origin), explanationOf(label->texts, into)});
  }
  adder.finish();
}

}  // namespace Vantor::Registers
