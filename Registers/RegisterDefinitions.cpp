#include "Registers/RegisterDefinitions.h"

#include <algorithm>
#include <array>

#include "Core/Dictionary/DefinitionAdder.h"
#include "Registers/RegisterGroups.h"
#include "Registers/RegisterIndex.h"
#include "Registers/RegisterProperties.h"

namespace Vantor::Registers {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

/// Values of `PropertyUse::requiredStatus`.
constexpr uint32 kRequired = 0;
constexpr uint32 kOptional = 4;

struct NamedRegister {
  RegisterKind kind;
  const char* name;
};
constexpr NamedRegister kDefinitionRegisters[] = {
    {RegisterKind::kGroups, "Groups"}, {RegisterKind::kElements, "Elements"}, {RegisterKind::kTypes, "Types"}};

void expectDefinitionRegisters(const Entries& entries) {
  std::string given;
  for (const auto& one : kDefinitionRegisters) {
    if (given.empty()) given = entries.file(one.kind);
  }
  if (given.empty()) raise<InvalidFormat>("no register defines sets; give Groups.xml, Elements.xml and Types.xml");
  for (const auto& one : kDefinitionRegisters) {
    if (!entries.file(one.kind).empty()) continue;
    raise<InvalidFormat>("{}: the {} register is missing; give {}.xml of the same release, too", given, one.name,
                         one.name);
  }
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

SetDefinition definitionOf(const GroupEntry& group, const GroupEntry* parent, Definitions& texts) {
  SetDefinition set;
  set.key = group.key;
  set.symbol = set.xmlName = texts.keep(group.symbol);
  if (parent != nullptr) set.parent = texts.keep(parent->symbol);
  set.isConcrete = group.isConcrete;
  return set;
}

void addEnumeration(const UsedEnumeration& used, const Origins& originOf, DefinitionAdder& to, Definitions& texts) {
  EnumerationDefinition enumeration;
  enumeration.name = texts.keep(used.entry->symbol);
  enumeration.base = used.carrier;
  enumeration.origin = originOf(used.entry->origin);
  const uint32 place = to.addEnumeration(std::move(enumeration));
  for (const auto& value : used.entry->values) {
    to.addValue(place, value.value, texts.keep(value.symbol), originOf(value.origin));
  }
}

}  // namespace

void addDefinitions(const Entries& entries, Definitions& into) {
  expectDefinitionRegisters(entries);
  const RegisterGroups groups(entries);
  RegisterProperties properties(entries, groups, into);
  const Origins originOf(entries, into);
  DefinitionAdder adder(into, Definitions::Overlay::kReplace);
  for (const auto* group : groups.headerMetadata()) {
    auto set = definitionOf(*group, groups.parentOf(*group), into);
    set.origin = originOf(group->origin);
    const uint32 place = adder.addSet(std::move(set));
    for (const auto& listed : properties.propertiesOf(*group)) {
      auto property = properties.define(*group, listed);
      property.origin = originOf(property.origin);
      const uint32 status = listed.isOptional ? kOptional : kRequired;
      adder.addProperty(place, std::move(property), {0, listed.staticLocalTag, status, originOf(listed.origin)});
    }
  }
  for (const auto& [key, used] : properties.enumerations()) addEnumeration(used, originOf, adder, into);
  adder.finish();
}

void addLabels(const Entries& entries, Definitions& into) {
  if (entries.file(RegisterKind::kLabels).empty()) {
    raise<InvalidFormat>("no register defines labels; give Labels.xml");
  }
  const RegisterIndex index(entries.labels, entries);
  Templates::vector<const LabelEntry*> labels;
  for (const auto& label : entries.labels) labels.push_back(&label);
  std::sort(labels.begin(), labels.end(), [](const auto* left, const auto* right) { return left->key < right->key; });

  const Origins originOf(entries, into);
  DefinitionAdder adder(into, Definitions::Overlay::kReplace);
  for (const auto* label : labels) {
    const auto symbol = into.keep(label->symbol);
    const auto name = label->name.empty() ? symbol : into.keep(label->name);
    adder.addLabel({Types::UniversalLabel(label->key), symbol, name, originOf(label->origin)});
  }
  adder.finish();
}

}  // namespace Vantor::Registers
