#include "XMLBuilder/ExtensionElements.h"

#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "Core/Metadata/ElementFactory.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using Types::Identifiers::kRational;
using Types::Identifiers::kUInt32;

constexpr const char* kLabel = "060e2b34.01010101.0e7f7f7f.01020300";

/// A Preface with p:Known, and a set that q:Elsewhere and s:Ratio belong to.
TestPartition somePartition() {
  TestDictionary dictionary;
  dictionary.property("Known", kUInt32).property("Elsewhere", kUInt32, {u"q", u"urn:q"});
  dictionary.property("Ratio", kRational, {u"st434", kSt434Elements});
  return TestPartition(dictionary.set("Preface", {"Known"}).set("A", {"Elsewhere", "Ratio"}));
}

TEST(ExtensionElements, AKnownPropertyInItsPlaceIsAnOrdinaryChildAndNeedsNoContainer) {
  const auto partition = somePartition();
  partition.add("Preface", 1).value("Known", Types::UInt32(7));
  for (const auto& flags : {kNested, kFlat}) {
    EXPECT_XML(exported(partition, flags), R"(
      <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}"><p:Known>7</p:Known></p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ExtensionElements, AMisplacedPropertyKeepsItsNameInTheContainer) {
  const auto partition = somePartition();
  auto preface = partition.add("Preface", 1);
  setDecodedValue(preface.misplaced("Elsewhere"), Types::UInt32(7).clone());
  for (const auto& flags : {kNested, kFlat}) {
    EXPECT_XML(exported(partition, flags), R"(
      <s377m:MetadataSets {groups} {p} xmlns:q="urn:q" {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements><q:Elsewhere>7</q:Elsewhere></groups:ExtensionElements>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ExtensionElements, AMisplacedPropertyHasTheFormOfItsNamespace) {
  const auto partition = somePartition();
  auto preface = partition.add("Preface", 1);
  setDecodedValue(preface.misplaced("Ratio"), Types::Rational(1, 2).clone());
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {st377Types} {st434}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements>
          <st434:Ratio>
            <st377Types:Numerator>1</st377Types:Numerator><st377Types:Denominator>2</st377Types:Denominator>
          </st434:Ratio>
        </groups:ExtensionElements>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, AnUnknownPropertyWithAStaticTagIsMarkedWithIt) {
  for (const auto& flags : {kNested, kFlat}) {
    const auto partition = somePartition();
    partition.addPrimerEntry(0x7fff, kLabel);  // the primer's row for a static tag makes no difference
    partition.add("Preface", 1).unknown(0x7fff, Types::Unknown(Bytes{0x0f, 0xf0}));
    EXPECT_XML(exported(partition, flags), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements>
            <groups:DarkElement groups:StaticLocalTag="7F.FF">0FF0</groups:DarkElement>
          </groups:ExtensionElements>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ExtensionElements, AnUnknownPropertyWithADynamicTagIsMarkedWithItsLabel) {
  for (const auto& flags : {kNested, kFlat}) {
    const auto partition = somePartition();
    partition.addPrimerEntry(0x8000, kLabel);
    partition.add("Preface", 1).unknown(0x8000, Types::Unknown(Bytes{0x0f, 0xf0}));
    EXPECT_XML(exported(partition, flags), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements>
            <groups:DarkElement groups:UniversalLabel="06.0E.2B.34.01.01.01.01.0E.7F.7F.7F.01.02.03.00">
              0FF0
            </groups:DarkElement>
          </groups:ExtensionElements>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ExtensionElements, AnUnknownPropertyWithADynamicTagThatThePrimerLacksIsNotMarked) {
  for (const auto& flags : {kNested, kFlat}) {
    const auto partition = somePartition();
    partition.addPrimerEntry(0x8001, kLabel);
    partition.add("Preface", 1).unknown(0x8000, Types::Unknown(Bytes{0x0f, 0xf0}));
    EXPECT_XML(exported(partition, flags), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements><groups:DarkElement>0FF0</groups:DarkElement></groups:ExtensionElements>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ExtensionElements, SeveralUnknownPropertiesShareOneContainerInTheirOrder) {
  const auto partition = somePartition();
  auto preface = partition.add("Preface", 1).value("Known", Types::UInt32(7));
  preface.unknown(0x0009, Types::Unknown(Bytes{1})).unknown(0x0001, Types::Unknown(Bytes{2}));
  setDecodedValue(preface.misplaced("Elsewhere"), Types::UInt32(3).clone());
  preface.unknown(0x0009, Types::Unknown(Bytes{4}));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} xmlns:q="urn:q" {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements>
          <groups:DarkElement groups:StaticLocalTag="00.09">01</groups:DarkElement>
          <groups:DarkElement groups:StaticLocalTag="00.01">02</groups:DarkElement>
          <q:Elsewhere>3</q:Elsewhere>
          <groups:DarkElement groups:StaticLocalTag="00.09">04</groups:DarkElement>
        </groups:ExtensionElements>
        <p:Known>7</p:Known>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, EverySetHasItsOwnContainer) {
  const auto partition = somePartition();
  partition.add("Preface", 1).unknown(0x0001, Types::Unknown(Bytes{1}));
  partition.add("A", 2).unknown(0x0002, Types::Unknown(Bytes{2}));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements>
          <groups:DarkElement groups:StaticLocalTag="00.01">01</groups:DarkElement>
        </groups:ExtensionElements>
      </p:Preface>
      <groups:FloatingDarkMetadata>
        <p:A rp210:InstanceUID="{2}">
          <groups:ExtensionElements>
            <groups:DarkElement groups:StaticLocalTag="00.02">02</groups:DarkElement>
          </groups:ExtensionElements>
        </p:A>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, AnUnknownPropertyIsWrittenWhereItsNamespaceHasAnotherPrefix) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface", {}, {u"g", u"urn:SMPTE:Groups:MXF"}));
  partition.add("Preface", 1).unknown(0x7fff, Types::Unknown(Bytes{0x0f}));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets xmlns:g="urn:SMPTE:Groups:MXF" {rp210} {s377m} {s422mTypes} {types}>
      <g:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements {groups}>
          <groups:DarkElement groups:StaticLocalTag="7F.FF">0F</groups:DarkElement>
        </groups:ExtensionElements>
      </g:Preface>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, AnUnknownPropertyWithoutValueIsAnEmptyElementWithItsMark) {
  const auto partition = somePartition();
  partition.addPrimerEntry(0x8000, kLabel);
  partition.add("Preface", 1).unknown(0x1234).unknown(0x8000).unknown(0xffff);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements>
          <groups:DarkElement groups:StaticLocalTag="12.34"/>
          <groups:DarkElement groups:UniversalLabel="06.0E.2B.34.01.01.01.01.0E.7F.7F.7F.01.02.03.00"/>
          <groups:DarkElement/>
        </groups:ExtensionElements>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, AMisplacedPropertyWithoutValueIsAnEmptyElement) {
  const auto partition = somePartition();
  partition.add("Preface", 1).misplaced("Elsewhere");
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} xmlns:q="urn:q" {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements><q:Elsewhere/></groups:ExtensionElements>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, AnUnknownPropertyOfNoOctetsIsAnEmptyElement) {
  const auto partition = somePartition();
  partition.add("Preface", 1).unknown(0x1234, Types::Unknown());
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag="12.34"></groups:DarkElement></groups:ExtensionElements>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ExtensionElements, AContainerMovesBehindEverythingWrittenBefore) {
  TestDocument document;
  ExportDocument exportDocument(*document);
  const auto write = [&] {
    auto& container = lastExtensionElements(exportDocument, document.element());
    container.appendChild(document->createElementNS(u"urn:p", u"p:X"));
  };
  document.element().appendChild(document->createTextNode(u"text"));
  write();
  document.element().appendChild(document->createElementNS(u"urn:p", u"p:Between"));
  write();
  EXPECT_EQ(document.element().getLastChild()->getChildNodes()->getLength(), 2u);
  EXPECT_EQ(document.element().getChildNodes()->getLength(), 3u);
}

TEST(ToXMLMetaAttributeVisitor, KnowsAKnownPropertyByItsPlace) {
  const auto partition = somePartition();
  const auto preface = partition.add("Preface", 1);
  const auto& attribute = preface->definition()->attributes()[1];
  const ToXMLMetaAttributeVisitor visitor(attribute);
  EXPECT_EQ(static_cast<int>(visitor.kind()), 0);
  EXPECT_EQ(visitor.metaElement(), attribute.metaElement());
  EXPECT_EQ(visitor.schemaIndex(), u"2");
  EXPECT_EQ(visitor.localTag(), u"");
}

TEST(ToXMLMetaAttributeVisitor, KnowsAMisplacedPropertyByItsDefinition) {
  const auto partition = somePartition();
  const auto& element = partition.add("Preface", 1).misplaced("Elsewhere");
  const ToXMLMetaAttributeVisitor visitor(element.metaAttribute());
  EXPECT_EQ(static_cast<int>(visitor.kind()), 1);
  EXPECT_EQ(visitor.metaElement(), element.metaAttribute().metaElement());
  EXPECT_EQ(visitor.schemaIndex(), u"");
  EXPECT_EQ(visitor.localTag(), u"");
}

TEST(ToXMLMetaAttributeVisitor, KnowsAnUnknownPropertyByItsTag) {
  const MetaMetadata::UnknownAttribute attribute(Types::LocalTag(0x0a0b));
  const ToXMLMetaAttributeVisitor visitor(attribute);
  EXPECT_EQ(static_cast<int>(visitor.kind()), 2);
  EXPECT_EQ(visitor.metaElement(), nullptr);
  EXPECT_EQ(visitor.schemaIndex(), u"");
  EXPECT_EQ(visitor.localTag(), u"0A.0B");
}

}  // namespace
}  // namespace Vantor::XMLBuilder
