#include "Core/Dictionary/Definitions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <utility>

#include "Core/Dictionary/DefinitionAdder.h"
#include "Core/Platform/Path.h"
#include "tests/Core/Dictionary/DictionaryTexts.h"

namespace Vantor {
namespace {

using namespace Types::Identifiers;
using MetaMetadata::kDefaultPrefix;
using MetaMetadata::kNamespaceURI;
using MetaMetadata::kSchemaIndex;
using MetaMetadata::kTagName;
using MetaMetadata::registerKey;
using MetaMetadata::registerText;
using MetaMetadata::Vocabulary;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kShot = "060e2b34.02530101.0f0e0d0c.00000001  AcmeShot  -\n";

Types::UniversalLabel label(const std::string& text) { return Types::UniversalLabel(registerKey(text)); }

std::vector<std::string> setSymbols(const Definitions& definitions) {
  std::vector<std::string> symbols;
  for (const auto& set : definitions.sets()) symbols.emplace_back(set.symbol);
  return symbols;
}

std::string whereOf(const Definitions& definitions, const Origin& origin) {
  return definitions.sources()[origin.source] + ":" + std::to_string(origin.line);
}

TEST(Definitions, AreNoneAtFirst) {
  Definitions definitions;
  EXPECT_THAT(definitions.sets(), IsEmpty());
  EXPECT_THAT(definitions.sources(), IsEmpty());
  const auto dictionary = definitions.makeDictionary();
  EXPECT_EQ(dictionary->metaMetadataSetBegin(), dictionary->metaMetadataSetEnd());
}

TEST(Definitions, HoldEveryColumnOfASetAndOfItsProperties) {
  const auto definitions = readRows(R"(
060e2b34.02530101.0f0e0d0c.00000001  AcmeShot  -  abstract  name=AcmeScene
  1a02  060e2b34.01010101.0f0e0d0c.00000001  Director  UTF16String  best-effort  name=DirectedBy
)");
  ASSERT_EQ(definitions.sets().size(), 1u);
  const auto& set = definitions.sets()[0];
  EXPECT_EQ(set.key, registerKey(setKey(1)));
  EXPECT_EQ(set.symbol, "AcmeShot");
  EXPECT_EQ(set.tagName, "AcmeScene");
  EXPECT_EQ(set.parent, "");
  EXPECT_FALSE(set.isConcrete);
  EXPECT_EQ(set.chosenNamespace, 0u);
  EXPECT_EQ(whereOf(definitions, set.origin), "first.dictionary:3");
  ASSERT_EQ(set.properties.size(), 1u);
  EXPECT_EQ(set.properties[0].property, 0u);
  EXPECT_EQ(set.properties[0].staticLocalTag, 0x1a02);
  EXPECT_EQ(set.properties[0].requiredStatus, 3u);
  EXPECT_EQ(whereOf(definitions, set.properties[0].origin), "first.dictionary:4");
  ASSERT_EQ(definitions.properties().size(), 1u);
  const auto& property = definitions.properties()[0];
  EXPECT_EQ(property.key, label(propertyKey(1)));
  EXPECT_EQ(property.symbol, "Director");
  EXPECT_EQ(property.tagName, "DirectedBy");
  EXPECT_EQ(property.type.value, kUTF16String);
  EXPECT_EQ(property.type.collection, kNone);
}

TEST(Definitions, TellTheFiveStatusesByNumber) {
  auto definitions = readRows(kShot + ("  - " + propertyKey(1) + " A UInt8 required\n") + "  - " + propertyKey(2) +
                              " B UInt8 encoder-required\n  - " + propertyKey(3) + " C UInt8 decoder-required\n  - " +
                              propertyKey(4) + " D UInt8 best-effort\n  - " + propertyKey(5) + " E UInt8 optional\n");
  const auto dictionary = definitions.makeDictionary();
  std::vector<uint32> statuses;
  for (const auto& attribute : dictionary->findSetBySymbol("AcmeShot")->attributes()) {
    statuses.push_back(attribute.requiredStatus());
  }
  EXPECT_THAT(statuses, ElementsAre(0u, 1u, 2u, 3u, 4u));
}

TEST(Definitions, ReadTagsInEitherCaseUpToTheLastStaticOne) {
  auto definitions = readRows(kShot + ("  0001 " + propertyKey(1) + " A UInt8 optional\n") + "  7FfF " +
                              propertyKey(2) + " B UInt8 optional\n  - " + propertyKey(3) + " C UInt8 optional\n");
  const auto dictionary = definitions.makeDictionary();
  const auto& set = *dictionary->findSetBySymbol("AcmeShot");
  EXPECT_EQ(set.findAttributeByStaticTag(1)->metaElement()->symbol(), "A");
  EXPECT_EQ(set.findAttributeByStaticTag(0x7fff)->metaElement()->symbol(), "B");
  EXPECT_EQ(set.attributes()[2].staticLocalTag(), 0);
}

TEST(Definitions, ReadKeysWithAndWithoutDotsAndURNInEitherCase) {
  const auto definitions = readRows(R"(
060e2b34.02530101.0f0e0d0c.00000001           A  -
060E2B34025301010F0E0D0C00000002              B  -
urn:smpte:ul:060e2b34.02530101.0f0e0d0c.00000003  C  -
06.0e.2b.34.02.53.01.01.0f.0e.0d.0c.00.00.00.04   D  -
  -  urn:smpte:ul:060e2b34010101010f0e0d0c00000001  P  UInt8  optional
)");
  ASSERT_EQ(definitions.sets().size(), 4u);
  for (uint32 i = 0; i < 4; ++i) EXPECT_EQ(definitions.sets()[i].key, registerKey(setKey(i + 1)));
  EXPECT_EQ(definitions.properties()[0].key, label(propertyKey(1)));
}

TEST(Definitions, TakeKeysOfAnyCodingForLocalSetsWithTwoByteTags) {
  auto definitions = readRows(R"(
060e2b34.027f0101.0f0e0d0c.00000001  Any    -
060e2b34.02530101.0f0e0d0c.00000002  Local  -
)");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_EQ(dictionary->findSetBySymbol("Any")->key(), registerKey(setKey(1)));
  EXPECT_EQ(dictionary->findSetBySymbol("Local")->key(), registerKey(setKey(2)));
}

TEST(Definitions, AreFoundByKeyWhateverItsVersionAndBySymbol) {
  const auto definitions = readRows(std::string(kShot) + "  - " + propertyKey(1) + R"( Director UTF16String optional
enum Grade UInt8
label 060e2b34.04010101.0f0e0d0c.01000000  Scheme  A scheme
)");
  EXPECT_EQ(definitions.findSet(registerKey("060e2b34.02530101.0f0e0d0c.00000001")), &definitions.sets()[0]);
  EXPECT_EQ(definitions.findSet(registerKey("060e2b34.0213017e.0f0e0d0c.00000001")), &definitions.sets()[0]);
  EXPECT_EQ(definitions.findSet(registerKey(setKey(2))), nullptr);
  EXPECT_EQ(definitions.findSet("AcmeShot"), &definitions.sets()[0]);
  EXPECT_EQ(definitions.findSet("acmeShot"), nullptr);
  EXPECT_EQ(definitions.findProperty(label("060e2b34.0101017e.0f0e0d0c.00000001")), &definitions.properties()[0]);
  EXPECT_EQ(definitions.findProperty(label("060e2b34.01020101.0f0e0d0c.00000001")), nullptr);
  EXPECT_EQ(definitions.findEnumeration("Grade"), &definitions.enumerations()[0]);
  EXPECT_EQ(definitions.findEnumeration("Grades"), nullptr);
  EXPECT_EQ(definitions.findLabel(label("060e2b34.0401017e.0f0e0d0c.01000000")), &definitions.labels()[0]);
  EXPECT_EQ(definitions.findLabel(label("060e2b34.04010101.0f0e0d0c.02000000")), nullptr);
  EXPECT_EQ(definitions.findLabel("Scheme"), &definitions.labels()[0]);
  EXPECT_EQ(definitions.findLabel("A scheme"), nullptr);
}

TEST(Definitions, ReadTypesOfEveryShape) {
  const auto definitions =
      readRows(std::string(kShot) + "  - " + propertyKey(1) + " A BatchOf(UMID32) optional\n  - " + propertyKey(2) +
               " B ArrayOf(StrongReference(AcmeShot)) optional\n  - " + propertyKey(3) +
               " C WeakReference optional\n  - " + propertyKey(4) + " D ArrayOf(Grade) optional\n");
  const auto typeAt = [&](uint32 place) { return definitions.properties()[place].type; };
  EXPECT_EQ(typeAt(0), (PropertyType{kBatch, kUMID32, {}, {}}));
  EXPECT_EQ(typeAt(1), (PropertyType{kArray, kStrongReference, {}, "AcmeShot"}));
  EXPECT_EQ(typeAt(2), (PropertyType{kNone, kWeakReference, {}, {}}));
  EXPECT_EQ(typeAt(3), (PropertyType{kArray, kNone, "Grade", {}})) << "which is not read yet";
}

TEST(Definitions, HoldEnumerationsThatAreReadAfterTheirUse) {
  auto definitions = readRows(std::string(kShot) + "  - " + propertyKey(1) + " Grade Grade optional\n",
                              "enum Grade Int16\n  -32768  Low\n  0  Middle\n  32767  High\n");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_EQ((*dictionary->metaElementBegin())->dataType(), kInt16);
  const auto& grade = *definitions.findEnumeration("Grade");
  EXPECT_EQ(grade.base, kInt16);
  ASSERT_EQ(grade.values.size(), 3u);
  EXPECT_EQ(grade.values[0].number, -32768);
  EXPECT_EQ(grade.values[0].name, "Low");
  EXPECT_EQ(whereOf(definitions, grade.values[2].origin), "second.dictionary:5");
}

TEST(Definitions, HoldTheNamesOfLabelsAsTheyStandInTheirRows) {
  const auto definitions = readRows(
      "label 060e2b34.04010101.0f0e0d0c.01000000  One  Acme's  \"first\"  scheme # 1 \t\r\n"
      "label 060e2b34.04010101.0f0e0d0c.02000000 Two #2: caf\xc3\xa9");
  EXPECT_EQ(definitions.findLabel("One")->name, "Acme's  \"first\"  scheme # 1");
  EXPECT_EQ(definitions.findLabel("Two")->name, "#2: caf\xc3\xa9");
}

TEST(Definitions, ReadWhatOtherEditorsWrite) {
  const std::string rows =
      "# a comment\n\n" + std::string(kShot) + "  # another\n\n \t \n\t-\t" + propertyKey(1) + "\tA\tUInt8\toptional";
  std::string withReturns;
  for (const char character : dictionaryText(rows))
    withReturns += character == '\n' ? "\r\n" : std::string(1, character);
  for (const auto& text : {dictionaryText(rows), dictionaryText(rows) + "\n", withReturns, withReturns + "\r\n",
                           "\xef\xbb\xbf" + dictionaryText(rows), "# first\n  # second\n\n" + dictionaryText(rows)}) {
    Definitions definitions;
    definitions.readText(text, "any.dictionary");
    EXPECT_THAT(setSymbols(definitions), ElementsAre("AcmeShot"));
    ASSERT_EQ(definitions.properties().size(), 1u);
    EXPECT_EQ(definitions.properties()[0].symbol, "A");
    EXPECT_EQ(definitions.sets()[0].properties.size(), 1u);
  }
}

TEST(Definitions, OfATextWithoutRowsAreNone) {
  EXPECT_THAT(readRows("").sets(), IsEmpty());
  Definitions definitions;
  definitions.readText("dictionary 1", "bare.dictionary");
  EXPECT_THAT(definitions.sources(), ElementsAre("bare.dictionary"));
}

TEST(Definitions, OfAFileAreThoseOfItsText) {
  const auto folder = std::filesystem::temp_directory_path();
  const auto path = folder / ("vantor-\xc3\xa9-" + std::to_string(std::random_device()()) + ".dictionary");
  std::ofstream(path, std::ios::binary) << dictionaryText(kShot);
  Definitions definitions;
  definitions.readFile(path);
  std::filesystem::remove(path);
  EXPECT_THAT(setSymbols(definitions), ElementsAre("AcmeShot"));
  EXPECT_THAT(definitions.sources(), ElementsAre(Platform::pathToUTF8(path)));
}

TEST(Definitions, OfTheExampleMakeADictionary) {
  auto definitions = builtInDefinitions();
  definitions.readFile(Path(VANTOR_TEST_DATA_DIR) / "../../examples/acme.dictionary");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_EQ(propertySymbols(*dictionary->findSetBySymbol("AcmeShot")).back(), "Takes");
  EXPECT_EQ(propertySymbols(*dictionary->findSetBySymbol("Preface")).back(), "Shots");
  EXPECT_EQ(definitions.findLabel("AcmeScheme")->name, "Acme's descriptive metadata");
}

TEST(Definitions, OfTheBuiltInDataPassTheCheckThatOthersGo) {
  auto definitions = extendBuiltIn("");
  EXPECT_EQ(refusalOf([&] { definitions.check(); }), "nothing");
  EXPECT_EQ(definitions.sets().size(), builtInDefinitions().sets().size());
}

TEST(Definitions, AddAPropertyToABuiltInSetAndToThoseThatInheritFromIt) {
  auto definitions = extendBuiltIn("extend Package\n  - " + propertyKey(1) + " AcmeShots UInt8 required\n");
  const auto dictionary = definitions.makeDictionary();
  for (const char* symbol : {"Package", "MaterialPackage", "SourcePackage"}) {
    const auto& set = *dictionary->findSetBySymbol(symbol);
    EXPECT_EQ(set.attributes().size(), builtInDictionary()->findSetBySymbol(symbol)->attributes().size() + 1) << symbol;
    const auto* attribute = set.findAttribute(label(propertyKey(1)));
    ASSERT_NE(attribute, nullptr) << symbol;
    EXPECT_EQ(attribute->metaElement()->symbol(), "AcmeShots");
    EXPECT_EQ(attribute->requiredStatus(), 0u);
  }
  EXPECT_EQ(dictionary->findSetBySymbol("Preface")->findAttribute(label(propertyKey(1))), nullptr);
}

TEST(Definitions, PutAnAddedPropertyBehindThoseOfItsSet) {
  auto definitions = extendBuiltIn("extend Timecode\n  - " + propertyKey(1) + " Mine UInt8 optional\n");
  const auto dictionary = definitions.makeDictionary();
  const auto& set = *dictionary->findSetBySymbol("Timecode");
  EXPECT_EQ(propertySymbols(set).back(), "Mine");
  EXPECT_EQ(set.attributes().back().extensionAttribute(kSchemaIndex), u"13");
}

TEST(Definitions, OfTwoTextsReferToEachOther) {
  auto definitions = readRows("060e2b34.02530101.0f0e0d0c.00000001  Child  Parent\n  - " + propertyKey(1) +
                                  " Other StrongReference(Later) optional\n",
                              "060e2b34.02530101.0f0e0d0c.00000002  Parent  -\n  - " + propertyKey(2) +
                                  " Name UTF16String optional\n060e2b34.02530101.0f0e0d0c.00000003  Later  Child\n");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_THAT(propertySymbols(*dictionary->findSetBySymbol("Child")), ElementsAre("Name", "Other"));
  EXPECT_THAT(propertySymbols(*dictionary->findSetBySymbol("Later")), ElementsAre("Name", "Other"));
}

TEST(Definitions, ExtendASetOfAnEarlierText) {
  auto definitions = readRows(kShot, "extend AcmeShot\n  - " + propertyKey(1) + " Name UTF16String optional\n");
  EXPECT_THAT(propertySymbols(*definitions.makeDictionary()->findSetBySymbol("AcmeShot")), ElementsAre("Name"));
}

TEST(Definitions, LetABuiltInPropertyBeStatedAgainWithAndWithoutTarget) {
  for (const char* type : {"ArrayOf(StrongReference)", "ArrayOf(StrongReference(SubDescriptor))"}) {
    auto definitions = extendBuiltIn(
        "060e2b34.02530101.0f0e0d0c.00000001  AcmeShot  InterchangeObject\n"
        "  -  060e2b34.01010109.06010104.06100000  SubDescriptors  " +
        std::string(type) + "  optional\n");
    const auto properties = definitions.properties().size();
    EXPECT_EQ(properties, builtInDefinitions().properties().size());
    const auto dictionary = definitions.makeDictionary();
    EXPECT_THAT(propertySymbols(*dictionary->findSetBySymbol("AcmeShot")), Contains("SubDescriptors"));
  }
}

TEST(Definitions, LetAPropertyWithANameInXMLBeStatedAgainWithThatName) {
  auto definitions = extendBuiltIn(
      "060e2b34.02530101.0f0e0d0c.00000001  AcmeShot  -\n"
      "  3c0a  060e2b34.01010101.01011502.00000000  InstanceID  UUID  required  name=InstanceUID\n");
  const auto dictionary = definitions.makeDictionary();
  EXPECT_NE(dictionary->findSetBySymbol("AcmeShot")->instanceUIDAttribute(), nullptr);
}

TEST(Definitions, PutWhatFollowsIntoNamespacesOfTheirOwnInEitherVocabulary) {
  auto definitions = extendBuiltIn(
      "060e2b34.02530101.0f0e0d0c.00000001  Before  -\n"
      "namespace sets        acme   urn:example:acme:sets\n"
      "namespace properties  acmeP  urn:example:acme:properties\n"
      "060e2b34.02530101.0f0e0d0c.00000002  AcmeShot  -  name=AcmeScene\n  - " +
      propertyKey(1) + " Title UTF16String optional name=AcmeTitle\n");
  for (const auto vocabulary : {Vocabulary::kLegacy, Vocabulary::kST434_2014}) {
    const auto dictionary = definitions.makeDictionary(vocabulary);
    const auto& set = *dictionary->findSetBySymbol("AcmeShot");
    EXPECT_EQ(set.extensionAttribute(kTagName), u"AcmeScene");
    EXPECT_EQ(set.extensionAttribute(kDefaultPrefix), u"acme");
    EXPECT_EQ(set.extensionAttribute(kNamespaceURI), u"urn:example:acme:sets");
    const auto& property = *set.attributes()[0].metaElement();
    EXPECT_EQ(property.extensionAttribute(kTagName), u"AcmeTitle");
    EXPECT_EQ(property.extensionAttribute(kDefaultPrefix), u"acmeP");
    EXPECT_EQ(property.extensionAttribute(kNamespaceURI), u"urn:example:acme:properties");
    EXPECT_EQ(dictionary->findSetBySymbol("Before")->extensionAttribute(kNamespaceURI), setNamespace(vocabulary).uri);
  }
}

TEST(Definitions, KeepANamespaceForOneTextAndShareItWithAnother) {
  const auto definitions = readRows("namespace sets acme urn:acme\n" + std::string(kShot),
                                    "060e2b34.02530101.0f0e0d0c.00000002  Plain  -\n"
                                    "namespace sets acme urn:acme\n"
                                    "060e2b34.02530101.0f0e0d0c.00000003  Take  -\n"
                                    "namespace sets other urn:other\n"
                                    "060e2b34.02530101.0f0e0d0c.00000004  Old  -\n");
  EXPECT_EQ(definitions.findSet("AcmeShot")->chosenNamespace, 1u);
  EXPECT_EQ(definitions.findSet("Plain")->chosenNamespace, 0u);
  EXPECT_EQ(definitions.findSet("Take")->chosenNamespace, 1u);
  EXPECT_EQ(definitions.findSet("Old")->chosenNamespace, 2u);
  ASSERT_EQ(definitions.namespaces().size(), 3u);
  EXPECT_EQ(definitions.namespaces()[1].prefix, "acme");
  EXPECT_EQ(definitions.namespaces()[2].uri, "urn:other");
}

TEST(Definitions, LetPropertiesOfOneNameBeInTwoNamespaces) {
  auto definitions = extendBuiltIn("namespace properties acmeP urn:acme\nextend Preface\n  - " + propertyKey(1) +
                                   " EditRate UInt8 optional\n");
  EXPECT_NE(definitions.makeDictionary()->findElement(label(propertyKey(1))), nullptr);
}

TEST(Definitions, MakeDictionariesOfBothVocabulariesOneAfterTheOther) {
  auto definitions = extendBuiltIn(kShot);
  const auto legacy = definitions.makeDictionary(Vocabulary::kLegacy);
  const auto schemas = definitions.makeDictionary(Vocabulary::kST434_2014);
  const auto again = definitions.makeDictionary();
  EXPECT_EQ(legacy->findSetBySymbol("AcmeShot")->extensionAttribute(kNamespaceURI), u"urn:SMPTE:S377M");
  EXPECT_EQ(schemas->findSetBySymbol("AcmeShot")->extensionAttribute(kNamespaceURI), MetaMetadata::kST434Sets.uri);
  EXPECT_EQ(again->findSetBySymbol("AcmeShot")->extensionAttribute(kNamespaceURI), u"urn:SMPTE:S377M");
  definitions.readText(dictionaryText("060e2b34.02530101.0f0e0d0c.00000002  Take  AcmeShot\n"), "more.dictionary");
  EXPECT_NE(definitions.makeDictionary()->findSetBySymbol("Take"), nullptr);
  EXPECT_EQ(legacy->findSetBySymbol("Take"), nullptr);
}

TEST(Definitions, GiveDictionariesTargetsEnumerationsAndLabels) {
  const auto dictionary = extendBuiltIn(R"(enum AcmeGrade UInt8
  1  Fine
060e2b34.027f0101.0f0e0d0c.00000100  AcmeNote  InterchangeObject
  -  060e2b34.01010101.0f0e0d0c.00010000  Grade  AcmeGrade  required
extend Preface
  -  060e2b34.01010101.0f0e0d0c.00020000  Notes  BatchOf(StrongReference(AcmeNote))  optional
label 060e2b34.04010101.0f0e0d0c.01000000  AcmeScheme  Acme's notes
)")
                              .makeDictionary();
  const auto& note = *dictionary->findSetBySymbol("AcmeNote");
  EXPECT_EQ(note.findAttribute("Grade")->metaElement()->enumeration()->nameOf(1), "Fine");
  const auto& preface = *dictionary->findSetBySymbol("Preface");
  EXPECT_EQ(preface.findAttribute("Notes")->metaElement()->target(), &note);
  EXPECT_EQ(preface.findAttribute("PrimaryPackage")->metaElement()->target(), dictionary->findSetBySymbol("Package"));
  EXPECT_EQ(dictionary->findLabel(label("060e2b34.04010101.0f0e0d0c.01000000"))->name, "Acme's notes");
}

TEST(Definitions, LeaveTheirDictionariesBehind) {
  SharedPtr<const MetaMetadata::Dictionary> dictionary;
  {
    auto definitions = readRows(kShot);
    dictionary = definitions.makeDictionary();
  }
  EXPECT_EQ(dictionary->findSetBySymbol("AcmeShot")->symbol(), "AcmeShot");
}

TEST(Definitions, MoveWithTheirTexts) {
  Definitions first = readRows(std::string(kShot) + "  - " + propertyKey(1) + " Title UTF16String optional\n");
  Definitions second = std::move(first);
  Definitions third = readRows("enum Other UInt8\n");
  third = std::move(second);
  EXPECT_THAT(setSymbols(third), ElementsAre("AcmeShot"));
  EXPECT_THAT(third.enumerations(), IsEmpty());
  third.readText(dictionaryText("extend AcmeShot\n  - " + propertyKey(2) + " Take UInt8 optional\n"),
                 "more.dictionary");
  EXPECT_THAT(propertySymbols(*third.makeDictionary()->findSetBySymbol("AcmeShot")), ElementsAre("Title", "Take"));
  EXPECT_THAT(third.sources(), ElementsAre("first.dictionary", "more.dictionary"));
}

TEST(Definitions, AreAddedWithTheirOwnOriginsAndTexts) {
  Definitions definitions;
  const uint32 groups = definitions.addRegister("Groups.xml");
  const uint32 elements = definitions.addRegister("Elements.xml");
  {
    DefinitionAdder adder(definitions, Definitions::Overlay::kRefuse);
    SetDefinition set;
    set.key = MetaMetadata::registerKey(setKey(1));
    set.symbol = set.tagName = definitions.keep("Shot");
    set.origin = {groups, 20};
    PropertyDefinition property;
    property.key = label(propertyKey(1));
    property.symbol = property.tagName = definitions.keep("Take");
    property.type.value = Types::Identifiers::kUInt8;
    property.origin = {elements, 300};
    adder.addProperty(adder.addSet(set), property, {0, 0, 0, {groups, 21}});
    adder.finish();
  }
  EXPECT_EQ(whereOf(definitions, definitions.sets()[0].origin), "Groups.xml:20");
  EXPECT_EQ(whereOf(definitions, definitions.properties()[0].origin), "Elements.xml:300");
  EXPECT_THAT(propertySymbols(*definitions.makeDictionary()->findSetBySymbol("Shot")), ElementsAre("Take"));
}

TEST(Definitions, NameNoSourceForAnOriginThatHasNone) {
  Definitions definitions;
  DefinitionAdder adder(definitions, Definitions::Overlay::kRefuse);
  EXPECT_EQ(refusalOf([&] {
              adder.addLabel({label(propertyKey(1)), "1st", "", {7, 3}});
            }),
            "unknown source:3: '1st' cannot be a symbol; begin with a letter or '_' and go on with these, digits, '-' "
            "and '.'");
}

}  // namespace
}  // namespace Vantor
