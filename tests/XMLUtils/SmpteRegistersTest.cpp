#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "PublishedRegisters.h"

// What the registers define now, against the data that was compiled in before.

namespace Vantor::XMLUtils {
namespace {

using Rows = std::vector<std::string>;

/// Two rows of a set say alike which coding it has.
std::string withAnyCoding(std::string key) { return key.replace(11, 2, "7f"); }

Rows compiledRows() {
  return {
#define VANTOR_SET(key, symbol, parent, kind) withAnyCoding(#key) + " " #symbol " " #parent " " #kind,
#define VANTOR_PROPERTY(tag, key, symbol, type, status) \
  "  " #tag " " #key " " #symbol " " #type " " #status " " #symbol,
#define VANTOR_PROPERTY_AS(tag, key, symbol, type, status, name) \
  "  " #tag " " #key " " #symbol " " #type " " #status " " #name,
#include "Core/Dictionary/SmpteRegisters.inc"
  };
}

/// Without the names of enumerations and of the sets that references lead to, which the former rows do not tell.
std::string formerType(PropertyType type) {
  type.enumeration = {};
  type.target = {};
  return textOf(type);
}

std::string rowOf(const SetDefinition& set) {
  const std::string parent = set.parent.empty() ? "-" : std::string(set.parent);
  return MetaMetadata::registerText(set.key) + " " + std::string(set.symbol) + " " + parent +
         (set.isConcrete ? " concrete" : " abstract");
}

std::string rowOf(const Definitions& definitions, const PropertyUse& use) {
  const auto& property = definitions.properties()[use.property];
  char tag[8];
  std::snprintf(tag, sizeof tag, "%04x", use.staticLocalTag);
  return std::string("  ") + tag + " " + MetaMetadata::registerText(KLV::Key(property.key.rawBuffer())) + " " +
         std::string(property.symbol) + " " + formerType(property.type) +
         (use.requiredStatus == 0 ? " required " : " optional ") + std::string(property.xmlName);
}

class SmpteRegisters : public PublishedRegisters {};

TEST_F(SmpteRegisters, AreWhatWasCompiledInBefore) {
  const auto definitions = definitionsOf(definitionsText(registers()));
  Rows rows;
  for (const auto& set : definitions.sets()) {
    rows.push_back(rowOf(set));
    for (const auto& use : set.properties) rows.push_back(rowOf(definitions, use));
  }
  const auto expected = compiledRows();
  EXPECT_EQ(definitions.sets().size(), 352u);
  EXPECT_EQ(definitions.properties().size(), 1800u);
  ASSERT_EQ(rows.size(), expected.size());
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i], expected[i]);
}

}  // namespace
}  // namespace Vantor::XMLUtils
