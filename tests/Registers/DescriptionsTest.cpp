#include "Registers/Descriptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Core/Dictionary/EmbeddedText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "PublishedRegisters.h"

namespace Vantor::Registers {
namespace {

using testing::HasSubstr;

Explanation explanationOf(const char* key) { return registeredExplanation(MetaMetadata::registerKey(key)); }

TEST(Descriptions, AreARowForEachEntryThatHasAny) {
  Entries entries;
  const auto one = MetaMetadata::registerKey("060e2b34.01010101.01010101.00000000");
  const auto other = MetaMetadata::registerKey("060e2b34.01010101.01010102.00000000");
  entries.elements = {{one, "One", {}, {}, {"Counts one.", "ST 1"}}, {other, "Other", {}, {}, {}}};
  const auto table = tableOfDescriptions(entries);
  EXPECT_THAT(table, HasSubstr("\n060e2b34.01010101.01010101.00000000\tST 1\tCounts one.\n"));
  EXPECT_EQ(explanationIn(table, one).definition, "Counts one.");
  EXPECT_EQ(explanationIn(table, one).document, "ST 1");
  EXPECT_EQ(explanationIn(table, other).definition, "");
}

TEST(Descriptions, OfTheLibraryExplainSetsPropertiesLabelsAndEnumerations) {
  EXPECT_NE(explanationOf("060e2b34.01010102.07020103.01050000").definition, "");  // StartTimecode
  EXPECT_NE(explanationOf("060e2b34.027f0101.0d010101.01012f00").definition, "");  // Preface
  EXPECT_EQ(explanationOf("060e2b34.01010101.0f0e0d0c.00010000").definition, "");
}

TEST_F(PublishedRegisters, MakeTheDescriptionsInTheLibrary) {
  const auto table = tableOfDescriptions(registers());
  EXPECT_GT(std::count(table.begin(), table.end(), '\n'), 6900);
  EXPECT_TRUE(table == Embedded::smpteDescriptions());
  const auto isExplained = [](const auto& entry) {
    const auto found = registeredExplanation(entry.key);
    return found.definition == entry.texts.definition && found.document == entry.texts.document;
  };
  for (std::size_t i = 0; i < registers().labels.size(); i += 500) EXPECT_TRUE(isExplained(registers().labels[i]));
  for (std::size_t i = 0; i < registers().elements.size(); i += 500) EXPECT_TRUE(isExplained(registers().elements[i]));
}

}  // namespace
}  // namespace Vantor::Registers
