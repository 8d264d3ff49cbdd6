#include "XMLBuilder/DarkMetadataSetWriter.h"

#include "Core/Platform/Strings.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::registerKey;

TestPartition withPreface() {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface"));
  partition.add("Preface", 1);
  return partition;
}

/// One KLV of a local set that the dictionary does not know, as the partition of a file has it.
TestPartition withDarkKLV(const Bytes& value, uint8 berOctets) {
  auto partition = withPreface();
  partition->addKLV(registerKey(kDarkGroupKey), berOctets, value.data(), value.size(), 0);
  return partition;
}

TEST(DarkSetExport, ADarkSetIsItsKeyItsLengthOctetsAndItsBytes) {
  const auto partition = withPreface();
  partition.addDarkSet({0x00, 0x0a, 0xff}, 9);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="9"
          groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00">000AFF</groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(DarkSetExport, ADarkSetWithoutValueHasNoText) {
  const auto partition = withPreface();
  partition.addDarkSet({}, 1);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="1" groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(DarkSetExport, AttributesAndElementAreInTheGroupsNamespace) {
  TestDocument document;
  ExportDocument exportDocument(*document);
  const uint8 octet = 1;
  writeDarkMetadataSet(exportDocument, document.element(), registerKey(kDarkSetKey), 255, &octet, 1);
  const auto* element = document.element().getFirstElementChild();
  EXPECT_TRUE(element->getNamespaceURI() == std::u16string_view(u"urn:SMPTE:Groups:MXF"));
  EXPECT_TRUE(element->getNodeName() == std::u16string_view(u"groups:DarkMetadata"));
  EXPECT_TRUE(element->hasAttributeNS(u"urn:SMPTE:Groups:MXF", u"Key"));
  EXPECT_TRUE(element->getAttributeNS(u"urn:SMPTE:Groups:MXF", u"BEROctetCount") == std::u16string_view(u"255"));
  EXPECT_EQ(exportDocument.namespaces().uriOf(u"groups"), u"urn:SMPTE:Groups:MXF");
}

TEST(DarkSetExport, ASetWithoutDefinitionIsItsBytesWithoutKeyAndLengthInUpperCase) {
  for (const uint8 berOctets : {1, 4, 9}) {
    const auto partition = withDarkKLV({0xab, 0xcd, 0x00, 0x02, 0xef, 0x0f}, berOctets);
    EXPECT_XML(exported(partition), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}"/>
        <groups:FloatingDarkMetadata>
          <groups:DarkMetadata groups:BEROctetCount=")" +
                                        std::to_string(berOctets) + R"("
            groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">ABCD0002EF0F</groups:DarkMetadata>
        </groups:FloatingDarkMetadata>
      </s377m:MetadataSets>)");
  }
}

TEST(DarkSetExport, ASetWithoutDefinitionAndBytesHasNoText) {
  const auto partition = withDarkKLV({}, 4);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4" groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(DarkSetExport, ALocalSetThatIsDamagedIsADarkSetWithAllItsBytes) {
  const auto partition = withDarkKLV({0xab, 0xcd, 0x00, 0x03, 0xef, 0x0f}, 4);  // one octet short
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4"
          groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">ABCD0003EF0F</groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(DarkSetExport, ALargeDarkSetKeepsEveryByte) {
  Bytes value(100000);
  for (std::size_t i = 0; i < value.size(); ++i) value[i] = static_cast<uint8>(i * 7 + i / 251);
  const auto partition = withPreface();
  partition.addDarkSet(value);
  std::string hex;
  for (const uint8 octet : value) {
    hex += "0123456789ABCDEF"[octet / 16];
    hex += "0123456789ABCDEF"[octet % 16];
  }
  EXPECT_NE(exported(partition).find(">" + hex + "<"), std::string::npos);
}

}  // namespace
}  // namespace Vantor::XMLBuilder
