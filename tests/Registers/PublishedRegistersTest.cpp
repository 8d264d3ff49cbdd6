#include "PublishedRegisters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/RegisterTypes.h"

// The definitions from the registers, against tables that another program made from the same registers.

namespace Vantor::Registers {
namespace {

using namespace Types::Identifiers;

using TableRow = std::map<std::string, std::string>;
using Table = std::vector<TableRow>;

std::vector<std::string> columnsOf(const std::string& line) {
  std::vector<std::string> columns(1);
  for (const char c : line) {
    if (c == '\t') {
      columns.emplace_back();
    } else {
      columns.back() += c;
    }
  }
  return columns;
}

Table tableIn(const Path& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  const auto names = columnsOf(line);
  Table table;
  while (std::getline(file, line)) {
    const auto columns = columnsOf(line);
    TableRow row;
    for (std::size_t i = 0; i < names.size() && i < columns.size(); ++i) row[names[i]] = columns[i];
    table.push_back(std::move(row));
  }
  EXPECT_FALSE(table.empty()) << path;
  return table;
}

/// By the text of their keys.
std::map<std::string, TableRow> byKey(const Table& table, const std::string& column) {
  std::map<std::string, TableRow> rows;
  for (const auto& row : table) rows[row.at(column)] = row;
  return rows;
}

std::string digitsOf(const KLV::Key& key) {
  std::string digits;
  for (const char c : MetaMetadata::registerText(key)) {
    if (c != '.') digits += c;
  }
  return digits;
}

std::string told(Identifier collection, Identifier value) {
  return (collection == kNone ? "" : std::string(name(collection)) + " of ") + name(value);
}

/// The tables name a type for plain bytes that no property may have.
std::string toldByTable(const std::string& resolved) { return resolved == "DataValue" ? "DataStream" : resolved; }

TEST_F(PublishedRegisters, AreReadToTheLastEntry) {
  EXPECT_EQ(registers().groups.size(), 449u);
  EXPECT_EQ(registers().elements.size(), 3005u);
  EXPECT_EQ(registers().types.size(), 496u);
  EXPECT_EQ(registers().labels.size(), 3278u);
}

TEST_F(PublishedRegisters, HaveTheTypesThatCarryThoseOfEveryProperty) {
  const RegisterTypes types(registers());
  for (const auto& row : tableIn(folder() / "type_resolution.tsv")) {
    const auto type = types.find(MetaMetadata::registerKey(row.at("type_key")));
    ASSERT_TRUE(type.has_value()) << row.at("symbol");
    EXPECT_EQ(told(type->collection, type->value), toldByTable(row.at("resolved"))) << row.at("symbol");
  }
}

/// The keys of the sets that belong into the dictionary.
std::set<std::string> wantedSets(const std::map<std::string, TableRow>& groups, const Table& families) {
  std::set<std::string> wanted;
  for (const auto& family : families) {
    auto key = family.at("key");
    const bool isHeaderMetadata =
        family.at("header_metadata") == "yes" || family.at("header_metadata") == "object model";
    if (!isHeaderMetadata || groups.at(key).at("klv_syntax").find("53") == std::string::npos) continue;
    for (; !key.empty(); key = groups.at(key).at("parent_key")) wanted.insert(key);
  }
  return wanted;
}

TEST_F(PublishedRegisters, MakeTheSetsOfHeaderMetadataByKey) {
  const auto groups = byKey(tableIn(folder() / "groups.tsv"), "key");
  const auto wanted = wantedSets(groups, tableIn(folder() / "group_families.tsv"));
  const auto found = definitions();
  ASSERT_EQ(found.sets().size(), wanted.size());
  auto key = wanted.begin();
  for (const auto& set : found.sets()) {
    const auto& row = groups.at(*key++);
    EXPECT_EQ(digitsOf(set.key), row.at("key"));
    EXPECT_EQ(set.symbol, row.at("symbol"));
    const auto parent = row.at("parent_key");
    EXPECT_EQ(set.parent, parent.empty() ? "" : groups.at(parent).at("symbol")) << set.symbol;
    EXPECT_EQ(set.isConcrete, row.at("concrete") == "1") << set.symbol;
    EXPECT_EQ(set.tagName, set.symbol);
  }
}

TEST_F(PublishedRegisters, MakeTheirPropertiesInTheOrderOfTheRegister) {
  std::map<std::string, Table> expected;
  for (const auto& row : tableIn(folder() / "group_properties.tsv")) expected[row.at("group_key")].push_back(row);
  const auto elements = byKey(tableIn(folder() / "elements.tsv"), "key");
  const auto found = definitions();
  for (const auto& set : found.sets()) {
    const auto& rows = expected[digitsOf(set.key)];
    // The InstanceUID that files give it, before what the register lists.
    const std::size_t added = set.symbol == "MetaDictionary" ? 1 : 0;
    ASSERT_EQ(set.properties.size(), rows.size() + added) << set.symbol;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto& use = set.properties[i + added];
      const auto& property = found.properties()[use.property];
      const auto& row = rows[i];
      EXPECT_EQ(digitsOf(KLV::Key(property.key.rawBuffer())), row.at("element_key"));
      EXPECT_EQ(property.symbol, elements.at(row.at("element_key")).at("symbol"));
      EXPECT_EQ(use.staticLocalTag, row.at("local_tag").empty() ? 0 : std::stoi(row.at("local_tag"), nullptr, 16));
      EXPECT_EQ(use.requiredStatus, row.at("optional") == "1" ? 4u : 0u) << property.symbol;
    }
  }
}

/// The core types of the property by the tables alone.
std::string carrierOf(const TableRow& element, const std::map<std::string, TableRow>& types,
                      const std::map<std::string, TableRow>& overrides) {
  if (element.at("symbol") == "InstanceID" || element.at("symbol") == "LinkedGenerationID") return "UUID";
  if (overrides.count(element.at("key")) != 0) return overrides.at(element.at("key")).at("resolved");
  const auto type = types.find(element.at("type_key"));
  if (type == types.end()) return "DataStream";
  auto resolved = toldByTable(type->second.at("resolved"));
  const auto reference = resolved.find("WeakReference");
  const bool isToDefinition = type->second.at("note").find("AUID/UL of a definition") != std::string::npos;
  if (reference != std::string::npos && isToDefinition) resolved.replace(reference, std::string::npos, "AUID");
  return resolved;
}

TEST_F(PublishedRegisters, GiveEveryPropertyTheTypeOfItsTypeOrItsOwn) {
  const auto elements = byKey(tableIn(folder() / "elements.tsv"), "key");
  const auto types = byKey(tableIn(folder() / "type_resolution.tsv"), "type_key");
  const auto overrides = byKey(tableIn(folder() / "property_overrides.tsv"), "element_key");
  const auto found = definitions();
  EXPECT_EQ(found.properties().size(), 1800u);
  for (const auto& property : found.properties()) {
    const auto& element = elements.at(digitsOf(KLV::Key(property.key.rawBuffer())));
    EXPECT_EQ(told(property.type.collection, property.type.value), carrierOf(element, types, overrides))
        << property.symbol;
  }
}

TEST_F(PublishedRegisters, NameTheNumbersOfEveryEnumerationThatIsUsed) {
  std::map<std::string, std::string> symbols;
  for (const auto& row : tableIn(folder() / "types.tsv")) symbols[row.at("key")] = row.at("symbol");
  std::map<std::string, std::string> expected;
  for (const auto& row : tableIn(folder() / "types_enum.tsv")) {
    expected[symbols.at(row.at("type_key"))] += row.at("value") + " " + row.at("symbol") + "\n";
  }
  const auto found = definitions();
  EXPECT_EQ(found.enumerations().size(), 35u);
  for (const auto& enumeration : found.enumerations()) {
    std::ostringstream values;
    for (const auto& value : enumeration.values) values << value.number << " " << value.name << "\n";
    EXPECT_EQ(values.str(), expected[std::string(enumeration.name)]) << enumeration.name;
  }
}

TEST_F(PublishedRegisters, MakeTheLabelsByKey) {
  const auto rows = byKey(tableIn(folder() / "labels.tsv"), "key");
  Definitions found;
  addLabels(registers(), found);
  ASSERT_EQ(found.labels().size(), rows.size());
  auto row = rows.begin();
  for (const auto& label : found.labels()) {
    EXPECT_EQ(digitsOf(KLV::Key(label.key.rawBuffer())), row->first);
    EXPECT_EQ(label.symbol, row->second.at("symbol"));
    EXPECT_EQ(label.name, row->second.at("name"));
    ++row;
  }
}

TEST_F(PublishedRegisters, LeadEveryLineToItsEntry) {
  const auto found = definitions();
  std::vector<std::string> lines(1);
  std::ifstream file(folder() / "xml" / "Groups.xml");
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  for (const auto& set : found.sets()) {
    ASSERT_LT(set.origin.line, lines.size());
    EXPECT_THAT(lines[set.origin.line], testing::HasSubstr("<Entry>")) << set.symbol;
    for (const auto& use : set.properties) {
      const auto* element = set.symbol == "MetaDictionary" && &use == &set.properties[0] ? "<Entry>" : "<Record>";
      EXPECT_THAT(lines.at(use.origin.line), testing::HasSubstr(element)) << set.symbol;
    }
  }
}

}  // namespace
}  // namespace Vantor::Registers
