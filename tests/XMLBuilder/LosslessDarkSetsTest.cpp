#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/XMLBuilder/LosslessSupport.h"

/// What a lossless import makes of sets and properties that no dictionary names.
namespace Vantor::XML2Partition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = LosslessXML::Diagnostic::Kind;

constexpr const char* kGroupKey = "06.0E.2B.34.02.53.01.01.0F.00.00.00.00.00.00.00";
constexpr const char* kSetKey = "06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00";

/// A floating container that starts in line 2, one element to a line, with "g" for the prefix.
std::string floating(const std::string& content) {
  return "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
         "xmlns:g='urn:SMPTE:Groups:MXF'>\n<g:FloatingDarkMetadata>\n" +
         content + "\n</g:FloatingDarkMetadata></s377m:MetadataSets>";
}
std::string darkSet(const std::string& octets, const std::string& attributes = "g:BEROctetCount='4'",
                    const std::string& key = kGroupKey) {
  return "<g:DarkMetadata g:Key='" + key + "' " + attributes + ">" + octets + "</g:DarkMetadata>\n";
}

std::vector<const DarkMetadataSet*> darkSetsOf(const PartitionMetadata& partition) {
  return {partition.darkBegin(), partition.darkEnd()};
}

TEST(LosslessDarkSets, AreFoundByNamespaceWhateverThePrefix) {
  Imported document(floating(darkSet("0A0B", "g:BEROctetCount='3'", kSetKey) + "<s377m:Preface/>"));
  EXPECT_THAT(document.messages(), IsEmpty());
  ASSERT_EQ(darkSetsOf(document.partition()).size(), 1u);
  EXPECT_EQ(darkSetsOf(document.partition()).front()->key(), KLV::Key(Utils::stringToWstring(kSetKey), kDottedForm));
  EXPECT_EQ(darkSetsOf(document.partition()).front()->berLength(), 3);
  EXPECT_EQ(document.result().sets.size(), 1u);
}

TEST(LosslessDarkSets, AreNotFoundInOtherNamespaces) {
  Imported document(
      "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:groups='urn:example'>\n"
      "<groups:FloatingDarkMetadata><groups:DarkMetadata/></groups:FloatingDarkMetadata></s377m:MetadataSets>");
  EXPECT_THAT(document.messages(),
              ElementsAre("2|||there is no set FloatingDarkMetadata in the namespace urn:example"));
  Imported within(floating("<DarkMetadata xmlns='urn:example'/>"));
  EXPECT_THAT(within.messages(), ElementsAre("3|||there is no set DarkMetadata in the namespace urn:example"));
}

TEST(LosslessDarkProperties, KeepTagsAndLabelsUnderAnyPrefix) {
  Imported document(
      floating("<s377m:Preface><g:ExtensionElements><g:DarkElement g:StaticLocalTag='12.34'>01</g:DarkElement>"
               "<g:DarkElement g:UniversalLabel='06.0E.2B.34.01.01.01.01.0F.00.00.00.00.00.00.01'>02</g:DarkElement>"
               "</g:ExtensionElements></s377m:Preface>"));
  EXPECT_THAT(document.messages(), IsEmpty());
  std::vector<wstring> tags;
  for (auto at = document.first().invalidBegin(); at != document.first().invalidEnd(); ++at) {
    tags.push_back(dynamic_cast<const MetaMetadata::UnknownAttribute&>(at->metaAttribute()).localTag().toString());
  }
  EXPECT_THAT(tags, ElementsAre(u"12.34", u"FF.FF"));
  ASSERT_EQ(document.partition().partitionDictionary().primerEntries().size(), 1u);
}

constexpr const char* kIdentified = "3C0A001002020202020202020202020202020202";  // the InstanceUID of the storage

Failure failureOf(const std::string& content) {
  const std::string text = floating(content);
  PartitionMetadata partition(builtInDictionary());
  return XML2Partition::failureOf([&] { importLosslessly(text, partition); });
}

TEST(LosslessDarkSets, MayHaveOneToNineLengthOctetsOrAny) {
  Imported document(floating(darkSet("00", "") + darkSet("01", "g:BEROctetCount=' 9 '", kSetKey)));
  EXPECT_THAT(document.messages(), IsEmpty());
  const auto sets = darkSetsOf(document.partition());
  ASSERT_EQ(sets.size(), 2u);
  EXPECT_EQ(sets[0]->berLength(), 0);
  EXPECT_EQ(sets[1]->berLength(), 9);
}

TEST(LosslessDarkSets, LeaveTheLengthToTheWriterWhereTheDocumentHasNoneThatCanBe) {
  for (const std::string count : {"300", "10", "abc", "-1", ""}) {
    Imported document(floating(darkSet(kIdentified, "g:BEROctetCount='" + count + "'")));
    EXPECT_THAT(document.messages(), ElementsAre("3|||dark metadata: '" + count +
                                                 "' is no number from 0 to 9 for BEROctetCount; the writer is free to "
                                                 "choose"));
    EXPECT_THAT(document.kinds(), ElementsAre(Kind::kInvalidDarkLength));
    ASSERT_EQ(document.partition().sets().size(), 1u);
    EXPECT_EQ(document.first().berLength(), 0);
  }
}

