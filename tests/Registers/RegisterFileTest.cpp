#include "Registers/RegisterFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "XMLUtils/LoadDocument.h"

namespace Vantor::Registers {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A file that is there as long as the object, in a folder of its test.
class RegisterFile {
 public:
  RegisterFile(const std::string& name, const std::string& bytes) : path_(folder() / name) {
    std::filesystem::create_directory(folder());
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  ~RegisterFile() {
    std::error_code error;
    std::filesystem::remove(path_, error);
    std::filesystem::remove(folder(), error);
  }
  const Path& path() const { return path_; }

 private:
  static Path folder() {
    return Path(::testing::TempDir()) /
           ("vantor-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
  }
  Path path_;
};

Entries registersOf(const std::string& bytes) {
  Entries registers;
  readRegister(RegisterFile("Register.xml", bytes).path(), registers);
  return registers;
}

/// The message of reading, without the folder; "" when there is none.
std::string refusal(const std::string& bytes, Entries registers = {}) {
  const RegisterFile file("Register.xml", bytes);
  try {
    readRegister(file.path(), registers);
    return "";
  } catch (const Exceptions::InvalidFormat& exception) {
    const auto folder = Platform::pathToUTF8(file.path().parent_path() / "");
    EXPECT_EQ(exception.message().compare(0, folder.size(), folder), 0) << exception.message();
    return exception.message().substr(folder.size());
  }
}

std::string groupsOf(const std::string& entries) {
  return "<GroupsRegister xmlns='http://www.smpte-ra.org/ns/395/2016'>\n<Entries>\n" + entries +
         "</Entries></GroupsRegister>";
}

/// A group of the least that there may be, and `more`.
std::string groupWith(const std::string& more) {
  return "<Entry><Symbol>Timer</Symbol><UL>urn:smpte:ul:060e2b34.027f0101.0e020000.00000000</UL><Kind>LEAF</Kind>" +
         more + "</Entry>\n";
}

TEST(RegisterFile, ReadsTheTextsOfAnEntryForPeople) {
  const auto registers = registersOf(
      groupsOf(groupWith("<Definition>Measures\n  time</Definition><DefiningDocument>SMPTE ST 9</DefiningDocument>") +
               groupWith("")));
  EXPECT_EQ(registers.groups.at(0).texts.definition, "Measures time");
  EXPECT_EQ(registers.groups.at(0).texts.document, "SMPTE ST 9");
  EXPECT_EQ(registers.groups.at(1).texts.definition, "");
}

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

KLV::Key key(const char* text) { return MetaMetadata::registerKey(text); }

TEST(RegisterFile, ReadsGroups) {
  const auto registers = registersOf(
      groupsOf("<Entry>\n"
               "  <Register>Groups</Register>\n"
               "  <Symbol>Timer</Symbol>\n"
               "  <UL>urn:smpte:ul:060e2b34.027f0101.0e020000.00000000</UL>\n"
               "  <Kind>LEAF</Kind>\n"
               "  <Parent>urn:smpte:ul:060e2b34.027f0101.0e010000.00000000</Parent>\n"
               "  <KLVSyntax> 06\n 53 </KLVSyntax>\n"
               "  <IsConcrete>false</IsConcrete>\n"
               "  <Contents>\n"
               "    <Record>\n"
               "      <UL>urn:smpte:ul:060e2b34.01010101.05000000.00000000</UL>\n"
               "      <IsOptional>true</IsOptional><LocalTag>3C0a</LocalTag>\n"
               "    </Record>\n"
               "    <Record><UL>urn:smpte:ul:060E2B34.01010101.06000000.00000000</UL><IsOptional>0</IsOptional>\n"
               "      <LocalTag>08</LocalTag></Record>\n"
               "  </Contents>\n"
               "</Entry>\n"));
  ASSERT_EQ(registers.groups.size(), 1u);
  const auto& group = registers.groups.front();
  EXPECT_EQ(group.key, key("060e2b34.027f0101.0e020000.00000000"));
  EXPECT_EQ(group.symbol, "Timer");
  EXPECT_EQ(group.parent, key("060e2b34.027f0101.0e010000.00000000"));
  EXPECT_EQ(group.klvSyntax, "06 53");
  EXPECT_FALSE(group.isConcrete);
  EXPECT_THAT(registers.where(group.origin), EndsWith("Register.xml:3"));
  ASSERT_EQ(group.properties.size(), 2u);
  EXPECT_EQ(group.properties[0].element, key("060e2b34.01010101.05000000.00000000"));
  EXPECT_EQ(group.properties[0].staticLocalTag, 0x3c0a);
  EXPECT_TRUE(group.properties[0].isOptional);
  EXPECT_EQ(group.properties[0].origin.line, 13u);
  EXPECT_EQ(group.properties[1].element, key("060e2b34.01010101.06000000.00000000"));
  EXPECT_EQ(group.properties[1].staticLocalTag, 8);
  EXPECT_FALSE(group.properties[1].isOptional);
}

TEST(RegisterFile, TakesAGroupForConcreteAndItsPropertiesForRequiredUnlessToldOtherwise) {
  const auto group = registersOf(groupsOf(groupWith("<Contents><Record><UL>urn:smpte:ul:060e2b34.01010101.05000000."
                                                    "00000000</UL></Record></Contents>")))
                         .groups.front();
  EXPECT_TRUE(group.isConcrete);
  EXPECT_FALSE(group.parent.has_value());
  EXPECT_EQ(group.klvSyntax, "");
  EXPECT_FALSE(group.properties.front().isOptional);
  EXPECT_EQ(group.properties.front().staticLocalTag, 0);
}

TEST(RegisterFile, ReadsElements) {
  const auto registers = registersOf(
      "<ElementsRegister><Entries>"
      "<Entry><Symbol>Number</Symbol><UL>urn:smpte:ul:060e2b34.01010101.05000000.00000000</UL><Kind>LEAF</Kind>"
      "<Type>urn:smpte:ul:060e2b34.01040101.01010100.00000000</Type><IsDeprecated>true</IsDeprecated></Entry>\n"
      "<Entry><Symbol>Bytes</Symbol><UL>urn:smpte:ul:060e2b34.01010101.06000000.00000000</UL><Kind>LEAF</Kind></Entry>"
      "</Entries></ElementsRegister>");
  ASSERT_EQ(registers.elements.size(), 2u);
  EXPECT_EQ(registers.elements[0].key, key("060e2b34.01010101.05000000.00000000"));
  EXPECT_EQ(registers.elements[0].symbol, "Number");
  EXPECT_EQ(registers.elements[0].type, key("060e2b34.01040101.01010100.00000000"));
  EXPECT_FALSE(registers.elements[1].type.has_value());
  EXPECT_EQ(registers.elements[1].origin.line, 2u);
}

TEST(RegisterFile, ReadsTypes) {
  const auto registers = registersOf(
      "<TypesRegister><Entries>"
      "<Entry><Symbol>Int8</Symbol><UL>urn:smpte:ul:060e2b34.01040101.01010500.00000000</UL><Kind>LEAF</Kind>"
      "<TypeKind>Integer</TypeKind><TypeSize>1</TypeSize><TypeQualifiers>isNumeric isSigned</TypeQualifiers></Entry>"
      "<Entry><Symbol>Grade</Symbol><UL>urn:smpte:ul:060e2b34.01040101.02010100.00000000</UL><Kind>LEAF</Kind>"
      "<TypeKind>Enumeration</TypeKind><BaseType>urn:smpte:ul:060e2b34.01040101.01010500.00000000</BaseType>\n"
      "<Facets><Facet><Symbol>Rough</Symbol><Name>rough</Name><Value>0</Value></Facet>\n"
      "<Facet><Value>1</Value></Facet></Facets></Entry>"
      "<Entry><Symbol>Date</Symbol><UL>urn:smpte:ul:060e2b34.01040101.03010500.00000000</UL><Kind>LEAF</Kind>"
      "<TypeKind>Record</TypeKind></Entry>"
      "</Entries></TypesRegister>");
  ASSERT_EQ(registers.types.size(), 3u);
  EXPECT_EQ(registers.types[0].kind, TypeKind::kInteger);
  EXPECT_EQ(registers.types[0].size, 1u);
  EXPECT_TRUE(registers.types[0].isSigned);
  const auto& grade = registers.types[1];
  EXPECT_EQ(grade.kind, TypeKind::kEnumeration);
  EXPECT_EQ(grade.base, registers.types[0].key);
  EXPECT_FALSE(grade.isSigned);
  ASSERT_EQ(grade.values.size(), 2u);
  EXPECT_EQ(grade.values[0].value, "0");
  EXPECT_EQ(grade.values[0].symbol, "Rough");
  EXPECT_EQ(grade.values[0].origin.line, 2u);
  EXPECT_EQ(grade.values[1].value, "1");
  EXPECT_EQ(grade.values[1].symbol, "");
  EXPECT_EQ(registers.types[2].kind, TypeKind::kRecord);
  EXPECT_TRUE(registers.types[2].values.empty());
}

TEST(RegisterFile, KnowsTheKindsOfTypesThatRulesAskFor) {
  const auto kindOf = [](const std::string& kind) {
    return registersOf(
               "<TypesRegister><Entries><Entry><Symbol>T</Symbol><Kind>LEAF</Kind>"
               "<UL>urn:smpte:ul:060e2b34.01040101.01010500.00000000</UL><TypeKind>" +
               kind + "</TypeKind></Entry></Entries></TypesRegister>")
        .types.front()
        .kind;
  };
  EXPECT_EQ(kindOf("Rename"), TypeKind::kRename);
  EXPECT_EQ(kindOf("VariableArray"), TypeKind::kVariableArray);
  EXPECT_EQ(kindOf("Set"), TypeKind::kSet);
  EXPECT_EQ(kindOf("String"), TypeKind::kString);
  EXPECT_EQ(kindOf("StrongReference"), TypeKind::kStrongReference);
  EXPECT_EQ(kindOf("WeakReference"), TypeKind::kWeakReference);
  EXPECT_EQ(kindOf("FixedArray"), TypeKind::kFixedArray);
  EXPECT_EQ(kindOf("Opaque"), TypeKind::kOpaque);
  EXPECT_EQ(kindOf("rename"), TypeKind::kOther);
}

TEST(RegisterFile, ReadsLabelsWhoseNamesAreOneLineOfAnyLanguage) {
  const auto registers = registersOf(
      "<LabelsRegister><Entries><Entry><Symbol>First</Symbol>"
      "<UL>urn:smpte:ul:060e2b34.04010101.0d010201.01010900</UL><Kind>LEAF</Kind>"
      "<Name>\n 12.1\tSon  &amp;\r\n <![CDATA[<caf]]>\xC3\xA9<!-- no -->&#x1F600; "
      "</Name></Entry></Entries></LabelsRegister>");
  ASSERT_EQ(registers.labels.size(), 1u);
  EXPECT_EQ(registers.labels[0].key, key("060e2b34.04010101.0d010201.01010900"));
  EXPECT_EQ(registers.labels[0].symbol, "First");
  EXPECT_EQ(registers.labels[0].name, "12.1 Son & <caf\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(RegisterFile, GoesByTheLocalNameOfTheRootWhateverItsNamespace) {
  EXPECT_EQ(registersOf("<r:GroupsRegister xmlns:r='urn:new'><r:Entries><r:Entry><r:Symbol>S</r:Symbol><r:Kind>LEAF"
                        "</r:Kind><r:UL>urn:smpte:ul:060e2b34.027f0101.0e020000.00000000</r:UL></r:Entry></r:Entries>"
                        "</r:GroupsRegister>")
                .groups.size(),
            1u);
}

TEST(RegisterFile, PassesOverNodesAndOverWhatItDoesNotKnow) {
  const auto registers = registersOf(
      groupsOf("<Entry><Symbol>Heading of many words</Symbol><Kind>NODE</Kind><UL>none</UL><Contents><Record>"
               "<UL>urn:smpte:ul:060e2b34.01010101.05000000.00000000</UL></Record></Contents></Entry>" +
               groupWith("<Future><UL>a</UL><Contents><Record><UL>b</UL></Record></Contents></Future>"
                         "<Contents><Symbol>c</Symbol><Other><UL>d</UL></Other></Contents>") +
               "<Other>" + groupWith("") + "</Other>") +
      "<!-- end -->");
  ASSERT_EQ(registers.groups.size(), 1u);
  EXPECT_EQ(registers.groups[0].symbol, "Timer");
  EXPECT_TRUE(registers.groups[0].properties.empty());
}

TEST(RegisterFile, AddsOneRegisterToOthers) {
  Entries registers;
  readRegister(RegisterFile("Groups.xml", groupsOf(groupWith(""))).path(), registers);
  readRegister(RegisterFile("Labels.xml",
                            "<LabelsRegister><Entries><Entry><Symbol>First</Symbol><Kind>LEAF</Kind>"
                            "<UL>urn:smpte:ul:060e2b34.04010101.0d010201.01010900</UL></Entry></Entries>"
                            "</LabelsRegister>")
                   .path(),
               registers);
  EXPECT_THAT(registers.where(registers.groups.at(0).origin), EndsWith("Groups.xml:3"));
  EXPECT_THAT(registers.where(registers.labels.at(0).origin), EndsWith("Labels.xml:1"));
  EXPECT_EQ(registers.file(RegisterKind::kTypes), "");
}

TEST(RegisterFile, AddsNothingWhenItThrows) {
  Entries registers;
  const RegisterFile file("Register.xml", groupsOf(groupWith("") + "<Entry/>"));
  EXPECT_THROW(readRegister(file.path(), registers), Exceptions::InvalidFormat);
  EXPECT_TRUE(registers.groups.empty());
  EXPECT_EQ(registers.file(RegisterKind::kGroups), "");
}

TEST(RegisterFile, ReadsUtf16) {
  std::string bytes = "\xFE\xFF";
  for (const char c : groupsOf(groupWith(""))) bytes += std::string(1, '\0') + c;
  EXPECT_EQ(registersOf(bytes).groups.size(), 1u);
}

TEST(RegisterFile, RefusesTheSameKindTwice) {
  Entries registers;
  registers.file(RegisterKind::kGroups) = "Groups.xml";
  EXPECT_EQ(refusal(groupsOf(groupWith("")), registers),
            "Register.xml:1: the root element is GroupsRegister, as in Groups.xml; give one of the two");
}

TEST(RegisterFile, RefusesADocumentThatIsNoRegister) {
  EXPECT_EQ(refusal("<!-- a -->\n<Preface/>"),
            "Register.xml:2: the root element Preface is none of a register; give a file whose root is "
            "GroupsRegister, ElementsRegister, TypesRegister or LabelsRegister");
  EXPECT_EQ(refusal(groupsOf("")),
            "Register.xml: the register has no entry of the kind LEAF; give the file as SMPTE publishes it");
}

TEST(RegisterFile, RefusesWhatIsNoXML) {
  EXPECT_EQ(refusal(groupsOf("<Entry>\n</Entri>")),
            "Register.xml:4:3: this is no XML that can be read: expected end of tag 'Entry'; give the file as "
            "SMPTE publishes it");
  EXPECT_EQ(refusal("dictionary 1\n"),
            "Register.xml:1:1: this is no XML that can be read: invalid document structure; give the file as SMPTE "
            "publishes it");
  EXPECT_THAT(refusal(""), StartsWith("Register.xml:1:1: this is no XML that can be read: "));
  EXPECT_THAT(refusal(std::string("\0\1\2", 3)), HasSubstr("this is no XML that can be read: "));
  EXPECT_EQ(refusal("<?xml version='1.0' encoding='EBCDIC-CP-US'?><a/>"),
            "Register.xml:1:1: this is no XML that can be read: encoding 'EBCDIC-CP-US' is not supported; give the "
            "file as SMPTE publishes it");
  EXPECT_THAT(refusal(groupsOf("<Entry><Symbol>\xC3</Symbol></Entry>")),
              HasSubstr("this is no XML that can be read: "));
}

TEST(RegisterFile, RefusesWhatEndsTooEarly) {
  const auto whole = groupsOf(groupWith(""));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_THAT(refusal(whole.substr(0, size)), HasSubstr("this is no XML that can be read: ")) << size;
  }
}

TEST(RegisterFile, RefusesAnEntryThatLacksWhatTellsIt) {
  EXPECT_EQ(refusal(groupsOf("<Entry><Symbol>Timer</Symbol><Kind>LEAF</Kind></Entry>")),
            "Register.xml:3: the entry 'Timer' has no UL; add the one that it is registered with");
  EXPECT_EQ(refusal(groupsOf("<Entry><UL>urn:smpte:ul:060e2b34.027f0101.0e020000.00000000</UL><Symbol> </Symbol>"
                             "<Kind>LEAF</Kind></Entry>")),
            "Register.xml:3: the entry 060e2b34.027f0101.0e020000.00000000 has no Symbol; add one");
  EXPECT_EQ(refusal(groupsOf("\n<Entry><Symbol>Timer</Symbol></Entry>")),
            "Register.xml:4: an entry has no Kind; write LEAF if it defines something, NODE if others stand below "
            "it");
  EXPECT_EQ(refusal(groupsOf(groupWith("<Contents>\n<Record/></Contents>"))),
            "Register.xml:4: a property has no UL; add that of its element");
}

TEST(RegisterFile, RefusesAFieldThatIsThereTwice) {
  EXPECT_EQ(refusal(groupsOf("<Entry><Symbol>Timer</Symbol>\n<Symbol>Clock</Symbol></Entry>")),
            "Register.xml:4: there is one Symbol already; give the file as SMPTE publishes it");
}

TEST(RegisterFile, RefusesFieldsThatCannotBeUnderstood) {
  const auto* noUL = " is no UL; write urn:smpte:ul: and four groups of eight hexadecimal digits, dots between them";
  EXPECT_EQ(refusal(groupsOf(groupWith("<Parent>urn:smpte:ul:060e2b34</Parent>"))),
            "Register.xml:3: 'urn:smpte:ul:060e2b34'" + std::string(noUL));
  EXPECT_EQ(refusal(groupsOf("<Entry><Symbol>Timer</Symbol><Kind>LEAF</Kind><UL>x</UL></Entry>")),
            "Register.xml:3: 'x'" + std::string(noUL));
  EXPECT_EQ(refusal(groupsOf(groupWith("<IsConcrete>yes</IsConcrete>"))),
            "Register.xml:3: 'yes' is no IsConcrete; write true or false");
  const auto tagged = [](const std::string& tag) {
    return groupsOf(groupWith("<Contents><Record><UL>urn:smpte:ul:060e2b34.01010101.05000000.00000000</UL><LocalTag>" +
                              tag + "</LocalTag></Record></Contents>"));
  };
  for (const std::string tag : {"3c0a0", "3c0g", "-1", "0x1"}) {
    EXPECT_EQ(refusal(tagged(tag)),
              "Register.xml:3: '" + tag + "' is no local tag; write it with four hexadecimal digits");
  }
}

TEST(RegisterFile, NamesAFileThatCannotBeRead) {
  Entries registers;
  const auto missing = std::filesystem::path(::testing::TempDir()) / "VantorNoRegister.xml";
  try {
    readRegister(missing, registers);
    FAIL();
  } catch (const Exceptions::IOError& exception) {
    EXPECT_EQ(exception.message(), "cannot open '" + Platform::pathToUTF8(missing) + "': No such file or directory");
  }
  EXPECT_THROW(readRegister(::testing::TempDir(), registers), Exceptions::IOError);
}

TEST(RegisterFile, IsNotMadeToOpenOrExpandAnything) {
  const RegisterFile secret("Secret.txt", "secret");
  const auto uri = "file://" + Platform::pathToUTF8(secret.path());
  EXPECT_THAT(refusal("<!DOCTYPE GroupsRegister [<!ENTITY e SYSTEM '" + uri + "'>]>" +
                      groupsOf(groupWith("<KLVSyntax>&e;</KLVSyntax>"))),
              HasSubstr("this is no XML that can be read: "));
  EXPECT_THAT(refusal("<!DOCTYPE GroupsRegister [<!ENTITY e 'text'>]>" + groupsOf("<Entry><Name>&e;</Name></Entry>")),
              HasSubstr("this is no XML that can be read: "));
  EXPECT_EQ(refusal("<!DOCTYPE GroupsRegister SYSTEM '" + uri + "'>" + groupsOf(groupWith(""))), "");
  EXPECT_EQ(refusal("<GroupsRegister xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                    "xsi:noNamespaceSchemaLocation='" +
                    uri + "'><Entries>" + groupWith("") + "</Entries></GroupsRegister>"),
            "");
}

TEST(RegisterFile, IsRefusedAtOnceBeyondTheLimitsOfDocuments) {
  const auto start = std::chrono::steady_clock::now();
  const std::size_t tooMany = Limits().nesting - 1;  // inside two elements
  EXPECT_EQ(refusal(groupsOf(repeated("<a>", tooMany) + repeated("</a>", tooMany))),
            "Register.xml: line 3, column " + std::to_string(3 * (tooMany - 1) + 1) +
                ": elements nest deeper than 1000 levels (limit 'nesting')");
  std::string attributes;
  for (int i = 0; i < 100000; ++i) attributes += " a" + std::to_string(i) + "=''";
  EXPECT_THAT(refusal(groupsOf("<Entry" + attributes + "/>")), HasSubstr("more than 1000 attributes"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

}  // namespace
}  // namespace Vantor::Registers
