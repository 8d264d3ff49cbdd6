#include "Registers/RegisterDefinitions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "Definitions/DefinitionsText.h"
#include "SomeRegisters.h"

namespace Vantor::Registers {
namespace {

using ::testing::HasSubstr;
using ::testing::Pair;

constexpr uint64 kUInt8 = 0x0101010000000000;
constexpr uint64 kInt8 = 0x0101050000000000;
constexpr uint64 kUInt16 = 0x0101020000000000;
constexpr uint64 kNumber = 0x0500000000000000;
constexpr uint64 kOther = 0x0500000100000000;
constexpr uint64 kRoot = 0x0e01000000000000;
constexpr uint64 kTimer = 0x0e02000000000000;
constexpr uint64 kInstanceID = 0x0101150200000000;

Definitions definitionsOf(const Entries& registers) {
  Definitions definitions;
  addDefinitions(registers, definitions);
  return definitions;
}

/// The definitions in the dictionary format.
std::string textOf(const Entries& registers) { return Vantor::textOf(definitionsOf(registers), "a comment"); }

/// One set with one property.
SomeRegisters smallRegisters() {
  SomeRegisters registers;
  registers.integer(kUInt8, "UInt8", 1);
  registers.element(kNumber, "Number", kUInt8);
  registers.group(kTimer, "Timer");
  registers.property(kNumber);
  return registers;
}

/// The type of the property of the one set, when it has this type.
std::string typeColumn(SomeRegisters& registers, uint64 type) {
  registers.elements.front().type = RegisterKeys::type(type);
  const auto text = textOf(registers);
  const auto start = text.find("Number  ") + 8;
  return text.substr(start, text.find("  ", start) - start);
}

std::string refusal(const Entries& registers) {
  return refusalOf([&] { definitionsOf(registers); });
}

/// A definition's symbol and "FILE:LINE".
template <class Definition>
std::pair<std::string, std::string> originOf(const Definition& definition, std::string_view name,
                                             const Definitions& definitions) {
  return {std::string(name),
          definitions.sources()[definition.origin.source] + ":" + std::to_string(definition.origin.line)};
}

TEST(RegisterDefinitions, HoldSetsByKeyAndTheirPropertiesInTheOrderOfTheRegister) {
  SomeRegisters registers;
  registers.integer(kUInt8, "UInt8", 1);
  registers.integer(kUInt16, "UInt16", 2);
  registers.element(kNumber, "Number", kUInt8);
  registers.element(kOther, "LongerName", kUInt16);
  registers.group(kTimer, "Timer", kRoot);
  registers.property(kOther, 0x1501);
  registers.property(kNumber).isOptional = false;
  registers.group(kRoot, "Root").isConcrete = false;
  EXPECT_EQ(textOf(registers),
            "dictionary 1\n"
            "# a comment\n"
            "\n"
            "060e2b34.027f0101.0e010000.00000000  Root  -  abstract\n"
            "\n"
            "060e2b34.027f0101.0e020000.00000000  Timer  Root\n"
            "  1501  060e2b34.01010101.05000001.00000000  LongerName  UInt16  optional\n"
            "  -     060e2b34.01010101.05000000.00000000  Number      UInt8   required\n");
}

TEST(RegisterDefinitions, KeepDefinitionsAndDocuments) {
  auto registers = smallRegisters();
  registers.elements.front().texts = {"How many", "SMPTE ST 9"};
  registers.groups.front().texts = {"Measures time", ""};
  const auto found = definitionsOf(registers);
  EXPECT_EQ(found.properties().at(0).explanation.definition, "How many");
  EXPECT_EQ(found.properties().at(0).explanation.document, "SMPTE ST 9");
  EXPECT_EQ(found.sets().at(0).explanation.definition, "Measures time");
  EXPECT_EQ(found.sets().at(0).explanation.document, "");
}

TEST(RegisterDefinitions, KeepTheFileAndLineOfEachEntry) {
  auto registers = smallRegisters();
  registers.enumeration(kUInt16, "Grade", kUInt8, {{"0", "Rough"}, {"1", "Fine"}});
  registers.elements.front().type = RegisterKeys::type(kUInt16);
  const auto found = definitionsOf(registers);
  const auto& set = found.sets().at(0);
  EXPECT_THAT(originOf(set, set.symbol, found), Pair("Timer", "Groups.xml:1"));
  EXPECT_THAT(originOf(set.properties.at(0), "use", found), Pair("use", "Groups.xml:2"));
  const auto& property = found.properties().at(0);
  EXPECT_THAT(originOf(property, property.symbol, found), Pair("Number", "Elements.xml:1"));
  const auto& grade = found.enumerations().at(0);
  EXPECT_THAT(originOf(grade, grade.name, found), Pair("Grade", "Types.xml:2"));
  EXPECT_THAT(originOf(grade.values.at(0), grade.values[0].name, found), Pair("Rough", "Types.xml:3"));
  EXPECT_THAT(originOf(grade.values.at(1), grade.values[1].name, found), Pair("Fine", "Types.xml:4"));
}

TEST(RegisterDefinitions, HoldLocalSetsOfHeaderMetadataAndWhatTheyInheritFrom) {
  SomeRegisters registers;
  const auto add = [&](uint64 tail, const char* symbol, const char* syntax, uint64 parent = 0) {
    registers.group(tail, symbol, parent).klvSyntax = syntax;
  };
  add(0x0e03, "OneCoding", "53");
  add(0x0e04, "SeveralCodings", "06 53 13");
  add(0x0e05, "Child", "06 53", 0x0e06);
  add(0x0e06, "Parent", "");
  add(0x0e07, "Pack", "05");
  add(0x0e08, "OtherNumber", "153 530");
  add(0x0e09, "Childless", "", 0x0e05);
  add(0x0531010100000000, "ColourVolumeTransform", "53");
  add(0x0531020100000000, "InheritedTransform", "53");
  add(0x0c02010101000000, "AcquisitionSet", "53");
  add(0x0d01020101100000, "IndexTableSegment", "06 53");
  add(0x0d01020201100000, "NextToIndexTables", "06 53", 0x0531020100000000);
  std::string symbols;
  const auto found = definitionsOf(registers);
  for (const auto& set : found.sets()) {
    symbols.append(set.symbol).append("  ").append(set.parent.empty() ? "-" : set.parent).append("\n");
  }
  EXPECT_EQ(symbols,
            "OneCoding  -\nSeveralCodings  -\nChild  Parent\nParent  -\nInheritedTransform  -\n"
            "NextToIndexTables  InheritedTransform\n");
}

TEST(RegisterDefinitions, HoldTheEnumerationsThatPropertiesUseByKey) {
  SomeRegisters registers;
  registers.integer(kUInt8, "UInt8", 1);
  registers.integer(kInt8, "Int8", 1, true);
  registers.enumeration(0x0204, "Late", kInt8, {{"10", "Ten"}, {"-1", "Less"}});
  registers.enumeration(0x0203, "Unused", kUInt8, {{"nothing", ""}});
  registers.enumeration(0x0202, "Early", kUInt8, {});
  registers.enumeration(0x0201012800000000, "ScanningDirectionType", kUInt8, {{"0", "LeftToRight"}});
  registers.type(0x0205, "Earlies", TypeKind::kVariableArray, 0x0202);
  registers.element(kNumber, "One", 0x0204);
  registers.element(kOther, "Many", 0x0205);
  registers.element(kOther + 1, "Direction", 0x0201012800000000);
  registers.group(kTimer, "Timer");
  registers.property(kNumber);
  registers.property(kOther);
  registers.property(kOther + 1);
  EXPECT_THAT(textOf(registers), HasSubstr("\n\n"
                                           "enum Early UInt8\n"
                                           "\n"
                                           "enum Late Int8\n"
                                           "  10  Ten\n"
                                           "  -1  Less\n"
                                           "\n"
                                           "enum ScanningDirectionType Orientation\n"
                                           "  0  LeftToRight\n"
                                           "\n"
                                           "060e2b34.027f0101.0e020000.00000000  Timer  -\n"));
  EXPECT_THAT(textOf(registers), HasSubstr("  One        Late                   optional\n"));
  EXPECT_THAT(textOf(registers), HasSubstr("  Many       ArrayOf(Early)         optional\n"));
}

TEST(RegisterDefinitions, NameTheSetThatAReferenceLeadsToIfItIsThere) {
  auto registers = smallRegisters();
  registers.group(kRoot, "Root").klvSyntax = "05";
  registers.reference(0x0501, "TimerReference", TypeKind::kStrongReference, kTimer);
  registers.type(0x0502, "TimerReferences", TypeKind::kSet, 0x0501);
  registers.reference(0x0503, "WeakTimerReference", TypeKind::kWeakReference, kTimer);
  registers.reference(0x0504, "PackReference", TypeKind::kStrongReference, kRoot);
  registers.reference(0x0505, "StrangeReference", TypeKind::kWeakReference, 0x0eff);
  EXPECT_EQ(typeColumn(registers, 0x0501), "StrongReference(Timer)");
  EXPECT_EQ(typeColumn(registers, 0x0502), "BatchOf(StrongReference(Timer))");
  EXPECT_EQ(typeColumn(registers, 0x0503), "WeakReference(Timer)");
  EXPECT_EQ(typeColumn(registers, 0x0504), "StrongReference");
  EXPECT_EQ(typeColumn(registers, 0x0505), "WeakReference");
}

TEST(RegisterDefinitions, CarryWeakReferencesToDefinitionsAsIdentifiers) {
  auto registers = smallRegisters();
  registers.group(0x0d01010101011a00, "DefinitionObject");
  registers.group(0x0d01010101011b00, "DataDefinition", 0x0d01010101011a00);
  registers.group(0x0d01010102240000, "MetaDefinition").klvSyntax = "";
  registers.reference(0x0501, "DataDefinitionReference", TypeKind::kWeakReference, 0x0d01010101011b00);
  registers.type(0x0502, "DataDefinitionReferences", TypeKind::kVariableArray, 0x0501);
  registers.reference(0x0503, "MetaDefinitionReference", TypeKind::kWeakReference, 0x0d01010102240000);
  registers.reference(0x0504, "OwnedDefinition", TypeKind::kStrongReference, 0x0d01010101011b00);
  EXPECT_EQ(typeColumn(registers, 0x0501), "AUID");
  EXPECT_EQ(typeColumn(registers, 0x0502), "ArrayOf(AUID)");
  EXPECT_EQ(typeColumn(registers, 0x0503), "AUID");
  EXPECT_EQ(typeColumn(registers, 0x0504), "StrongReference(DataDefinition)");
}

TEST(RegisterDefinitions, CarryAPropertyWithoutATypeAsBytes) {
  auto registers = smallRegisters();
  registers.elements.front().type.reset();
  EXPECT_THAT(textOf(registers), HasSubstr("  Number  DataStream  optional\n"));
}

TEST(RegisterDefinitions, HaveSinglePropertiesAsFilesHaveThem) {
  auto registers = smallRegisters();
  registers.reference(0x0501, "DefinitionReference", TypeKind::kWeakReference, 0x0d01010101011a00);
  registers.group(0x0d01010101011a00, "DefinitionObject");
  const auto add = [&](uint64 tail, const char* symbol) {
    registers.element(tail, symbol, 0x0501);
    registers.property(tail);
  };
  add(kInstanceID, "InstanceID");
  add(0x0520070108000000, "LinkedGenerationID");
  add(0x0601010401080000, "PrimaryPackage");
  add(0x0101150900000000, "ExtendedClipID");
  add(0x040106030c000000, "CodingStyleDefault");
  add(0x040106030d000000, "QuantizationDefault");
  const auto text = textOf(registers);
  for (const auto* row : {"  InstanceID           UUID                             optional  name=InstanceUID\n",
                          "  LinkedGenerationID   UUID                             optional  name=GenerationUID\n",
                          "  PrimaryPackage       WeakReference(DefinitionObject)  optional\n",
                          "  ExtendedClipID       UMID64                           optional\n",
                          "  CodingStyleDefault   J2KCodingStyleDefault            optional\n",
                          "  QuantizationDefault  J2KQuantisationDefault           optional\n"}) {
    EXPECT_THAT(text, HasSubstr(row));
  }
}

TEST(RegisterDefinitions, GiveTheMetaDictionaryTheInstanceUIDThatItHasInFiles) {
  auto registers = smallRegisters();
  registers.element(kInstanceID, "InstanceID", kUInt8);
  registers.group(0x0d01010102250000, "MetaDictionary");
  registers.property(kNumber, 0x0003);
  const auto rows =
      "  MetaDictionary  -\n"
      "  3c0a  060e2b34.01010101.01011502.00000000  InstanceID  UUID   optional  name=InstanceUID\n"
      "  0003  060e2b34.01010101.05000000.00000000  Number      UInt8  optional\n";
  EXPECT_THAT(textOf(registers), HasSubstr(rows));
  EXPECT_EQ(definitionsOf(registers).sets()[0].properties[0].origin.line, 3u);
  registers.groups.back().properties.clear();
  registers.property(kInstanceID, 0x3c0a);
  registers.property(kNumber, 0x0003);
  EXPECT_THAT(textOf(registers), HasSubstr(rows));
}

TEST(RegisterDefinitions, LookAtNothingThatNoSetUses) {
  auto registers = smallRegisters();
  registers.element(kOther, "no symbol", 0x0eff);
  registers.type(0x0205, "Circle", TypeKind::kRename, 0x0205);
  registers.group(0x0e0f, "Pack of something").klvSyntax = "05";
  registers.property(0x0eff);
  EXPECT_THAT(textOf(registers), HasSubstr("Timer"));
}

TEST(RegisterDefinitions, RefuseAPropertyThatElementsDoesNotDefine) {
  auto registers = smallRegisters();
  registers.property(kOther);
  EXPECT_EQ(refusal(registers),
            "Groups.xml:3: the property 060e2b34.01010101.05000001.00000000 of Timer is not in Elements.xml; give the "
            "Elements register of the same release");
}

TEST(RegisterDefinitions, RefuseAnElementWhoseTypeTypesDoesNotDefine) {
  auto registers = smallRegisters();
  registers.elements.front().type = RegisterKeys::type(kUInt16);
  EXPECT_EQ(
      refusal(registers),
      "Elements.xml:1: the type 060e2b34.01040101.01010200.00000000 of Number is not in Types.xml; give the Types "
      "register of the same release");
}

TEST(RegisterDefinitions, RefuseAParentThatIsNoGroup) {
  auto registers = smallRegisters();
  registers.group(0x0e05, "Child", 0x0e06);
  EXPECT_EQ(
      refusal(registers),
      "Groups.xml:3: Child has the parent 060e2b34.027f0101.00000000.00000e06, which is no group of the register; "
      "name one that is, or take the parent away");
}

TEST(RegisterDefinitions, RefuseGroupsThatInheritFromThemselves) {
  const auto refusalOfCheck = [](const Entries& registers) {
    return refusalOf([&] { definitionsOf(registers).check(); });
  };
  auto registers = smallRegisters();
  registers.group(0x0e05, "Egg", 0x0e06);
  registers.group(0x0e06, "Hen", 0x0e05);
  EXPECT_EQ(refusalOfCheck(registers),
            "Groups.xml:4: Hen inherits from itself, by way of Egg; the register cannot be used as it is, take another "
            "edition");
  SomeRegisters alone;
  alone.group(0x0e05, "Egg", 0x0e05);
  EXPECT_EQ(refusalOfCheck(alone),
            "Groups.xml:1: Egg inherits from itself, by way of Egg; the register cannot be used as it is, take another "
            "edition");
}

TEST(RegisterDefinitions, RefuseTwoEntriesOfOneKey) {
  auto registers = smallRegisters();
  registers.element(kNumber, "Count", kUInt8);
  EXPECT_EQ(refusal(registers),
            "Elements.xml:2: Count has the UL 060e2b34.01010101.05000000.00000000 of Number (Elements.xml:1); take one "
            "of the two entries away");
  registers = smallRegisters();
  registers.group(kTimer, "Clock");
  EXPECT_EQ(refusal(registers),
            "Groups.xml:3: Clock has the UL 060e2b34.027f0101.0e020000.00000000 of Timer (Groups.xml:1); take one of "
            "the two entries away");
}

TEST(RegisterDefinitions, RefuseSymbolsThatAreNone) {
  const std::string remedy = "; the register cannot be used as it is, take another edition";
  auto registers = smallRegisters();
  registers.elements.front().symbol = "Two words";
  EXPECT_EQ(refusal(registers), "Elements.xml:1: 'Two words' cannot be a symbol" + remedy);
  registers = smallRegisters();
  registers.groups.front().symbol = "1st";
  EXPECT_EQ(refusal(registers), "Groups.xml:1: '1st' cannot be a symbol" + remedy);
  registers = smallRegisters();
  registers.enumeration(0x0204, "Grade", kUInt8, {{"0", ""}});
  registers.elements.front().type = RegisterKeys::type(0x0204);
  EXPECT_EQ(refusal(registers), "Types.xml:3: '' cannot be the name of a value" + remedy);
}

TEST(RegisterDefinitions, RefuseAnEnumerationNamedAsAType) {
  auto registers = smallRegisters();
  registers.enumeration(0x0204, "Rational", kUInt8, {{"0", "Rough"}});
  registers.elements.front().type = RegisterKeys::type(0x0204);
  EXPECT_EQ(
      refusal(registers),
      "Types.xml:2: 'Rational' is the name of a type; the register cannot be used as it is, take another edition");
}

TEST(RegisterDefinitions, RefuseAValueOfAnEnumerationThatIsNoNumberOfItsType) {
  for (const auto* number : {"1h", "", "256", "-1"}) {
    auto registers = smallRegisters();
    registers.enumeration(0x0204, "Grade", kUInt8, {{"0", "Rough"}, {number, "Fine"}});
    registers.elements.front().type = RegisterKeys::type(0x0204);
    EXPECT_EQ(refusal(registers), "Types.xml:4: '" + std::string(number) +
                                      "' is no number of the type UInt8; the register cannot be used as it is, take "
                                      "another edition");
  }
}

TEST(RegisterDefinitions, RefuseKeysOfAnotherKind) {
  auto registers = smallRegisters();
  registers.groups.front().key = RegisterKeys::element(kTimer);
  EXPECT_EQ(refusal(registers),
            "Groups.xml:1: '060e2b34.01010101.0e020000.00000000' is no key of a set; the register cannot be used as it "
            "is, take another edition");
  registers = smallRegisters();
  registers.elements.front().key = registers.groups.front().properties.front().element = RegisterKeys::group(kNumber);
  EXPECT_EQ(refusal(registers),
            "Elements.xml:1: '060e2b34.027f0101.05000000.00000000' is no key of a property; the register cannot be "
            "used as it is, take another edition");
}

TEST(RegisterDefinitions, RefuseADynamicLocalTag) {
  auto registers = smallRegisters();
  registers.groups.front().properties.front().staticLocalTag = 0x80a1;
  EXPECT_EQ(refusal(registers),
            "Groups.xml:2: '80a1' is a dynamic local tag, which each file gives by itself; the register cannot be used "
            "as it is, take another edition");
}

TEST(RegisterDefinitions, NameTheRegisterThatIsMissing) {
  auto registers = smallRegisters();
  registers.file(RegisterKind::kTypes).clear();
  EXPECT_EQ(refusal(registers), "Groups.xml: the Types register is missing; give Types.xml of the same release, too");
  registers.file(RegisterKind::kElements).clear();
  EXPECT_EQ(refusal(registers),
            "Groups.xml: the Elements register is missing; give Elements.xml of the same release, too");
  registers = smallRegisters();
  registers.file(RegisterKind::kGroups).clear();
  EXPECT_EQ(refusal(registers),
            "Elements.xml: the Groups register is missing; give Groups.xml of the same release, too");
  EXPECT_EQ(refusal({}), "no register defines sets; give Groups.xml, Elements.xml and Types.xml");
}

TEST(RegisterDefinitions, FollowAnyNumberOfAncestors) {
  constexpr uint64 kMany = 100000;
  SomeRegisters registers;
  for (uint64 i = 1; i <= kMany; ++i)
    registers.group(kRoot + i, "G" + std::to_string(i), i == kMany ? 0 : kRoot + i + 1).klvSyntax = "";
  registers.groups.front().klvSyntax = "53";
  EXPECT_EQ(definitionsOf(registers).sets().size(), kMany);
}

TEST(RegisterDefinitions, HoldLabelsByKeyWithTheirNames) {
  SomeRegisters registers;
  registers.label(0x0d02, "Second", "caf\xC3\xA9 # 2");
  registers.label(0x0d01, "First", "");
  Definitions found;
  addLabels(registers, found);
  EXPECT_EQ(Vantor::textOf(found, "a comment"),
            "dictionary 1\n"
            "# a comment\n"
            "\n"
            "label 060e2b34.04010101.00000000.00000d01 First First\n"
            "label 060e2b34.04010101.00000000.00000d02 Second caf\xC3\xA9 # 2\n");
  EXPECT_THAT(originOf(found.labels().at(0), "First", found), Pair("First", "Labels.xml:2"));
}

TEST(RegisterDefinitions, RefuseLabelsThatCannotBeToldApartOrCalled) {
  const auto refusalOfLabels = [](const Entries& registers) {
    return refusalOf([&] {
      Definitions definitions;
      addLabels(registers, definitions);
    });
  };
  EXPECT_EQ(refusalOfLabels({}), "no register defines labels; give Labels.xml");
  SomeRegisters registers;
  registers.label(0x0d01, "First", "");
  registers.label(0x0d01, "Second", "");
  EXPECT_EQ(refusalOfLabels(registers),
            "Labels.xml:2: Second has the UL 060e2b34.04010101.00000000.00000d01 of First (Labels.xml:1); take one of "
            "the two entries away");
  SomeRegisters unnamed;
  unnamed.label(0x0d01, "(none)", "");
  EXPECT_EQ(refusalOfLabels(unnamed),
            "Labels.xml:1: '(none)' cannot be a symbol; the register cannot be used as it is, take another edition");
}

}  // namespace
}  // namespace Vantor::Registers
