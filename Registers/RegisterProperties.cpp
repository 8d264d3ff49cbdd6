#include "Registers/RegisterProperties.h"

#include <algorithm>

#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

using namespace Types::Identifiers;

constexpr KLV::Key kInstanceID = MetaMetadata::MetaMetadataSet::kInstanceUID;

/// Files refer to this set, and so give it an InstanceUID, although the register does not list one for it.
constexpr KLV::Key kMetaDictionary = RegisterKeys::group(0x0d01010102250000);

/// Properties that files code differently from the registers.
struct PropertyRule {
  KLV::Key key;
  Identifier type;
  const char* xmlName;  // null where it is the symbol
};
constexpr PropertyRule kRules[] = {
    {kInstanceID, kUUID, "InstanceUID"},                                   // ST 377-1
    {RegisterKeys::element(0x0520070108000000), kUUID, "GenerationUID"},   // ST 377-1; an AUID in the register
    {RegisterKeys::element(0x0601010401080000), kWeakReference, nullptr},  // ST 377-1: PrimaryPackage, not by UMID
    {RegisterKeys::element(0x0101150900000000), kUMID64, nullptr},         // ExtendedClipID: 64 octets (ST 330)
    {RegisterKeys::element(0x040106030c000000), kJ2KCodingStyleDefault, nullptr},   // ST 422: a marker's parameters
    {RegisterKeys::element(0x040106030d000000), kJ2KQuantisationDefault, nullptr},  // ST 422: a marker's parameters
};

const PropertyRule* ruleOf(const KLV::Key& key) {
  const auto* const found = std::find_if(std::begin(kRules), std::end(kRules),
                                         [&](const PropertyRule& rule) { return rule.key.matches(key); });
  return found == std::end(kRules) ? nullptr : found;
}

bool isReference(Identifier type) { return type == kStrongReference || type == kWeakReference; }

bool lists(const GroupEntry& group, const KLV::Key& element) {
  return std::any_of(group.properties.begin(), group.properties.end(),
                     [&](const GroupProperty& property) { return property.element.matches(element); });
}

}  // namespace

RegisterProperties::RegisterProperties(const Entries& entries, const RegisterGroups& groups, Definitions& texts)
    : entries_(entries), groups_(groups), texts_(texts), elements_(entries.elements, entries), types_(entries) {}

Templates::vector<GroupProperty> RegisterProperties::propertiesOf(const GroupEntry& group) const {
  auto properties = group.properties;
  if (kMetaDictionary.matches(group.key) && !lists(group, kInstanceID)) {
    properties.insert(properties.begin(),
                      {kInstanceID, MetaMetadata::MetaMetadataSet::kInstanceUIDTag, true, group.origin});
  }
  return properties;
}

PropertyDefinition RegisterProperties::define(const GroupEntry& group, const GroupProperty& property) {
  const auto& element = elementOf(group, property);
  const auto* rule = ruleOf(element.key);
  PropertyDefinition definition;
  definition.key = Types::UniversalLabel(element.key);
  definition.symbol = texts_.keep(element.symbol);
  definition.xmlName = rule != nullptr && rule->xmlName != nullptr ? rule->xmlName : definition.symbol;
  definition.type = typeOf(carrierOf(element));
  definition.origin = element.origin;
  return definition;
}

const ElementEntry& RegisterProperties::elementOf(const GroupEntry& group, const GroupProperty& property) const {
  const uint32 place = elements_.find(property.element);
  if (place != RegisterIndex::kNotFound) return entries_.elements[place];
  entries_.refuse(property.origin, "the property {} of {} is not in {}; give the Elements register of the same release",
                  MetaMetadata::registerText(property.element), group.symbol, entries_.file(RegisterKind::kElements));
}

RegisteredType RegisterProperties::carrierOf(const ElementEntry& element) const {
  RegisteredType type;
  if (element.type) type = registeredTypeOf(element);
  const auto* rule = ruleOf(element.key);
  if (rule != nullptr) {
    type.collection = kNone;
    type.value = rule->type;
    type.enumeration = nullptr;
  } else if (type.value == kWeakReference && leadsToDefinition(type)) {
    type.value = kAUID;
  }
  return type;
}

RegisteredType RegisterProperties::registeredTypeOf(const ElementEntry& element) const {
  if (auto type = types_.find(*element.type)) return *type;
  entries_.refuse(element.origin, "the type {} of {} is not in {}; give the Types register of the same release",
                  MetaMetadata::registerText(*element.type), element.symbol, entries_.file(RegisterKind::kTypes));
}

bool RegisterProperties::leadsToDefinition(const RegisteredType& type) const {
  const auto* target = type.target ? groups_.find(*type.target) : nullptr;
  return target != nullptr && groups_.isDefinition(*target);
}

PropertyType RegisterProperties::typeOf(const RegisteredType& carrier) {
  PropertyType type;
  type.collection = carrier.collection;
  type.value = carrier.value;
  if (carrier.enumeration != nullptr) {
    type.enumeration = texts_.keep(carrier.enumeration->symbol);
    enumerations_[carrier.enumeration->key] = {carrier.enumeration, carrier.value};
  }
  const auto* target = carrier.target && isReference(carrier.value) ? groups_.find(*carrier.target) : nullptr;
  if (target != nullptr && groups_.isHeaderMetadata(*target)) type.target = texts_.keep(target->symbol);
  return type;
}

}  // namespace Vantor::Registers