TEST(LosslessDarkSets, AreOneSetWhereTheDocumentHasThemTwice) {
  Imported document(floating(darkSet(kIdentified) + darkSet(kIdentified)));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_EQ(document.partition().sets().size(), 1u);
  Imported nameless(floating(darkSet("12340000") + darkSet("12340000")));
  EXPECT_EQ(nameless.partition().sets().size(), 2u) << "they may be two";
}

TEST(LosslessDarkSets, MustNotHaveTheInstanceUIDOfAnotherSet) {
  const std::string other = std::string(kIdentified) + "12340000";
  const auto twoGroups = failureOf(darkSet(kIdentified) + darkSet(other));
  EXPECT_EQ(twoGroups.kind, "InvalidFormat");
  EXPECT_EQ(twoGroups.message, "line 4: the " + std::string(kGroupKey) + " has the InstanceUID of the " + kGroupKey +
                                   " " + kStorageUID + " at line 3; give one of them another");
  const std::string known = "<s377m:ContentStorage rp210:InstanceUID='" + std::string(kStorageUID) + "'/>\n";
  EXPECT_EQ(failureOf(known + darkSet(kIdentified)).message, "line 4: the " + std::string(kGroupKey) +
                                                                 " has the InstanceUID of the ContentStorage " +
                                                                 kStorageUID + " at line 3; give one of them another");
  EXPECT_EQ(failureOf(darkSet(kIdentified) + known).message, "line 4: the ContentStorage has the InstanceUID of the " +
                                                                 std::string(kGroupKey) + " " + kStorageUID +
                                                                 " at line 3; give one of them another");
}

TEST(LosslessDarkSets, MustNotHaveTheInstanceUIDOfASetThatThePartitionHadBefore) {
  const std::string why = " that the partition has already; give one of them another, or import into a new partition";
  const std::string known = "<s377m:ContentStorage rp210:InstanceUID='" + std::string(kStorageUID) + "'/>\n";
  const auto secondFailure = [](const std::string& first, const std::string& second) {
    PartitionMetadata partition(builtInDictionary());
    importLosslessly(floating(first), partition);
    return XML2Partition::failureOf([&] { importLosslessly(floating(second), partition); });
  };
  const std::string group = std::string(kGroupKey) + " " + kStorageUID;
  EXPECT_EQ(secondFailure(darkSet(kIdentified), darkSet(kIdentified)).message,
            "line 3: the " + std::string(kGroupKey) + " has the InstanceUID of the " + group + why);
  EXPECT_EQ(
      secondFailure(known, darkSet(kIdentified)).message,
      "line 3: the " + std::string(kGroupKey) + " has the InstanceUID of the ContentStorage " + kStorageUID + why);
  EXPECT_EQ(secondFailure(darkSet(kIdentified), known).kind, "InvalidFormat");
}

/// The primer of their file gives local tags within dark sets a meaning: no property may get one of them.
TEST(LosslessDarkSets, KeepTheLocalTagsWithinFromProperties) {
  const std::string label = "06.0E.2B.34.01.01.01.01.0F.00.00.00.00.00.00.01";
  Imported document(
      "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:groups='urn:SMPTE:Groups:MXF'><s377m:Preface>"
      "<groups:ExtensionElements><groups:DarkElement groups:UniversalLabel='" +
      label + "'>01</groups:DarkElement></groups:ExtensionElements></s377m:Preface><groups:FloatingDarkMetadata>" +
      "<groups:DarkMetadata groups:Key='" + kGroupKey + "'>FFFF000100FFFE000100</groups:DarkMetadata>" +
      "</groups:FloatingDarkMetadata></s377m:MetadataSets>");
  EXPECT_THAT(document.messages(), IsEmpty());
  auto& tags = document.partition().partitionDictionary();
  EXPECT_EQ(tags.tryFind(0xffff), nullptr);
  EXPECT_EQ(tags.tryFind(0xfffe), nullptr);
  ASSERT_NE(tags.tryFind(0xfffd), nullptr);
  EXPECT_EQ(tags.tryFind(0xfffd)->toString(kDottedForm), Utils::stringToWstring(label));
}

TEST(LosslessDarkSets, ThatTakeAllLocalTagsLeaveNoneForProperties) {
  std::string octets;
  for (int tag = 0x8000; tag <= 0xffff; ++tag) {
    char item[16];
    std::snprintf(item, sizeof item, "%04X0000", static_cast<unsigned>(tag));
    octets += item;
  }
  Imported document(
      floating("<s377m:Preface><g:ExtensionElements><g:DarkElement>00</g:DarkElement>"
               "</g:ExtensionElements></s377m:Preface>" +
               darkSet(octets)));
  ASSERT_EQ(document.messages().size(), 1u);
  EXPECT_THAT(document.messages()[0], testing::EndsWith("|all dynamic local tags of the partition are taken"));
  EXPECT_EQ(document.first().invalidBegin(), document.first().invalidEnd());
}

}  // namespace
}  // namespace Vantor::XML2Partition
