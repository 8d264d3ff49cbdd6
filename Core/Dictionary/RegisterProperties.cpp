#include "Core/Dictionary/RegisterProperties.h"

#include <algorithm>

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/Dictionary/RegisterChecks.h"
#include "Core/Dictionary/RegisterKeys.h"
#include "Core/Platform/HexDigits.h"

namespace Vantor {

namespace {

using namespace Types::Identifiers;

constexpr const char* kSource = "Core/Dictionary/RegisterProperties";

constexpr KLV::Key kInstanceID = RegisterKeys::element(0x0101150200000000);
constexpr uint16 kInstanceIDTag = 0x3c0a;

/// Files refer to this set, and so give it an InstanceUID, although the register does not list one for it.
constexpr KLV::Key kMetaDictionary = RegisterKeys::group(0x0d01010102250000);

/// Properties that the registers tell otherwise than files have them.
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

std::string tagText(uint16 tag) {
  return tag == 0 ? "-" : Platform::hexNumber<std::string>(tag, Platform::DigitCase::kLower);
}

bool lists(const GroupEntry& group, const KLV::Key& element) {
  return std::any_of(group.properties.begin(), group.properties.end(),
                     [&](const GroupProperty& property) { return property.element.matches(element); });
}

}  // namespace

RegisterProperties::RegisterProperties(const Registers& registers, const RegisterGroups& groups)
    : registers_(registers), groups_(groups), elements_(registers.elements, registers), types_(registers) {}

DictionaryTextWriter::Table RegisterProperties::rowsOf(const GroupEntry& group) {
  DictionaryTextWriter::Table rows;
  if (kMetaDictionary.matches(group.key) && !lists(group, kInstanceID)) {
    rows.push_back(rowOf(group, {kInstanceID, kInstanceIDTag, true, group.origin}));
  }
  for (const auto& property : group.properties) rows.push_back(rowOf(group, property));
  return rows;
}

DictionaryTextWriter::TableRow RegisterProperties::rowOf(const GroupEntry& group, const GroupProperty& property) {
  const auto& element = elementOf(group, property);
  const auto* rule = ruleOf(element.key);
  DictionaryTextWriter::TableRow row;
  row.origin = property.origin;
  row.columns = {tagText(property.staticLocalTag), MetaMetadata::registerText(element.key),
                 checkedSymbol(registers_, element.symbol, element.origin), textOf(typeOf(element)),
                 property.isOptional ? "optional" : "required"};
  if (rule != nullptr && rule->xmlName != nullptr) row.columns.push_back(std::string("name=") + rule->xmlName);
  return row;
}

const ElementEntry& RegisterProperties::elementOf(const GroupEntry& group, const GroupProperty& property) const {
  const uint32 place = elements_.find(property.element);
  if (place != RegisterIndex::kNotFound) return registers_.elements[place];
  registers_.refuse(property.origin,
                    "the property " + MetaMetadata::registerText(property.element) + " of " + group.symbol +
                        " is not in " + registers_.file(RegisterKind::kElements) +
                        "; give the Elements register of the same release",
                    kSource, __LINE__);
}

RegisteredType RegisterProperties::typeOf(const ElementEntry& element) {
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

const RegisteredType& RegisterProperties::registeredTypeOf(const ElementEntry& element) {
  if (const auto* type = types_.find(*element.type)) return *type;
  registers_.refuse(element.origin,
                    "the type " + MetaMetadata::registerText(*element.type) + " of " + element.symbol + " is not in " +
                        registers_.file(RegisterKind::kTypes) + "; give the Types register of the same release",
                    kSource, __LINE__);
}

bool RegisterProperties::leadsToDefinition(const RegisteredType& type) const {
  const auto* target = type.target ? groups_.find(*type.target) : nullptr;
  return target != nullptr && groups_.isDefinition(*target);
}

std::string RegisterProperties::textOf(const RegisteredType& type) {
  PropertyType told;
  told.collection = type.collection;
  told.value = type.value;
  if (type.enumeration != nullptr) {
    told.enumeration = type.enumeration->symbol;
    enumerations_[type.enumeration->key] = {type.enumeration, type.value};
  }
  const auto* target = type.target && isReference(type.value) ? groups_.find(*type.target) : nullptr;
  if (target != nullptr && groups_.isHeaderMetadata(*target)) told.target = target->symbol;
  return Vantor::textOf(told);
}

}  // namespace Vantor
