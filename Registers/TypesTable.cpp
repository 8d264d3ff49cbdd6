#include "Registers/TypesTable.h"

#include <algorithm>

#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Dictionary/EmbeddedText.h"
#include "Core/MetaMetadata/RegisterKey.h"

namespace Vantor::Registers {

namespace {

using MetaMetadata::registerText;

/// No integer has more than eight octets.
std::string sizeText(const TypeEntry& type) {
  if (type.kind != TypeKind::kInteger) return "-";
  return (type.isSigned ? "s" : "u") + std::to_string(type.size);
}

TypeEntry typeOf(const DictionaryRow& row) {
  TypeEntry type;
  type.key = MetaMetadata::registerKey(row[0]);
  type.symbol = row[1];
  type.kind = typeKindNamed(row[2]);
  if (type.kind == TypeKind::kInteger) {
    type.isSigned = row[3].front() == 's';
    type.size = static_cast<uint32>(row[3].back() - '0');
  }
  type.base = MetaMetadata::parseRegisterKey(row[4]);
  return type;
}

}  // namespace

std::string tableOfTypes(const Entries& entries) {
  std::string table = "# Made from the SMPTE metadata register Types (ST 2003).\n";
  for (const auto& type : entries.types) {
    table += registerText(type.key) + " " + type.symbol + " " + std::string(nameOf(type.kind)) + " " + sizeText(type) +
             " " + (type.base ? registerText(*type.base) : "-") + "\n";
  }
  return table;
}

Templates::vector<TypeEntry> typesOfTable(std::string_view table) {
  Templates::vector<TypeEntry> types;
  while (!table.empty()) {
    const auto end = std::min(table.find('\n'), table.size());
    const DictionaryRow row(table.substr(0, end));
    if (!row.isBlank()) types.push_back(typeOf(row));
    table.remove_prefix(std::min(end + 1, table.size()));
  }
  return types;
}

const Templates::vector<TypeEntry>& registeredTypes() {
  static const auto types = typesOfTable(Embedded::smpteTypes());
  return types;
}

}  // namespace Vantor::Registers
