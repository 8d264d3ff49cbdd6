#include "Core/Metadata/SetValues.h"

#include <gtest/gtest.h>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

TEST(SetValues, AreNoneForPropertiesWithoutValueAndOfOtherTypes) {
  PartitionMetadata partition(testDictionary());
  auto& thing = addSet(partition, "Thing", 1);
  EXPECT_EQ(integerOf(thing, "Number"), std::nullopt) << "unset";
  EXPECT_EQ(integerOf(thing, "Nonsense"), std::nullopt) << "no such property";
  thing.set("Text", u"5");
  EXPECT_EQ(integerOf(thing, "Text"), std::nullopt);
  EXPECT_EQ(valueOf<Types::UInt32>(thing, "Text"), nullptr);
}

TEST(SetValues, AreNumbersOfAnyIntegerType) {
  PartitionMetadata partition(testDictionary());
  auto& thing = addSet(partition, "Thing", 1);
  thing.set("Number", 0xffffffffu);
  thing.set("Flag", true);
  EXPECT_EQ(integerOf(thing, "Number"), 0xffffffff);
  EXPECT_EQ(integerOf(thing, "Flag"), 1);
  EXPECT_EQ(integerOf(Types::Int16(-2)), -2);
  ASSERT_NE(valueOf<Types::UInt32>(thing, "Number"), nullptr);
}

TEST(SetValues, AreIdentifiersAsLabels) {
  PartitionMetadata partition(testDictionary());
  auto& thing = addSet(partition, "Thing", 1);
  EXPECT_EQ(labelOf(thing, "Generation"), std::nullopt);
  thing.set("Generation", uid(7));
  ASSERT_TRUE(labelOf(thing, "Generation"));
  EXPECT_EQ(labelOf(thing, "Generation")->octet(16), 7);
  EXPECT_TRUE(labelsOf(thing, "Generation").empty()) << "no collection";
}

}  // namespace
}  // namespace Vantor
