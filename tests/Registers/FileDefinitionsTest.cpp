#include "Registers/FileDefinitions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <stdexcept>

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/Types/Array.h"
#include "SomeMetaDictionary.h"

namespace Vantor::Registers {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// UUIDs with swapped halves, as keys have them, but for the last.
constexpr const char* kOwnClass = "a1000000.00000001.0f0e0d0c.00004001";
constexpr const char* kOwnProperty = "a2000000.00000001.0f0e0d0c.00004001";
constexpr const char* kOtherProperty = "a2000000.00000002.0f0e0d0c.00004001";
constexpr const char* kOwnType = "a3000000.00000001.0f0e0d0c.00004001";
constexpr const char* kOtherType = "a3000000.00000002.0f0e0d0c.00004001";
constexpr const char* kUnswappedProperty = "0f0e0d0c.00004001.a2000000.00000001";

constexpr const char* kInterchangeObject = "060e2b34.02530101.0d010101.01010100";
constexpr const char* kPreface = "060e2b34.02530101.0d010101.01012f00";
constexpr const char* kSequence = "060e2b34.02530101.0d010101.01010f00";
constexpr const char* kUInt8 = "060e2b34.01040101.01010100.00000000";
constexpr const char* kUInt32 = "060e2b34.01040101.01010300.00000000";
constexpr const char* kString = "060e2b34.01040101.01100200.00000000";
constexpr const char* kAUID = "060e2b34.01040101.01030100.00000000";
constexpr const char* kFloat = "060e2b34.01040101.01020100.00000000";
constexpr const char* kRational = "060e2b34.01040101.03010100.00000000";

/// The built-in definitions with those of a file.
struct Learned {
  explicit Learned(SomeMetaDictionary& file) : Learned(file.metadata()) {}
  explicit Learned(const PartitionMetadata& metadata)
      : definitions(builtInDefinitions()), found(addFileDefinitions(metadata, "file.mxf", definitions)) {
    definitions.check();
  }

  const SetDefinition& set(const char* key) const {
    const auto* known = definitions.findSet(MetaMetadata::registerKey(key));
    if (known == nullptr) throw std::out_of_range(key);
    return *known;
  }
  const PropertyDefinition& property(const char* key) const {
    const auto* known = definitions.findProperty(Types::UniversalLabel(MetaMetadata::registerKey(key)));
    if (known == nullptr) throw std::out_of_range(key);
    return *known;
  }
  std::string typeOf(const char* key) const { return textOf(property(key).type); }
  std::vector<std::string> problems() const {
    std::vector<std::string> texts;
    for (const auto& problem : found.problems) texts.push_back(describe(problem));
    return texts;
  }
  std::vector<std::string> propertiesOf(const char* set) const {
    std::vector<std::string> texts;
    for (const auto& use : this->set(set).properties) {
      const auto& property = definitions.properties()[use.property];
      if (property.origin.source == found.source) {
        texts.push_back(std::string(property.symbol) + " " + tagText(use.staticLocalTag));
      }
    }
    return texts;
  }

