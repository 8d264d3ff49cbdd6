#include <gtest/gtest.h>

#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

constexpr const char* kKeyText = "06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00";

TestPartition newPartition() {
  TestDictionary dictionary;
  dictionary.property("Text", Types::Identifiers::kUTF16String);
  return TestPartition(dictionary.set("Preface", {"Text"}).set("Other"));
}

std::string container(const std::string& content) {
  return document("<groups:FloatingDarkMetadata>" + content + "</groups:FloatingDarkMetadata>");
}

std::string darkSet(const std::string& value, const std::string& octets = "4", const std::string& key = kKeyText) {
  return "<groups:DarkMetadata groups:BEROctetCount=\"" + octets + "\" groups:Key=\"" + key + "\">" + value +
         "</groups:DarkMetadata>";
}

TestPartition imported(const std::string& content, Entry entry = Entry::kBuffer) {
  auto partition = newPartition();
  EXPECT_EQ(import(container(content), partition, entry).size(), 0u);
  return partition;
}

Bytes valueOf(const DarkMetadataSet& set) {
  return Bytes(set.value().rawBuffer(), set.value().rawBuffer() + set.value().serializedSize());
}

/// The value of the one dark set that a text gives.
Bytes valueOf(const std::string& text, Entry entry = Entry::kBuffer) {
  const auto partition = imported(darkSet(text), entry);
  if (partition->darkEnd() - partition->darkBegin() != 1) throw std::logic_error("that is not one dark set");
  return valueOf(**partition->darkBegin());
}

Failure failureOf(const std::string& content, Entry entry = Entry::kBuffer) {
  return XML2Partition::failureOf([&] { imported(content, entry); });
}

Failure invalidValue(const std::string& message, int line) {
  return {"InvalidFormat", message, "XMLBuilder\\XML2Partition", line};
}

TEST(DarkSetImport, ReadsKeyOctetCountAndValue) {
  for (const auto entry : kEntries) {
    const auto partition = imported(darkSet("0A0B0C", "9"), entry);
    ASSERT_EQ(partition->darkEnd() - partition->darkBegin(), 1);
    const DarkMetadataSet& set = **partition->darkBegin();
    EXPECT_EQ(set.key(), MetaMetadata::registerKey(XMLBuilder::kDarkSetKey));
    EXPECT_EQ(set.berLength(), 9);
    EXPECT_EQ(valueOf(set), (Bytes{0x0a, 0x0b, 0x0c}));
    EXPECT_TRUE(partition->sets().empty());
  }
}

TEST(DarkSetImport, TakesDigitsInEitherCase) {
  EXPECT_EQ(valueOf("0a0B"), (Bytes{0x0a, 0x0b}));
  EXPECT_EQ(valueOf("0123456789abcdefABCDEF"),
            (Bytes{0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef, 0xab, 0xcd, 0xef}));
}

TEST(DarkSetImport, ReadsAnEmptyElementAsAnEmptyValue) {
  for (const auto entry : kEntries) EXPECT_EQ(valueOf("", entry), Bytes());
}

TEST(DarkSetImport, ReadsBlankTextAsAnEmptyValueUnlessItReadsAFile) {
  EXPECT_EQ(valueOf(" "), Bytes());
  EXPECT_EQ(valueOf("\n ", Entry::kString), Bytes());
  EXPECT_EQ(failureOf(darkSet("\t"), Entry::kFile).line, 89);
  EXPECT_EQ(failureOf(darkSet("\t\t"), Entry::kFile).line, 99);
}

TEST(DarkSetImport, TakesTheValueOfTheFirstChildWhateverItIs) {
  EXPECT_EQ(valueOf("<![CDATA[0A]]>0B"), (Bytes{0x0a}));
  EXPECT_EQ(valueOf("<!--0C-->0B"), (Bytes{0x0c}));
  EXPECT_EQ(valueOf("<p:Any>0D</p:Any>0B"), Bytes());
}

