#include "Core/Dictionary/RegisterText.h"

#include <algorithm>

#include "Core/Dictionary/DictionaryTextWriter.h"
#include "Core/Dictionary/RegisterChecks.h"
#include "Core/Dictionary/RegisterGroups.h"
#include "Core/Dictionary/RegisterIndex.h"
#include "Core/Dictionary/RegisterProperties.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

namespace {

constexpr const char* kSource = "Core/Dictionary/RegisterText";

struct NamedRegister {
  RegisterKind kind;
  const char* name;
};
constexpr NamedRegister kDefinitionRegisters[] = {
    {RegisterKind::kGroups, "Groups"}, {RegisterKind::kElements, "Elements"}, {RegisterKind::kTypes, "Types"}};

[[noreturn]] void throwMissing(const std::string& what, const std::string& cure, int line) {
  throw Exceptions::InvalidFormat(what + "; give " + cure, kSource, line);
}

[[noreturn]] void throwMissingBeside(const std::string& given, const std::string& name) {
  throwMissing(given + ": the " + name + " register is missing", name + ".xml of the same release, too", __LINE__);
}

void expectDefinitionRegisters(const Registers& registers) {
  std::string given;
  for (const auto& one : kDefinitionRegisters) {
    if (given.empty()) given = registers.file(one.kind);
  }
  if (given.empty()) throwMissing("no register defines sets", "Groups.xml, Elements.xml and Types.xml", __LINE__);
  for (const auto& one : kDefinitionRegisters) {
    if (registers.file(one.kind).empty()) throwMissingBeside(given, one.name);
  }
}

template <class Entry>
const std::string& symbolOf(const Registers& registers, const Entry& entry) {
  return checkedSymbol(registers, entry.symbol, entry.origin);
}

void writeEnumeration(const Registers& registers, const UsedEnumeration& used, DictionaryTextWriter& to) {
  const auto& entry = *used.entry;
  to.blank();
  to.row(entry.origin, "enum " + symbolOf(registers, entry) + " " + Types::Identifiers::name(used.carrier));
  DictionaryTextWriter::Table table;
  for (const auto& value : entry.values) {
    table.push_back({value.origin, {checkedNumber(registers, value.value, value.origin), symbolOf(registers, value)}});
  }
  to.table(table);
}

void writeSet(const Registers& registers, const RegisterGroups& groups, const GroupEntry& group,
              const DictionaryTextWriter::Table& properties, DictionaryTextWriter& to) {
  const auto* parent = groups.parentOf(group);
  to.blank();
  to.row(group.origin, MetaMetadata::registerText(group.key) + "  " + symbolOf(registers, group) + "  " +
                           (parent == nullptr ? "-" : parent->symbol) + (group.isConcrete ? "" : "  abstract"));
  to.table(properties);
}

}  // namespace

DictionaryText definitionsText(const Registers& registers) {
  expectDefinitionRegisters(registers);
  const RegisterGroups groups(registers);
  RegisterProperties properties(registers, groups);
  const auto sets = groups.headerMetadata();
  Templates::vector<DictionaryTextWriter::Table> tables;
  for (const auto* set : sets) tables.push_back(properties.rowsOf(*set));

  DictionaryTextWriter writer(
      "Made from the SMPTE metadata registers Groups (ST 395), Elements (ST 335) and Types (ST 2003).");
  for (const auto& [key, used] : properties.enumerations()) writeEnumeration(registers, used, writer);
  for (std::size_t i = 0; i < sets.size(); ++i) writeSet(registers, groups, *sets[i], tables[i], writer);
  return std::move(writer).result();
}

DictionaryText labelsText(const Registers& registers) {
  if (registers.file(RegisterKind::kLabels).empty()) throwMissing("no register defines labels", "Labels.xml", __LINE__);
  const RegisterIndex index(registers.labels, registers);
  Templates::vector<const LabelEntry*> labels;
  for (const auto& label : registers.labels) labels.push_back(&label);
  std::sort(labels.begin(), labels.end(), [](const auto* left, const auto* right) { return left->key < right->key; });

  DictionaryTextWriter writer("Made from the SMPTE metadata register Labels (ST 400).");
  writer.blank();
  for (const auto* label : labels) {
    const auto& symbol = symbolOf(registers, *label);
    writer.row(label->origin, "label " + MetaMetadata::registerText(label->key) + " " + symbol + " " +
                                  (label->name.empty() ? symbol : label->name));
  }
  return std::move(writer).result();
}

}  // namespace Vantor
