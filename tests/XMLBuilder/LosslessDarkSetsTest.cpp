#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/XMLBuilder/LosslessSupport.h"

/// What a lossless import makes of sets and properties that no dictionary names.
namespace Vantor::XML2Partition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = ImportDiagnostic::Kind;

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

}  // namespace
}  // namespace Vantor::XML2Partition