TEST(DarkSetImport, RefusesAnOddCountOfDigitsBeforeItLooksAtThem) {
  const auto message = std::string("DarkMetadataSet with key='") + kKeyText + "' value has invalid Length";
  for (const auto* text : {"0a1", "xyz", "0", "0a 1b"}) {
    for (const auto entry : kEntries) EXPECT_EQ(failureOf(darkSet(text), entry), invalidValue(message, 89)) << text;
  }
}

TEST(DarkSetImport, RefusesWhatIsNoHexadecimalDigit) {
  const auto message =
      std::string("DarkMetadataSet with key='") + kKeyText + "' value contains non Hexadecimal characters";
  for (const auto* text : {"0g", "0x", " 0a ", "+1", "0A.0B ", "\u00e90"}) {
    for (const auto entry : kEntries) EXPECT_EQ(failureOf(darkSet(text), entry), invalidValue(message, 99)) << text;
  }
}

TEST(DarkSetImport, NamesTheKeyAsTheDocumentHasIt) {
  EXPECT_EQ(failureOf(darkSet("0", "4", "060E2B34020501010E7F7F7F00000200")).kind, "InvalidFormat");
  EXPECT_EQ(
      failureOf(darkSet("0", "4", "urn:smpte:ul:060e2b34.02050101.0e7f7f7f.00000200")),
      invalidValue("DarkMetadataSet with key='urn:smpte:ul:060e2b34.02050101.0e7f7f7f.00000200' value has invalid "
                   "Length",
                   89));
}

TEST(DarkSetImport, LeavesAMissingOrMalformedKeyToTheKey) {
  const auto failure = failureOf("<groups:DarkMetadata groups:BEROctetCount=\"4\">0</groups:DarkMetadata>");
  EXPECT_EQ(failure, XML2Partition::failureOf([] { KLV::Key(wstring(), kDottedForm); }));
  EXPECT_EQ(failure.kind, "InvalidFormat");
  EXPECT_EQ(failureOf(darkSet("0A", "4", "key")),
            XML2Partition::failureOf([] { KLV::Key(wstring(u"key"), kDottedForm); }));
}

TEST(DarkSetImport, LooksAttributesUpByThePrefixGroups) {
  const auto failure = failureOf(std::string("<groups:DarkMetadata xmlns:g=\"urn:SMPTE:Groups:MXF\" g:Key=\"") +
                                 kKeyText + "\" Key=\"" + kKeyText + "\"/>");
  EXPECT_EQ(failure, XML2Partition::failureOf([] { KLV::Key(wstring(), kDottedForm); }));
}

TEST(DarkSetImport, KeepsTheLowEightBitsOfTheOctetCount) {
  const auto octets = [](const std::string& text) {
    const auto partition = imported(darkSet("00", text));
    return int{(*partition->darkBegin())->berLength()};
  };
  EXPECT_EQ(octets("1"), 1);
  EXPECT_EQ(octets("255"), 255);
  EXPECT_EQ(octets("260"), 4);
  EXPECT_EQ(octets("-1"), 255);
  EXPECT_EQ(octets(" 3x"), 3);
  EXPECT_EQ(octets("four"), 0);
  EXPECT_EQ(octets(""), 0);
}

TEST(DarkSetImport, ReadsAMissingOctetCountAs0) {
  const auto partition =
      imported(std::string("<groups:DarkMetadata groups:Key=\"") + kKeyText + "\">00</groups:DarkMetadata>");
  EXPECT_EQ((*partition->darkBegin())->berLength(), 0);
}

TEST(DarkSetImport, ReadsAnElementOfAnyUnknownNameAsADarkSet) {
  const auto partition = imported(std::string("<p:Unheard groups:Key=\"") + kKeyText + "\">01</p:Unheard>");
  EXPECT_EQ(valueOf(**partition->darkBegin()), (Bytes{1}));
}