  Definitions definitions;
  FileDefinitions found;
};

/// The type that a property of this type has.
std::string typeOfPropertyOf(SomeMetaDictionary& file, const char* type) {
  file.addProperty(file.addClass(kOwnClass, u"Own", kInterchangeObject), kOwnProperty, u"Value", type);
  return Learned(file).typeOf(kOwnProperty);
}

TEST(FileDefinitions, GiveASetOfTheFileItsParentAndItsProperties) {
  SomeMetaDictionary file;
  auto& own = file.addClass(kOwnClass, u"Grading", kSequence);
  file.addProperty(own, kOwnProperty, u"Grade", kUInt32);
  file.addProperty(own, kOtherProperty, u"Colourist", kString, 0x7001);
  const Learned learned(file);
  EXPECT_EQ(learned.set(kOwnClass).symbol, "Grading");
  EXPECT_EQ(learned.set(kOwnClass).parent, "Sequence");
  EXPECT_TRUE(learned.set(kOwnClass).isConcrete);
  EXPECT_THAT(learned.propertiesOf(kOwnClass), ElementsAre("Grade -", "Colourist 7001"));
  EXPECT_EQ(learned.typeOf(kOwnProperty), "UInt32");
  EXPECT_EQ(learned.typeOf(kOtherProperty), "UTF16String");
  EXPECT_THAT(learned.problems(), IsEmpty());
  EXPECT_EQ(learned.found.sets, 1u);
  EXPECT_EQ(learned.found.properties, 2u);
}

TEST(FileDefinitions, GiveASetOfTheRegistersThePropertiesThatOnlyTheFileGivesIt) {
  SomeMetaDictionary file;
  auto& preface = file.addClass(kPreface, u"Header", kInterchangeObject);
  file.addProperty(preface, "060e2b34.01010102.03010201.02000000", u"ByteOrder", kUInt8);
  file.addProperty(preface, kOwnProperty, u"ProjectName", kString);
  file.addProperty(preface, "060e2b34.01010101.04040101.05000000", u"Drop", kUInt8);
  const Learned learned(file);
  EXPECT_EQ(learned.set(kPreface).symbol, "Preface");
  EXPECT_THAT(learned.propertiesOf(kPreface), ElementsAre("ProjectName -"));
  const auto dictionary = Definitions(builtInDefinitions()).makeDictionary();
  EXPECT_EQ(dictionary->findSetBySymbol("Preface")->findAttribute("DropFrame"), nullptr);
  EXPECT_EQ(learned.found.extensions, 1u);  // DropFrame, which is that of timecodes
  EXPECT_EQ(learned.typeOf("060e2b34.01010101.04040101.05000000"), "Boolean");
}

TEST(FileDefinitions, AreInNamespacesOfTheirOwn) {
  SomeMetaDictionary file;
  file.addProperty(file.addClass(kOwnClass, u"Own", kInterchangeObject), kOwnProperty, u"TrackName", kString);
  const Learned learned(file);
  const auto& namespaces = learned.definitions.namespaces();
  EXPECT_EQ(namespaces[learned.set(kOwnClass).chosenNamespace].uri, "urn:vantor:own:sets");
  EXPECT_EQ(namespaces[learned.set(kOwnClass).chosenNamespace].prefix, "own");
  EXPECT_EQ(namespaces[learned.property(kOwnProperty).chosenNamespace].uri, "urn:vantor:own:properties");
  EXPECT_EQ(learned.property(kOwnProperty).tagName, "TrackName");
}

TEST(FileDefinitions, TakeAnotherPrefixWhereADictionaryFileHasTheirs) {
  SomeMetaDictionary file;
  file.addClass(kOwnClass, u"Own", kInterchangeObject);
  auto definitions = builtInDefinitions();
  definitions.readText("dictionary 1\nnamespace sets own urn:example\n", "a.dictionary");
  addFileDefinitions(file.metadata(), "file.mxf", definitions);
  const auto& set = *definitions.findSet("Own");
  EXPECT_EQ(definitions.namespaces()[set.chosenNamespace].prefix, "own2");
}

TEST(FileDefinitions, AreFoundByIdentificationsInEitherOrderOfTheirHalves) {
  SomeMetaDictionary file;
  auto& own = file.addClass(kOwnClass, u"Own", "0d010101.01010100.060e2b34.02530101");
  file.addProperty(own, kUnswappedProperty, u"Value", "01010300.00000000.060e2b34.01040101");
  const Learned learned(file);
  EXPECT_EQ(learned.set(kOwnClass).parent, "InterchangeObject");
  EXPECT_EQ(learned.property(kOwnProperty).key.key(), MetaMetadata::registerKey(kOwnProperty));
  EXPECT_EQ(&learned.property(kUnswappedProperty), &learned.property(kOwnProperty));
  EXPECT_EQ(learned.typeOf(kOwnProperty), "UInt32");
}

// Variant bits at the start of both halves: it may be a UUID in either order.
constexpr const char* kEither = "a80e214d.c0f14684.bfde81e4.bcc84abd";
constexpr const char* kEitherSwapped = "bfde81e4.bcc84abd.a80e214d.c0f14684";

TEST(FileDefinitions, HaveTheOrderOfMostOthersWhereAnIdentificationCouldBeEither) {
  SomeMetaDictionary asKeys, swapped;
  asKeys.addProperty(asKeys.addClass(kOwnClass, u"Own", kInterchangeObject), kEither, u"Value", kUInt8);
  asKeys.metadata().partitionDictionary().addPrimerEntry({0x8001, MetaMetadata::registerKey(kEitherSwapped)});
  EXPECT_EQ(Learned(asKeys).property(kEither).key.key(), MetaMetadata::registerKey(kEither));
  auto& preface = swapped.addClass("0d010101.01012f00.060e2b34.02530101", u"Preface", kInterchangeObject);
  swapped.addProperty(preface, kEither, u"Value", kUInt8);
  EXPECT_EQ(Learned(swapped).property(kEitherSwapped).key.key(), MetaMetadata::registerKey(kEitherSwapped));
  swapped.addProperty(preface, kOwnProperty, u"Other", kUInt8);
  EXPECT_EQ(Learned(swapped).property(kEither).key.key(), MetaMetadata::registerKey(kEither));
}

TEST(FileDefinitions, HaveTheOrderOfThePrimerWhereNoOtherIdentificationShowsOne) {
  SomeMetaDictionary file;
  auto& property = file.addProperty(file.addClass("", u"Own", kInterchangeObject), kEither, u"Value", kUInt8);
  property.set("MemberOf", SomeMetaDictionary::auid(kPreface));
  EXPECT_EQ(Learned(file).property(kEither).key.key(), MetaMetadata::registerKey(kEither));
  file.metadata().partitionDictionary().addPrimerEntry({0x8001, MetaMetadata::registerKey(kEitherSwapped)});
  EXPECT_EQ(Learned(file).property(kEither).key.key(), MetaMetadata::registerKey(kEitherSwapped));
}

/// The names of the properties of Preface, by their keys, in files that define the same in any order.
std::map<std::string, std::string> namesByKey(const std::vector<std::pair<const char*, wstring>>& properties) {
  SomeMetaDictionary file;
  auto& preface = file.addClass(kPreface, u"Preface", kInterchangeObject);
  for (const auto& [key, name] : properties) file.addProperty(preface, key, name, kUInt8);
  const Learned learned(file);
  std::map<std::string, std::string> names;
  for (const auto& property : properties) names[property.first] = learned.property(property.first).symbol;
  return names;
}

TEST(FileDefinitions, HaveNamesThatDoNotDependOnTheirOrder) {
  const char *const one = "a2000000.00000001.0f0e0d0c.00004001", *const other = "a2000000.00000002.0f0e0d0c.00004001",
                    *const third = "a2000000.00000003.0f0e0d0c.00004001";
  const auto names = namesByKey({{one, u"Gain"}, {other, u"Gain"}, {third, u"Gain_a200000000000001"}});
  EXPECT_EQ(names, namesByKey({{third, u"Gain_a200000000000001"}, {other, u"Gain"}, {one, u"Gain"}}));
  EXPECT_EQ(names.at(one), "Gain_a2000000000000010");
  EXPECT_EQ(names.at(other), "Gain_a2000000000000020");
  EXPECT_EQ(names.at(third), "Gain_a200000000000001");
}

TEST(FileDefinitions, LeaveOutTheSameOfTwoWithOneIdentificationInAnyOrder) {
  const std::pair<const char*, wstring> one = {kOwnProperty, u"Gain"}, other = {kOwnProperty, u"Level"};
  EXPECT_EQ(namesByKey({one, other}), namesByKey({other, one}));
}

TEST(FileDefinitions, AreNotNamedAsOthersAreCommonly) {
  const auto names = namesByKey({{kOwnProperty, u"Version"}, {kOtherProperty, u"CompanyName"}});
  EXPECT_EQ(names.at(kOwnProperty), "Version_a2000000");  // FormatVersion of Preface
  EXPECT_EQ(names.at(kOtherProperty), "CompanyName");     // of Identification
}

TEST(FileDefinitions, HaveNoNamesThatDocumentsUseForReferences) {
  const auto names = namesByKey({{kOwnProperty, u"_REF"}, {kOtherProperty, u"_REF_REFTwo"}});
  EXPECT_EQ(names.at(kOwnProperty), "_-REF");
  EXPECT_EQ(names.at(kOtherProperty), "_-REF-REFTwo");
}

TEST(FileDefinitions, ListAPropertyOnceWhereAClassAndItsParentHaveIt) {
  SomeMetaDictionary file;
  auto& child = file.addClass("a1000000.00000001.0f0e0d0c.00004001", u"Child", "a1000000.00000002.0f0e0d0c.00004001");
  auto& parent = file.addClass("a1000000.00000002.0f0e0d0c.00004001", u"Parent", kInterchangeObject);
  auto& property = file.addProperty(child, kOwnProperty, u"Value", kUInt8);
  parent.append("Properties", property);
  const Learned learned(file);
  EXPECT_THAT(learned.propertiesOf("a1000000.00000001.0f0e0d0c.00004001"), IsEmpty());
  EXPECT_THAT(learned.propertiesOf("a1000000.00000002.0f0e0d0c.00004001"), ElementsAre("Value -"));
}

TEST(FileDefinitions, FollowReferencesByInstanceUID) {
  SomeMetaDictionary file;
  auto& parent = file.addClass(kPreface, u"Header", kInterchangeObject);
  auto& type = file.addInteger(kOwnType, u"Half", 2, true);
  auto& own = file.addClass(kOwnClass, u"Own", "");
  own.set("ParentClass", Types::AUID(parent.instanceUID()->rawBuffer()));
  auto& property = file.addProperty(own, kOwnProperty, u"Value", kUInt8);
  property.set("PropertyType", Types::AUID(type.instanceUID()->rawBuffer()));
  const Learned learned(file);
  EXPECT_EQ(learned.set(kOwnClass).parent, "Preface");
  EXPECT_EQ(learned.typeOf(kOwnProperty), "Int16");
}

TEST(FileDefinitions, AddAPropertyThatNamesItsClassToThatClass) {
  SomeMetaDictionary file;
  auto& other = file.addClass(kOwnClass, u"Own", kInterchangeObject);
  auto& property = file.addProperty(other, kOwnProperty, u"Value", kUInt8);
  other.remove("Properties");
  property.set("MemberOf", SomeMetaDictionary::auid(kPreface));
  EXPECT_THAT(Learned(file).propertiesOf(kPreface), ElementsAre("Value -"));
}

TEST(FileDefinitions, CarryTypesAsTheRegistersDo) {
  using File = SomeMetaDictionary;
  const auto made = [](const char* kind, const char* property, const char* base) {
    File file;
    file.addType(kind, kOwnType, u"Type", property, base);
    return typeOfPropertyOf(file, kOwnType);
  };
  EXPECT_EQ(made("TypeDefinitionRename", "RenamedType", kRational), "Rational");
  EXPECT_EQ(made("TypeDefinitionVariableArray", "VariableArrayElementType", kUInt32), "ArrayOf(UInt32)");
  EXPECT_EQ(made("TypeDefinitionSet", "SetElementType", kAUID), "BatchOf(AUID)");
  EXPECT_EQ(made("TypeDefinitionStrongObjectReference", "ReferencedType", kPreface), "StrongReference(Preface)");
  EXPECT_EQ(made("TypeDefinitionWeakObjectReference", "WeakReferencedType", kPreface), "WeakReference(Preface)");
  EXPECT_EQ(made("TypeDefinitionWeakObjectReference", "WeakReferencedType", "060e2b34.02530101.0d010101.01011b00"),
            "AUID");  // a data definition
  EXPECT_EQ(made("TypeDefinitionString", "StringElementType", "060e2b34.01040101.01100300.00000000"), "ISO7String");
  EXPECT_EQ(made("TypeDefinitionFixedArray", "FixedArrayElementType", kUInt8), "DataStream");
  EXPECT_EQ(made("TypeDefinitionVariableArray", "VariableArrayElementType", kString), "DataStream");
  EXPECT_EQ(made("TypeDefinitionExtendibleEnumeration", "", ""), "UniversalLabel");
  EXPECT_EQ(made("TypeDefinitionRecord", "", ""), "DataStream");
  EXPECT_EQ(made("TypeDefinitionIndirect", "", ""), "DataStream");
  EXPECT_EQ(made("TypeDefinitionOpaque", "", ""), "DataStream");
  EXPECT_EQ(made("TypeDefinitionStream", "", ""), "DataStream");
}

TEST(FileDefinitions, CarryStringsOfTheFilesOwnCharactersAsUTF16) {
  SomeMetaDictionary file;
  file.addType("TypeDefinitionCharacter", kOtherType, u"Letter");
  file.addType("TypeDefinitionString", kOwnType, u"Text", "StringElementType", kOtherType);
  EXPECT_EQ(typeOfPropertyOf(file, kOwnType), "UTF16String");
}

TEST(FileDefinitions, LeadReferencesToSetsOfTheFile) {
  SomeMetaDictionary file;
  file.addType("TypeDefinitionStrongObjectReference", kOtherType, u"Reference", "ReferencedType", kOwnClass);
  file.addType("TypeDefinitionVariableArray", kOwnType, u"References", "VariableArrayElementType", kOtherType);
  EXPECT_EQ(typeOfPropertyOf(file, kOwnType), "ArrayOf(StrongReference(Own))");
}

TEST(FileDefinitions, NameTheNumbersOfEnumerations) {
  SomeMetaDictionary file;
  file.addEnumeration(kOwnType, u"Grade of print", kUInt8,
                      {{0, u"Rough"}, {1, u"Fine"}, {300, u"TooLarge"}, {1, u"Twice"}});
  file.addProperty(file.addClass(kOwnClass, u"Own", kInterchangeObject), kOwnProperty, u"Grade", kOwnType);
  const Learned learned(file);
  EXPECT_EQ(learned.typeOf(kOwnProperty), "Grade_of_print");
  const auto* enumeration = learned.definitions.findEnumeration("Grade_of_print");
  ASSERT_NE(enumeration, nullptr);
  EXPECT_EQ(enumeration->base, Types::Identifiers::kUInt8);
  ASSERT_EQ(enumeration->values.size(), 2u);
  EXPECT_EQ(enumeration->values[1].name, "Fine");
  EXPECT_THAT(learned.problems(),
              ElementsAre("type Grade of print: some of its numbers have no name, or no place in its base type"));
}

TEST(FileDefinitions, NumberThousandsOfValuesOfOneName) {
  constexpr std::size_t kMany = 8000;
  SomeMetaDictionary file;
  file.addEnumeration(kOwnType, u"Grade", "060e2b34.01040101.01010200.00000000",
                      std::vector<std::pair<int64, wstring>>(1, {0, u"Same"}));
  auto& type = *file.metadata().sets().back();
  Bytes names, values = {0, 0, kMany >> 8, kMany & 0xFF, 0, 0, 0, 8};
  for (std::size_t i = 0; i < kMany; ++i) {
    SomeMetaDictionary::appendText(names, u"Same");
    for (const auto octet : {0, 0, 0, 0, 0, 0, static_cast<int>(i >> 8), static_cast<int>(i & 0xFF)}) {
      values.push_back(static_cast<uint8>(octet));
    }
  }
  type.set("ElementNames", Types::DataStream(names));
  type.set("ElementValues", *Types::Array::decode(Types::Identifiers::kInt64, values.data(), values.size()));
  file.addProperty(file.addClass(kOwnClass, u"Own", kInterchangeObject), kOwnProperty, u"Grade", kOwnType);
  const auto begin = std::chrono::steady_clock::now();
  const Learned learned(file);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  const auto& found = learned.definitions.findEnumeration("Grade")->values;
  ASSERT_EQ(found.size(), kMany);
  EXPECT_EQ(found.front().name, "Same_0");
  EXPECT_EQ(found.back().name, "Same_7999");
}

TEST(FileDefinitions, NameTheLabelsOfExtendibleEnumerations) {
  SomeMetaDictionary file;
  auto& type = file.addType("TypeDefinitionExtendibleEnumeration", kOwnType, u"Schemes");
  type.append("ExtendibleEnumerationElementValues", SomeMetaDictionary::auid("060e2b34.04010101.0f0e0d0c.01000000"));
  Bytes names;
  SomeMetaDictionary::appendText(names, u"Acme scheme");
  type.set("ExtendibleEnumerationElementNames", Types::DataStream(names));
  const Learned learned(file);
  ASSERT_EQ(learned.definitions.labels().size(), 1u);
  EXPECT_EQ(learned.definitions.labels()[0].symbol, "Acme_scheme");
}

TEST(FileDefinitions, NameNoLabelAsALabelOfTheRegistersOrAsACommonName) {
  SomeMetaDictionary file;
  auto& type = file.addType("TypeDefinitionExtendibleEnumeration", kOwnType, u"Schemes");
  Bytes names;
  for (const auto* key : {"060e2b34.04010101.0f0e0d0c.01000000", "060e2b34.04010101.0f0e0d0c.02000000",
                          "060e2b34.04010101.0f0e0d0c.03000000"}) {
    type.append("ExtendibleEnumerationElementValues", SomeMetaDictionary::auid(key));
  }
  const auto& label = builtInLabels().labels().front();
  SomeMetaDictionary::appendText(names, wstring(label.symbol.begin(), label.symbol.end()));
  SomeMetaDictionary::appendText(names, wstring(label.name.begin(), label.name.end()));
  SomeMetaDictionary::appendText(names, u"CompanyName");
  type.set("ExtendibleEnumerationElementNames", Types::DataStream(names));
  const Learned learned(file);
  ASSERT_EQ(learned.definitions.labels().size(), 3u);
  for (const auto& own : learned.definitions.labels()) EXPECT_THAT(std::string(own.symbol), HasSubstr("_060e2b34"));
}

TEST(FileDefinitions, GiveReasonsForValuesThatStayBytes) {
  SomeMetaDictionary file;
  auto& own = file.addClass(kOwnClass, u"Own", kInterchangeObject);
  file.addType("TypeDefinitionRecord", kOwnType, u"Colour");
  file.addProperty(own, kOwnProperty, u"Fill", kOwnType);
  file.addProperty(own, kOtherProperty, u"Gain", kFloat);
  file.addProperty(own, "a2000000.00000003.0f0e0d0c.00004001", u"Lost", kOtherType);
  EXPECT_THAT(Learned(file).problems(),
              ElementsAre("property Fill: its values are bytes: its type is a record",
                          "property Gain: its values are bytes: its type is a floating-point number",
                          "property Lost: its values are bytes: neither the file nor the registers define its type"));
}

TEST(FileDefinitions, KeepTheDefinitionsOfTheRegistersWhereBothHaveOne) {
  SomeMetaDictionary file;
  file.addType("TypeDefinitionRename", kUInt32, u"aafUInt32", "RenamedType", kUInt8);
  EXPECT_EQ(typeOfPropertyOf(file, kUInt32), "UInt32");
}

TEST(FileDefinitions, NameThemselvesAsOtherNamesAllow) {
  SomeMetaDictionary file;
  auto& own = file.addClass(kOwnClass, u"Preface", kSequence);
  file.addProperty(own, kOwnProperty, u"Two words \u00e9", kUInt8);
  file.addProperty(own, kOtherProperty, u"EventPosition", kUInt8);  // of no Sequence
  file.addProperty(own, "a2000000.00000003.0f0e0d0c.00004001", u"ComponentLength", kUInt8);
  file.addProperty(own, "a2000000.00000004.0f0e0d0c.00004001", u"", kUInt8);
  file.addProperty(own, "a2000000.00000005.0f0e0d0c.00004001", u"InstanceUID", kUInt8);
  file.addProperty(own, "a2000000.00000006.0f0e0d0c.00004001", u"EventPosition", kUInt8);
  const Learned learned(file);
  EXPECT_EQ(learned.set(kOwnClass).symbol, "Preface_a1000000");
  EXPECT_THAT(learned.propertiesOf(kOwnClass),
              ElementsAre("Two_words___ -", "EventPosition_a200000000000002 -", "ComponentLength_a2000000 -",
                          "Property -", "InstanceUID_a2000000 -", "EventPosition_a200000000000006 -"));
  EXPECT_THAT(learned.problems(), Contains("class Preface: it is called Preface_a1000000, as its name is taken or has "
                                           "other characters than names"));
}

TEST(FileDefinitions, GiveUpLocalTagsOfOtherProperties) {
  SomeMetaDictionary file;
  auto& own = file.addClass(kOwnClass, u"Own", kInterchangeObject);
  file.addProperty(own, kOwnProperty, u"One", kUInt8, 0x1501);    // StartTimecode
  file.addProperty(own, kOtherProperty, u"Two", kUInt8, 0x7002);  // another property in the primer
  file.addProperty(own, "a2000000.00000003.0f0e0d0c.00004001", u"Three", kUInt8, 0x7003);
  file.addProperty(own, "a2000000.00000004.0f0e0d0c.00004001", u"Four", kUInt8, 0x7003);
  file.addProperty(own, "a2000000.00000005.0f0e0d0c.00004001", u"Five", kUInt8, 0x8005);  // dynamic
  file.metadata().partitionDictionary().addPrimerEntry({0x7002, MetaMetadata::registerKey(kOwnProperty)});
  const Learned learned(file);
  EXPECT_THAT(learned.propertiesOf(kOwnClass), ElementsAre("One -", "Two -", "Three 7003", "Four -", "Five -"));
  EXPECT_THAT(learned.problems(), ElementsAre("property One: its local tag 1501 is that of another property",
                                              "property Two: its local tag 7002 is that of another property",
                                              "property Four: its local tag 7003 is that of another property"));
}

TEST(FileDefinitions, LeaveOutWhatIsNoDefinition) {
  SomeMetaDictionary file;
  file.addClass("", u"Nameless", kInterchangeObject);
  file.addClass("060e2b34.01010101.0f0e0d0c.00010000", u"Property", kInterchangeObject);
  auto& own = file.addClass(kOwnClass, u"Own", kInterchangeObject);
  file.addClass(kOwnClass, u"Own again", kInterchangeObject);
  file.addClass("80530800.36210804.b3b398a5.1c9011d4", u"Root", kInterchangeObject);
  file.addProperty(own, "01020304.05060708.090a0b0c.0d0e0f10", u"Odd", kUInt8);
  file.addProperty(own, kOwnProperty, u"Value", kUInt8);
  file.addProperty(own, kUnswappedProperty, u"Same", kUInt8);
  own.append("Properties", file.metadata().createMetadataSet("Preface"));
  const Learned learned(file);
  EXPECT_THAT(learned.propertiesOf(kOwnClass), ElementsAre("Same -"));
  const auto problems = learned.problems();
  for (const auto* text : {"class Nameless: left out: its identification is neither a label nor a UUID",
                           "class Property: left out: its identification is a label, but not that of a set",
                           "class Own again: left out: it has the identification of Own",
                           "class Root: left out: the object directory is not read as a set",
                           "property Odd: left out: its identification is neither a label nor a UUID",
                           "property Value: left out: it has the identification of Same"}) {
    EXPECT_THAT(problems, Contains(text));
  }
  EXPECT_THAT(problems, Contains(HasSubstr("class Own: it lists a property that the file does not define: ")));
}

std::string numbered(const char* start, std::size_t number) {
  char text[64];
  std::snprintf(text, sizeof text, "%s%06zx.0f0e0d0c.00004001", start, number);
  return text;
}

TEST(FileDefinitions, EndCirclesAndLongChains) {
  SomeMetaDictionary file;
  file.addClass("a1000000.00000011.0f0e0d0c.00004001", u"One", "a1000000.00000012.0f0e0d0c.00004001");
  file.addClass("a1000000.00000012.0f0e0d0c.00004001", u"Two", "a1000000.00000011.0f0e0d0c.00004001");
  file.addClass("a1000000.00000013.0f0e0d0c.00004001", u"Self", "a1000000.00000013.0f0e0d0c.00004001");
  file.addClass("a1000000.00000014.0f0e0d0c.00004001", u"Orphan", "a1000000.00000099.0f0e0d0c.00004001");
  constexpr std::size_t kMany = 300;
  for (std::size_t i = 0; i < kMany; ++i) {
    file.addClass(numbered("a4000000.00", i), u"Chain", numbered("a4000000.00", i + 1));
    file.addType("TypeDefinitionRename", numbered("a5000000.00", i), u"Renamed", "RenamedType",
                 i + 1 == kMany ? std::string(kUInt8) : numbered("a5000000.00", i + 1));
  }
  file.addType("TypeDefinitionRename", kOwnType, u"Circle", "RenamedType", kOtherType);
  file.addType("TypeDefinitionSet", kOtherType, u"Other", "SetElementType", kOwnType);
  EXPECT_EQ(typeOfPropertyOf(file, kOwnType), "DataStream");
  const Learned learned(file);
  EXPECT_EQ(learned.set("a1000000.00000013.0f0e0d0c.00004001").parent, "InterchangeObject");
  const auto problems = learned.problems();
  EXPECT_THAT(problems, Contains("class Two: it leads to itself"));
  EXPECT_THAT(problems, Contains("class Orphan: its parent is not defined; it inherits from InterchangeObject"));
  EXPECT_THAT(problems, Contains("class Chain: it has too many ancestors; it inherits from InterchangeObject"));
  EXPECT_THAT(problems, Contains("type Renamed: it is made of too many types in a row"));
  EXPECT_THAT(problems, Contains("type Other: it leads to itself"));
}

TEST(FileDefinitions, AreLeftOutWhenADictionaryCannotHoldThem) {
  SomeMetaDictionary file;
  auto& base = file.addClass(kInterchangeObject, u"InterchangeObject", kInterchangeObject);
  for (std::size_t i = 0; i < 3500; ++i) file.addProperty(base, numbered("a2000000.00", i), u"Value", kUInt8);
  const Learned learned(file);
  EXPECT_EQ(learned.found.properties, 0u);
  EXPECT_THAT(learned.problems(),
              ElementsAre("the dictionary of the file: left out: its sets have more properties than a "
                          "dictionary holds"));
}

TEST(FileDefinitions, MayBeThousands) {
  SomeMetaDictionary file;
  for (std::size_t i = 0; i < 2000; ++i) {
    auto& own = file.addClass(numbered("a1000000.00", i), u"Same name", kInterchangeObject);
    file.addProperty(own, numbered("a2000000.00", i), u"Same name", kUInt8);
  }
  const Learned learned(file);
  EXPECT_EQ(learned.found.sets, 2000u);
  EXPECT_EQ(learned.found.properties, 2000u);
}

TEST(FileDefinitions, AreNothingWhereAFileHasNone) {
  SomeMetaDictionary file;
  file.metadata().createMetadataSet("Preface");
  const Learned learned(file);
  EXPECT_EQ(learned.found.sets + learned.found.properties + learned.found.extensions, 0u);
  EXPECT_THAT(learned.problems(), IsEmpty());
}

}  // namespace
}  // namespace Vantor::Registers
