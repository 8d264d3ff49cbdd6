#include "Core/Metadata/UnknownTags.h"

#include <gtest/gtest.h>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

const MetaMetadata::MetaMetadataSet& thing() { return *testDictionary()->findSet(keyOf("Thing")); }

TEST(UnknownMark, IsTheStaticTagWhereThatStandsForTheLabelInEveryFile) {
  const auto mark = markOf(Types::LocalTag(0x4001), &labelOf("Number"), *testDictionary());
  EXPECT_EQ(mark.tag->value(), 0x4001);
  EXPECT_FALSE(mark.label);
}

TEST(UnknownMark, HasTheLabelThatThePrimerGivesAStaticTagBesideTheDictionary) {
  const auto mark = markOf(Types::LocalTag(0x4001), &labelOf("Foreign"), *testDictionary());
  EXPECT_EQ(mark.tag->value(), 0x4001);
  EXPECT_EQ(*mark.label, labelOf("Foreign"));
}

TEST(UnknownMark, HasNoDynamicTag) {
  EXPECT_EQ(*markOf(Types::LocalTag(0x8001), &labelOf("Number"), *testDictionary()).label, labelOf("Number"));
  const auto empty = markOf(Types::LocalTag(0x8001), nullptr, *testDictionary());
  EXPECT_FALSE(empty.tag);
  EXPECT_FALSE(empty.label);
}

TEST(UnknownTags, GiveALabelTheStaticTagOfTheSet) {
  PartitionDictionary tags(testDictionary());
  EXPECT_EQ(UnknownTags(thing(), tags).tagFor({{}, labelOf("Number")}).value(), 0x4001);
}

TEST(UnknownTags, GiveLabelsTheSameTagsInAnyOrder) {
  const UnknownMark foreign{Types::LocalTag(0x4001), labelOf("Foreign")}, number{{}, labelOf("Number")}, none;
  const UnknownMark dynamic{{}, labelOf("Dynamic")}, dark{{}, Types::UniversalLabel(darkSetKey())};
  PartitionDictionary tags(testDictionary()), others(testDictionary());
  enterLabels({dynamic, none, dark, foreign, number, dark}, tags);
  enterLabels({dark, number, foreign, dynamic}, others);
  ASSERT_EQ(tags.primerEntries().size(), 4u);
  for (const auto* mark : {&foreign, &number, &dynamic, &dark}) {
    EXPECT_NE(tags.tryFindTag(*mark->label), 0);
    EXPECT_EQ(tags.tryFindTag(*mark->label), others.tryFindTag(*mark->label));
  }
  EXPECT_EQ(tags.tryFindTag(*foreign.label), 0x4001);
}

TEST(UnknownTags, LetTheLabelCountWhereTheTagIsTaken) {
  PartitionDictionary tags(testDictionary());
  tags.addPrimerEntry({0x4001, labelOf("Number").key()});
  EXPECT_EQ(UnknownTags(thing(), tags).tagFor({Types::LocalTag(0x4001), labelOf("Foreign")}).value(), 0xFFFF);
}

TEST(UnknownTags, GiveEmptyMarksDifferentTags) {
  PartitionDictionary tags(testDictionary());
  UnknownTags unknown(thing(), tags);
  const auto first = unknown.tagFor({}), second = unknown.tagFor({});
  EXPECT_NE(first.value(), second.value());
}

}  // namespace
}  // namespace Vantor
