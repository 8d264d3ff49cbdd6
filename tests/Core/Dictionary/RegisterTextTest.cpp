#include "Core/Dictionary/RegisterText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <utility>

#include "SomeRegisters.h"

namespace Vantor {
namespace {

using ::testing::HasSubstr;
using ::testing::Pair;

constexpr uint64 kUInt8 = 0x0101010000000000;
constexpr uint64 kUInt16 = 0x0101020000000000;
constexpr uint64 kNumber = 0x0500000000000000;
constexpr uint64 kOther = 0x0500000100000000;
constexpr uint64 kRoot = 0x0e01000000000000;
constexpr uint64 kTimer = 0x0e02000000000000;
constexpr uint64 kInstanceID = 0x0101150200000000;

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
  const auto text = definitionsText(registers).text;
  const auto start = text.find("Number  ") + 8;
  return text.substr(start, text.find("  ", start) - start);
}

std::string refusal(const Registers& registers) {
  return refusalOf([&] { definitionsText(registers); });
}

/// A line's text, "FILE:LINE" or "-" where no entry made it.
std::vector<std::pair<std::string, std::string>> linesOf(const Registers& registers, const DictionaryText& text) {
  std::vector<std::pair<std::string, std::string>> lines;
  std::istringstream from(text.text);
  for (std::string line; std::getline(from, line);) {
    const auto& origin = text.origins.at(lines.size());
    lines.emplace_back(line, origin.line == 0 ? "-" : registers.where(origin));
  }
  EXPECT_EQ(lines.size(), text.origins.size());
  return lines;
}

TEST(RegisterText, WritesSetsByKeyAndTheirPropertiesInTheOrderOfTheRegister) {
  SomeRegisters registers;
  registers.integer(kUInt8, "UInt8", 1);
  registers.integer(kUInt16, "UInt16", 2);
  registers.element(kNumber, "Number", kUInt8);
  registers.element(kOther, "LongerName", kUInt16);
  registers.group(kTimer, "Timer", kRoot);
  registers.property(kOther, 0x1501);
  registers.property(kNumber).isOptional = false;
  registers.group(kRoot, "Root").isConcrete = false;
  EXPECT_EQ(definitionsText(registers).text,
            "dictionary 1\n"
            "# Made from the SMPTE metadata registers Groups (ST 395), Elements (ST 335) and Types (ST 2003).\n"
            "\n"
            "060e2b34.027f0101.0e010000.00000000  Root  -  abstract\n"
            "\n"
            "060e2b34.027f0101.0e020000.00000000  Timer  Root\n"
            "  1501  060e2b34.01010101.05000001.00000000  LongerName  UInt16  optional\n"
            "  -     060e2b34.01010101.05000000.00000000  Number      UInt8   required\n");
}

TEST(RegisterText, TellsWhereEachLineCameFrom) {
  auto registers = smallRegisters();
  registers.enumeration(kUInt16, "Grade", kUInt8, {{"0", "Rough"}, {"1", "Fine"}});
  registers.elements.front().type = RegisterKeys::type(kUInt16);
  EXPECT_THAT(
      linesOf(registers, definitionsText(registers)),
      ::testing::ElementsAre(
          Pair("dictionary 1", "-"), Pair(::testing::StartsWith("# "), "-"), Pair("", "-"),
          Pair("enum Grade UInt8", "Types.xml:2"), Pair("  0  Rough", "Types.xml:3"), Pair("  1  Fine", "Types.xml:4"),
          Pair("", "-"), Pair("060e2b34.027f0101.0e020000.00000000  Timer  -", "Groups.xml:1"),
          Pair("  -  060e2b34.01010101.05000000.00000000  Number  Grade  optional", "Groups.xml:2")));
}

TEST(RegisterText, TakesLocalSetsOfHeaderMetadataAndWhatTheyInheritFrom) {
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
  for (const auto& [line, origin] : linesOf(registers, definitionsText(registers))) {
    if (line.compare(0, 8, "060e2b34") == 0) symbols += line.substr(37) + "\n";
  }
  EXPECT_EQ(symbols,
            "OneCoding  -\nSeveralCodings  -\nChild  Parent\nParent  -\nInheritedTransform  -\n"
            "NextToIndexTables  InheritedTransform\n");
}

TEST(RegisterText, WritesThoseEnumerationsThatPropertiesUseByKey) {
  SomeRegisters registers;
  registers.integer(kUInt8, "UInt8", 1);
  registers.enumeration(0x0204, "Late", kUInt8, {{"10", "Ten"}, {"-1", "Less"}});
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
  EXPECT_THAT(definitionsText(registers).text, HasSubstr("\n\n"
                                                         "enum Early UInt8\n"
                                                         "\n"
                                                         "enum Late UInt8\n"
                                                         "  10  Ten\n"
                                                         "  -1  Less\n"
                                                         "\n"
                                                         "enum ScanningDirectionType Orientation\n"
                                                         "  0  LeftToRight\n"
                                                         "\n"
                                                         "060e2b34.027f0101.0e020000.00000000  Timer  -\n"));
  EXPECT_THAT(definitionsText(registers).text, HasSubstr("  One        Late                   optional\n"));
  EXPECT_THAT(definitionsText(registers).text, HasSubstr("  Many       ArrayOf(Early)         optional\n"));
}

TEST(RegisterText, TellsWhichSetAReferenceLeadsToIfThatIsThere) {
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

TEST(RegisterText, CarriesWeakReferencesToDefinitionsAsIdentifiers) {
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

TEST(RegisterText, CarriesAPropertyWithoutATypeAsBytes) {
  auto registers = smallRegisters();
  registers.elements.front().type.reset();
  EXPECT_THAT(definitionsText(registers).text, HasSubstr("  Number  DataStream  optional\n"));
}

TEST(RegisterText, TellsSinglePropertiesAsFilesHaveThem) {
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
  const auto text = definitionsText(registers).text;
  for (const auto* row : {"  InstanceID           UUID                             optional  name=InstanceUID\n",
                          "  LinkedGenerationID   UUID                             optional  name=GenerationUID\n",
                          "  PrimaryPackage       WeakReference(DefinitionObject)  optional\n",
                          "  ExtendedClipID       UMID64                           optional\n",
                          "  CodingStyleDefault   J2KCodingStyleDefault            optional\n",
                          "  QuantizationDefault  J2KQuantisationDefault           optional\n"}) {
    EXPECT_THAT(text, HasSubstr(row));
  }
}

TEST(RegisterText, GivesTheMetaDictionaryTheInstanceUIDThatItHasInFiles) {
  auto registers = smallRegisters();
  registers.element(kInstanceID, "InstanceID", kUInt8);
  registers.group(0x0d01010102250000, "MetaDictionary");
  registers.property(kNumber, 0x0003);
  const auto rows =
      "  MetaDictionary  -\n"
      "  3c0a  060e2b34.01010101.01011502.00000000  InstanceID  UUID   optional  name=InstanceUID\n"
      "  0003  060e2b34.01010101.05000000.00000000  Number      UInt8  optional\n";
  EXPECT_THAT(definitionsText(registers).text, HasSubstr(rows));
  EXPECT_EQ(definitionsText(registers).origins[4].line, 3u);
  registers.groups.back().properties.clear();
  registers.property(kInstanceID, 0x3c0a);
  registers.property(kNumber, 0x0003);
  EXPECT_THAT(definitionsText(registers).text, HasSubstr(rows));
}

TEST(RegisterText, LooksAtNothingThatNoSetUses) {
  auto registers = smallRegisters();
  registers.element(kOther, "no symbol", 0x0eff);
  registers.type(0x0205, "Circle", TypeKind::kRename, 0x0205);
  registers.group(0x0e0f, "Pack of something").klvSyntax = "05";
  registers.property(0x0eff);
  EXPECT_THAT(definitionsText(registers).text, HasSubstr("Timer"));
}

TEST(RegisterText, RefusesAPropertyThatElementsDoesNotDefine) {
  auto registers = smallRegisters();
  registers.property(kOther);
  EXPECT_EQ(refusal(registers),
            "Groups.xml:3: the property 060e2b34.01010101.05000001.00000000 of Timer is not in Elements.xml; give the "
            "Elements register of the same release");
}

TEST(RegisterText, RefusesAnElementWhoseTypeTypesDoesNotDefine) {
  auto registers = smallRegisters();
  registers.elements.front().type = RegisterKeys::type(kUInt16);
  EXPECT_EQ(
      refusal(registers),
      "Elements.xml:1: the type 060e2b34.01040101.01010200.00000000 of Number is not in Types.xml; give the Types "
      "register of the same release");
}

TEST(RegisterText, RefusesAParentThatIsNoGroup) {
  auto registers = smallRegisters();
  registers.group(0x0e05, "Child", 0x0e06);
  EXPECT_EQ(
      refusal(registers),
      "Groups.xml:3: Child has the parent 060e2b34.027f0101.00000000.00000e06, which is no group of the register; "
      "name one that is, or take the parent away");
}

TEST(RegisterText, RefusesGroupsThatInheritFromThemselves) {
  auto registers = smallRegisters();
  registers.group(0x0e05, "Egg", 0x0e06);
  registers.group(0x0e06, "Hen", 0x0e05);
  EXPECT_EQ(
      refusal(registers),
      "Groups.xml:4: Hen inherits from itself, by way of Egg; give one of the groups between them another parent");
  SomeRegisters alone;
  alone.group(0x0e05, "Egg", 0x0e05);
  EXPECT_EQ(
      refusal(alone),
      "Groups.xml:1: Egg inherits from itself, by way of Egg; give one of the groups between them another parent");
}

TEST(RegisterText, RefusesTwoEntriesOfOneKey) {
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

TEST(RegisterText, RefusesSymbolsThatAreNone) {
  const auto* rest = " is no symbol; begin with a letter or '_' and go on with these, digits, '-' and '.'";
  auto registers = smallRegisters();
  registers.elements.front().symbol = "Two words";
  EXPECT_EQ(refusal(registers), "Elements.xml:1: 'Two words'" + std::string(rest));
  registers = smallRegisters();
  registers.groups.front().symbol = "1st";
  EXPECT_EQ(refusal(registers), "Groups.xml:1: '1st'" + std::string(rest));
  registers = smallRegisters();
  registers.enumeration(0x0204, "Grade", kUInt8, {{"0", ""}});
  registers.elements.front().type = RegisterKeys::type(0x0204);
  EXPECT_EQ(refusal(registers), "Types.xml:3: ''" + std::string(rest));
}

TEST(RegisterText, RefusesAValueOfAnEnumerationThatIsNoNumber) {
  auto registers = smallRegisters();
  registers.enumeration(0x0204, "Grade", kUInt8, {{"0", "Rough"}, {"1h", "Fine"}});
  registers.elements.front().type = RegisterKeys::type(0x0204);
  EXPECT_EQ(refusal(registers), "Types.xml:4: the value '1h' of an enumeration is no number; write a decimal number");
}

TEST(RegisterText, NamesTheRegisterThatIsMissing) {
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

TEST(RegisterText, FollowsAnyNumberOfAncestors) {
  constexpr uint64 kMany = 100000;
  SomeRegisters registers;
  for (uint64 i = 1; i <= kMany; ++i) registers.group(kRoot + i, "G", i == kMany ? 0 : kRoot + i + 1).klvSyntax = "";
  registers.groups.front().klvSyntax = "53";
  EXPECT_EQ(definitionsText(registers).origins.size(), 2 + 2 * kMany);
}

TEST(RegisterText, WritesLabelsByKeyWithTheirNames) {
  SomeRegisters registers;
  registers.label(0x0d02, "Second", "caf\xC3\xA9 # 2");
  registers.label(0x0d01, "First", "");
  const auto text = labelsText(registers);
  EXPECT_EQ(text.text,
            "dictionary 1\n"
            "# Made from the SMPTE metadata register Labels (ST 400).\n"
            "\n"
            "label 060e2b34.04010101.00000000.00000d01 First First\n"
            "label 060e2b34.04010101.00000000.00000d02 Second caf\xC3\xA9 # 2\n");
  EXPECT_EQ(linesOf(registers, text).at(3).second, "Labels.xml:2");
  EXPECT_EQ(linesOf(registers, text).at(4).second, "Labels.xml:1");
}

TEST(RegisterText, RefusesLabelsThatCannotBeToldApartOrCalled) {
  const auto refusalOfLabels = [](const Registers& registers) { return refusalOf([&] { labelsText(registers); }); };
  EXPECT_EQ(refusalOfLabels({}), "no register defines labels; give Labels.xml");
  SomeRegisters registers;
  registers.label(0x0d01, "First", "");
  registers.label(0x0d01, "Second", "");
  EXPECT_EQ(refusalOfLabels(registers),
            "Labels.xml:2: Second has the UL 060e2b34.04010101.00000000.00000d01 of First (Labels.xml:1); take one of "
            "the two entries away");
  SomeRegisters unnamed;
  unnamed.label(0x0d01, "(none)", "");
  EXPECT_EQ(
      refusalOfLabels(unnamed),
      "Labels.xml:1: '(none)' is no symbol; begin with a letter or '_' and go on with these, digits, '-' and '.'");
}

}  // namespace
}  // namespace Vantor
