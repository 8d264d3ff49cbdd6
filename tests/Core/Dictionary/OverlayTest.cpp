#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Dictionary/DefinitionAdder.h"
#include "tests/Core/Dictionary/DictionaryTexts.h"

/// What a newer text does to an older one.
namespace Vantor {
namespace {

using MetaMetadata::registerKey;
using ::testing::ElementsAre;

constexpr const char* kOlder = R"(
enum Grade UInt8
  0  Rough
  1  Fine
060e2b34.02530101.0f0e0d0c.00000001  Shot  -
  4001  060e2b34.01010101.0f0e0d0c.00000001  Director  ISO7String  optional
  -     060e2b34.01010101.0f0e0d0c.00000002  Grade     Grade       optional
060e2b34.02530101.0f0e0d0c.00000002  Take  Shot
label 060e2b34.04010101.0f0e0d0c.01000000  Scheme  Acme's scheme
)";

Types::UniversalLabel label(const std::string& text) { return Types::UniversalLabel(registerKey(text)); }

Definitions replaced(const std::string& newer) {
  Definitions definitions = readRows(kOlder);
  definitions.readText(dictionaryText(newer), "newer.dictionary", Definitions::Overlay::kReplace);
  return definitions;
}

std::string refusedByNewer(const std::string& newer) {
  return refusalOf([&] { replaced(newer).check(); });
}

TEST(Overlay, ReplacesASetInItsPlaceWithAllItsProperties) {
  auto definitions = replaced(R"(
060e2b34.02530101.0f0e0d0c.00000001  Shot  -  abstract  name=Scene
  -  060e2b34.01010101.0f0e0d0c.00000003  Length  UInt32  required
)");
  ASSERT_EQ(definitions.sets().size(), 2u);
  EXPECT_EQ(definitions.sets()[0].tagName, "Scene");
  EXPECT_EQ(definitions.sources()[definitions.sets()[0].origin.source], "newer.dictionary");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_FALSE(dictionary->findSetBySymbol("Shot")->isConcrete());
  EXPECT_THAT(propertySymbols(*dictionary->findSetBySymbol("Take")), ElementsAre("Length"));
}

TEST(Overlay, ReplacesAPropertyForEverySetThatHasIt) {
  auto definitions = replaced(R"(
060e2b34.02530101.0f0e0d0c.00000003  Cut  -
  -  060e2b34.01010101.0f0e0d0c.00000001  DirectorName  UTF16String  required
)");
  EXPECT_EQ(definitions.properties().size(), 2u);
  const auto dictionary = definitions.makeDictionary();
  const auto& shot = *dictionary->findSetBySymbol("Shot");
  EXPECT_THAT(propertySymbols(shot), ElementsAre("DirectorName", "Grade"));
  EXPECT_EQ(shot.attributes()[0].metaElement()->dataType(), Types::Identifiers::kUTF16String);
  EXPECT_EQ(shot.attributes()[0].staticLocalTag(), 0x4001) << "which is the set's";
}

TEST(Overlay, ReplacesAnEnumerationAndTheTypeOfWhatUsesIt) {
  auto definitions = replaced("enum Grade UInt16\n  500  Best\n");
  ASSERT_EQ(definitions.enumerations().size(), 1u);
  ASSERT_EQ(definitions.enumerations()[0].values.size(), 1u);
  EXPECT_EQ(definitions.enumerations()[0].values[0].name, "Best");
  EXPECT_EQ(definitions.makeDictionary()->findElement(label(propertyKey(2)))->dataType(), Types::Identifiers::kUInt16);
}

TEST(Overlay, ReplacesALabelByKeyOrBySymbol) {
  auto definitions = replaced("label 060e2b34.04010101.0f0e0d0c.01000000  NewScheme  The new one\n");
  EXPECT_EQ(definitions.labels().size(), 1u);
  EXPECT_EQ(definitions.findLabel("NewScheme")->name, "The new one");
  EXPECT_EQ(definitions.findLabel("Scheme"), nullptr);
  definitions = replaced("label 060e2b34.04010101.0f0e0d0c.09000000  Scheme  Moved\n");
  EXPECT_EQ(definitions.labels().size(), 1u);
  EXPECT_EQ(definitions.findLabel(label("060e2b34.04010101.0f0e0d0c.09000000"))->name, "Moved");
  EXPECT_EQ(definitions.findLabel(label("060e2b34.04010101.0f0e0d0c.01000000")), nullptr);
}

TEST(Overlay, GivesASetAnotherSymbolOrAnotherKey) {
  const auto renamed = replaced("060e2b34.02530101.0f0e0d0c.00000002  Version  Shot\n");
  EXPECT_EQ(renamed.findSet("Version"), &renamed.sets()[1]);
  EXPECT_EQ(renamed.findSet("Take"), nullptr);
  EXPECT_EQ(renamed.findSet(registerKey(setKey(2))), &renamed.sets()[1]);
  const auto moved = replaced("060e2b34.02530101.0f0e0d0c.00000009  Take  Shot\n");
  EXPECT_EQ(moved.sets().size(), 2u);
  EXPECT_EQ(moved.findSet(registerKey(setKey(9))), &moved.sets()[1]);
  EXPECT_EQ(moved.findSet(registerKey(setKey(2))), nullptr);
}

TEST(Overlay, LetsAKeyThatASetGaveUpBeUsedAgain) {
  const auto definitions = replaced(R"(
060e2b34.02530101.0f0e0d0c.00000009  Take  Shot
060e2b34.02530101.0f0e0d0c.00000002  Rest  Shot
)");
  ASSERT_EQ(definitions.sets().size(), 3u);
  EXPECT_EQ(definitions.findSet(registerKey(setKey(2)))->symbol, "Rest");
  EXPECT_EQ(definitions.findSet(registerKey(setKey(9)))->symbol, "Take");
}

TEST(Overlay, AddsWhatIsNew) {
  auto definitions =
      replaced("060e2b34.02530101.0f0e0d0c.00000003  Cut  Take\n  - " + propertyKey(3) + " Length UInt32 optional\n");
  EXPECT_THAT(propertySymbols(*definitions.makeDictionary()->findSetBySymbol("Cut")),
              ElementsAre("Director", "Grade", "Length"));
}

TEST(Overlay, ReplacesASetThatAnEarlierTextExtended) {
  Definitions definitions = readRows(kOlder, "extend Shot\n  - " + propertyKey(3) + " Mine UInt8 optional\n");
  definitions.readText(dictionaryText("060e2b34.02530101.0f0e0d0c.00000001  Shot  -\n"), "newer.dictionary",
                       Definitions::Overlay::kReplace);
  EXPECT_THAT(propertySymbols(*definitions.makeDictionary()->findSetBySymbol("Shot")), ElementsAre());
}

TEST(Overlay, ReplacesNothingTwice) {
  EXPECT_EQ(refusedByNewer("060e2b34.02530101.0f0e0d0c.00000001  Shot  -\n"
                           "060e2b34.02530101.0f0e0d0c.00000001  Shot  -\n"),
            "newer.dictionary:3: the key is that of the set Shot (newer.dictionary:2); to add properties to that set, "
            "write: extend Shot");
  EXPECT_EQ(refusedByNewer("060e2b34.02530101.0f0e0d0c.00000001  Shot  -\n"
                           "060e2b34.02530101.0f0e0d0c.00000008  Shot  -\n"),
            "newer.dictionary:3: there is a set Shot already (newer.dictionary:2), with another key; choose another "
            "symbol");
  EXPECT_EQ(refusedByNewer("enum Grade UInt8\nenum Grade UInt8\n"),
            "newer.dictionary:3: there is an enumeration 'Grade' already (newer.dictionary:2); choose another name");
  EXPECT_EQ(refusedByNewer("label 060e2b34.04010101.0f0e0d0c.01000000  Scheme  A\n"
                           "label 060e2b34.04010101.0f0e0d0c.01000000  Scheme  B\n"),
            "newer.dictionary:3: the label is defined already, as Scheme (newer.dictionary:2); take one of the two "
            "away");
  EXPECT_EQ(refusedByNewer("extend Take\n  - " + propertyKey(1) + " D UTF16String optional\nextend Shot\n  - " +
                           propertyKey(1) + " E UTF16String optional\n"),
            "newer.dictionary:5: the key is that of the property D UTF16String (newer.dictionary:3); write it as it "
            "stands there, or take another key");
}

TEST(Overlay, RefusesASymbolThatTheNewerTextGaveToAnotherSet) {
  EXPECT_EQ(refusedByNewer("060e2b34.02530101.0f0e0d0c.00000001  Take  -\n"),
            "newer.dictionary:2: there is a set Take already (first.dictionary:9), with another key; choose another "
            "symbol");
}

TEST(Overlay, IsCheckedWithWhatIsLeftOfTheOlderText) {
  EXPECT_EQ(refusedByNewer("060e2b34.02530101.0f0e0d0c.00000001  Scene  -\n"),
            "first.dictionary:9: Take inherits from 'Shot', which is not defined; name a set of this or another file, "
            "or '-'");
}

TEST(Overlay, LetsTwoSetsSwapTheirSymbols) {
  auto definitions = replaced(R"(
060e2b34.02530101.0f0e0d0c.00000001  Take  Shot
060e2b34.02530101.0f0e0d0c.00000002  Shot  -
)");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_EQ(dictionary->findSet(registerKey("060e2b34.02530101.0f0e0d0c.00000001"))->symbol(), "Take");
  EXPECT_EQ(dictionary->findSet(registerKey("060e2b34.02530101.0f0e0d0c.00000002"))->symbol(), "Shot");
}

TEST(Overlay, IsRefusedWhenTwoSetsHaveOneSymbolInTheEnd) {
  EXPECT_EQ(refusedByNewer("060e2b34.02530101.0f0e0d0c.00000001  Take  -\n"),
            "newer.dictionary:2: there is a set Take already (first.dictionary:9), with another key; choose another "
            "symbol");
}

TEST(Overlay, GivesAPropertyAnotherKeyInSetsThatItDoesNotMentionToo) {
  auto definitions = replaced(R"(
060e2b34.02530101.0f0e0d0c.00000003  Cut  -
  -  060e2b34.01010101.0f0e0d0c.00000009  Director  UTF16String  optional
)");
  const auto dictionary = definitions.makeDictionary();
  const auto& shot = *dictionary->findSetBySymbol("Shot");
  ASSERT_THAT(propertySymbols(shot), ElementsAre("Director", "Grade"));
  EXPECT_EQ(shot.attributes()[0].metaElement()->key(), label("060e2b34.01010101.0f0e0d0c.00000009"));
  EXPECT_EQ(shot.attributes()[0].metaElement(), dictionary->findSetBySymbol("Cut")->attributes()[0].metaElement());
  EXPECT_EQ(dictionary->findElement(label("060e2b34.01010101.0f0e0d0c.00000001")), nullptr);
}

TEST(Overlay, ByARegisterGivesNoAdviceOnHowToWriteIt) {
  Definitions definitions = readRows(kOlder);
  const uint32 source = definitions.addRegister("Groups.xml");
  DefinitionAdder adder(definitions, Definitions::Overlay::kReplace);
  SetDefinition set;
  set.key = registerKey(setKey(3));
  set.symbol = set.tagName = "Cut";
  set.parent = "Splice";
  set.origin = {source, 77};
  adder.addSet(set);
  adder.finish();
  EXPECT_EQ(refusalOf([&] { definitions.check(); }),
            "Groups.xml:77: Cut inherits from 'Splice', which is not defined; the register cannot be used as it is, "
            "take another edition");
}

}  // namespace
}  // namespace Vantor