TEST(DarkSetImport, ReadsAnElementOfAKnownNameAsASet) {
  for (const auto entry : kEntries) {
    const auto partition = newPartition();
    const auto sets =
        import(document("<p:Preface/><groups:FloatingDarkMetadata>" + darkSet("0A") +
                        "<p:Other/><p:Preface><p:Text>t</p:Text></p:Preface></groups:FloatingDarkMetadata>"
                        "<p:Other/>"),
               partition, entry);
    EXPECT_EQ(std::vector<MetadataSet*>(sets.begin(), sets.end()), partition->sets());
    ASSERT_EQ(partition->sets().size(), 4u);
    EXPECT_EQ(partition->sets()[1]->name(), "Other");
    EXPECT_TRUE(holds(XML2Partition::valueOf(*partition->sets()[2], "Text"), Types::UTF16String(u"t")));
    EXPECT_EQ(partition->darkEnd() - partition->darkBegin(), 1);
    EXPECT_EQ(partition->entries().size(), 5u);
  }
}

TEST(DarkSetImport, SharesIdentifiersWithTheRestOfTheDocument) {
  TestDictionary dictionary;
  dictionary.property("Weak", Types::Identifiers::kWeakReference);
  const TestPartition partition(dictionary.set("Preface", {"Weak"}).set("Other"));
  import(document(R"(<p:Preface><p:Weak><p:Other_REF types:TargetInstance="{7}"/></p:Weak></p:Preface>
                     <groups:FloatingDarkMetadata><p:Other rp210:InstanceUID="{7}"/></groups:FloatingDarkMetadata>)"),
         partition);
  EXPECT_TRUE(holds(XML2Partition::valueOf(*partition->sets()[0], "Weak"),
                    Types::WeakReference(*partition->sets()[1]->instanceUID())));
}

TEST(DarkSetImport, KeepsTheDarkSetsBeforeAFailure) {
  const auto partition = newPartition();
  EXPECT_EQ(XML2Partition::failureOf([&] {
              import(container(darkSet("0A") + darkSet("0") + darkSet("0B")), partition);
            }).line,
            89);
  ASSERT_EQ(partition->darkEnd() - partition->darkBegin(), 1);
  EXPECT_EQ(valueOf(**partition->darkBegin()), (Bytes{0x0a}));
}

TEST(DarkSetImport, ReadsDarkSetsUnderTheContainerOnly) {
  const auto partition = newPartition();
  EXPECT_EQ(import(document(darkSet("0A") + "<p:Preface>" + darkSet("0B") + "</p:Preface>"), partition).size(), 1u);
  EXPECT_EQ(partition->darkBegin(), partition->darkEnd());
}

TEST(DarkSetImport, ReadsEveryContainer) {
  const auto partition = newPartition();
  import(document("<groups:FloatingDarkMetadata>" + darkSet("01") + "</groups:FloatingDarkMetadata>" +
                  "<groups:FloatingDarkMetadata>" + darkSet("02") + darkSet("03") + "</groups:FloatingDarkMetadata>"),
         partition);
  ASSERT_EQ(partition->darkEnd() - partition->darkBegin(), 3);
  for (uint8 i = 0; i < 3; ++i) EXPECT_EQ(valueOf(*partition->darkBegin()[i]), (Bytes{uint8(i + 1)}));
}

TEST(DarkSetImport, ReadsASetThatWasExportedWithoutDefinition) {
  const auto original = newPartition();
  original.add("Preface", 1);
  original.addDarkGroup(7, 9);
  EXPECT_XML(XMLBuilder::exported(original), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="9" groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">
          3C0A001000000000000000000000000000000007</groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  const auto partition = newPartition();
  importRaw(XMLBuilder::exported(original), *partition);
  ASSERT_EQ(partition->darkEnd() - partition->darkBegin(), 1);
  const DarkMetadataSet& set = **partition->darkBegin();
  EXPECT_EQ(set.key(), MetaMetadata::registerKey(XMLBuilder::kDarkGroupKey));
  EXPECT_EQ(set.berLength(), 9);
  EXPECT_EQ(valueOf(set), (Bytes{0x3c, 0x0a, 0, 16, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7}));
}

}  // namespace
}  // namespace Vantor::XML2Partition
