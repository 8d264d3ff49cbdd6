#include "XMLBuilder/Names.h"

#include <xercesc/dom/DOMException.hpp>

#include "Core/Metadata/ElementFactory.h"
#include "XMLBuilder.h"
#include "tests/XMLBuilder/Support.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {
namespace {

using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUInt32;
using Types::Identifiers::kUUID;
using Types::Identifiers::kWeakReference;

std::u16string_view viewOf(const XMLCh* text) { return text == nullptr ? u"(null)" : text; }

TEST(Names, SetsAndPropertiesAreNamedByTheirDefinitions) {
  TestDictionary dictionary;
  dictionary.property("Property", kUInt32, {u"e", u"urn:elements", u"aProperty"});
  dictionary.set("Preface", {"Property"}, {u"s", u"urn:sets", u"TheSet"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).value("Property", Types::UInt32(7));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets xmlns:e="urn:elements" {rp210} xmlns:s="urn:sets" {s377m} {s422mTypes} {types}>
      <s:TheSet rp210:InstanceUID="{1}"><e:aProperty>7</e:aProperty></s:TheSet>
    </s377m:MetadataSets>)");
}

TEST(Names, TheGreaterOfTwoURIsKeepsTheirPrefixAndTheElementsKeepTheirURIs) {
  TestDictionary dictionary;
  dictionary.property("Lower", kUInt32, {u"q", u"urn:a"}).property("Greater", kUInt32, {u"q", u"urn:b"});
  dictionary.set("Preface", {"Greater", "Lower"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).value("Lower", Types::UInt32(1)).value("Greater", Types::UInt32(2));

  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  EXPECT_EQ(viewOf(root->getAttribute(u"xmlns:q")), u"urn:b");
  const auto* greater = root->getFirstElementChild()->getFirstElementChild();
  EXPECT_EQ(viewOf(greater->getNamespaceURI()), u"urn:b");
  EXPECT_EQ(viewOf(greater->getNextElementSibling()->getNamespaceURI()), u"urn:a");
  EXPECT_XML(textOf(*root), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:b" {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <q:Greater>2</q:Greater>
        <q:Lower xmlns:q="urn:a">1</q:Lower>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(Names, TheFirstOfTwoPrefixesIsDeclaredForTheirURIAndTheOtherStaysInItsNames) {
  TestDictionary dictionary;
  dictionary.property("Second", kUInt32, {u"z", u"urn:p"}).property("Third", kUInt32, {u"a", u"urn:p"});
  dictionary.set("Preface", {"Second", "Third"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).present("Second").present("Third");

  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  EXPECT_EQ(viewOf(root->getAttribute(u"xmlns:p")), u"urn:p");
  EXPECT_FALSE(root->hasAttribute(u"xmlns:z"));
  EXPECT_FALSE(root->hasAttribute(u"xmlns:a"));
  EXPECT_XML(textOf(*root), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><z:Second xmlns:z="urn:p"/><a:Third xmlns:a="urn:p"/></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(Names, APropertyCalledRp210InstanceUIDIsAnAttributeThoughItIsAnotherProperty) {
  TestDictionary dictionary(XMLName{u"p", u"urn:p", u"Identifier"});
  dictionary.property("Other", kUUID, {u"rp210", u"urn:other", u"InstanceUID"});
  dictionary.set("Preface", {"Other"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).value("Other", uid(2));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} xmlns:rp210="urn:other" {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{2}"><p:Identifier>{1}</p:Identifier></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(Names, TheInstanceUIDUnderAnotherPrefixIsAnElement) {
  TestDictionary dictionary(XMLName{u"rp211", u"urn:SMPTE:RP210"});
  dictionary.property("GenerationUID", kUUID, {u"RP210", u"urn:p"}).set("Preface", {"GenerationUID"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).value("GenerationUID", uid(2));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} xmlns:rp211="urn:SMPTE:RP210" {s377m} {s422mTypes} {types}>
      <p:Preface>
        <rp211:InstanceUID>{1}</rp211:InstanceUID><RP210:GenerationUID xmlns:RP210="urn:p">{2}</RP210:GenerationUID>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(Names, TheGenerationUIDIsAnAttributeByItsNameWhateverItsPlace) {
  TestDictionary dictionary;
  dictionary.property("Generation", kUUID, {u"rp210", u"urn:SMPTE:RP210", u"GenerationUID"});
  dictionary.set("Preface").set("A", {"Generation"});
  TestPartition partition(dictionary);
  TestSet preface = partition.add("Preface", 1);
  setDecodedValue(preface.misplaced("Generation"), uid(2).clone());
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:GenerationUID="{2}" rp210:InstanceUID="{1}"/>
    </s377m:MetadataSets>)");
}

TEST(Names, APropertyWithoutDefinitionTakesTheLowestURIThatIsBoundToGroups) {
  TestDictionary dictionary;
  dictionary.set("Preface", {}, {u"groups", u"urn:A"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).unknown(0x1234, Types::Unknown(Bytes{0xab}));

  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  const auto* container = root->getFirstElementChild()->getFirstElementChild();
  EXPECT_EQ(viewOf(container->getNamespaceURI()), u"urn:SMPTE:Groups:MXF");
  const auto* property = container->getFirstElementChild();
  EXPECT_EQ(viewOf(property->getNodeName()), u"groups:DarkElement");
  EXPECT_EQ(viewOf(property->getNamespaceURI()), u"urn:A");
  EXPECT_TRUE(property->hasAttributeNS(u"urn:A", u"StaticLocalTag"));
  EXPECT_EQ(viewOf(root->getAttribute(u"xmlns:groups")), u"urn:SMPTE:Groups:MXF");
}

TEST(Names, NoURIIsEnteredForGroupsWhereItIsBoundAlready) {
  TestDictionary dictionary;
  dictionary.set("Preface", {}, {u"groups", u"urn:A"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1);
  partition.addDarkSet({0xab});
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets xmlns:groups="urn:A" {rp210} {s377m}>
      <groups:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <groups:DarkMetadata groups:BEROctetCount="4"
          groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00">AB</groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(Names, NoURIIsEnteredForTypesWhereItIsBoundAlready) {
  TestDictionary dictionary;
  dictionary.property("Weak", kWeakReference, {u"types", u"urn:A"}).set("Preface", {"Weak"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).refer("Weak", 1);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} xmlns:types="urn:A">
      <p:Preface rp210:InstanceUID="{1}">
        <types:Weak><p:Preface_REF {types} types:TargetInstance="{1}"/></types:Weak>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(Names, AReferenceWithTwoTargetsIsNamedWithoutTheirNames) {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference).set("Preface", {"Strong"}).set("A").set("B");
  TestPartition partition(dictionary);
  partition.add("Preface", 1).refer("Strong", 2);
  partition.add("A", 2);
  partition.add("B", 2);
  EXPECT_XML(exported(partition, kFlat), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Strong><MULTIPLE_METADATASETS_REF xmlns="urn:p" types:TargetInstance="{2}"/></p:Strong>
      </p:Preface>
      <p:A rp210:InstanceUID="{2}"/>
      <groups:FloatingDarkMetadata {groups}><p:B rp210:InstanceUID="{2}"/></groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(Names, TheNameOfATargetThatIsNotWrittenRegistersNoNamespace) {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference).set("Preface", {"Strong"});
  dictionary.set("Scheme", {}, {u"d", u"urn:d"}, TestDictionary::Kind::kDescriptive);
  TestPartition partition(dictionary);
  partition.add("Preface", 1).refer("Strong", 2);
  partition.add("Scheme", 2);
  EXPECT_XML(exported(partition, kFlatStructural), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Strong><d:Scheme_REF xmlns:d="urn:d" types:TargetInstance="{2}"/></p:Strong>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(Names, AnEmptyPrefixIsHandedToXercesWhichRefusesTheName) {
  TestDictionary dictionary;
  dictionary.set("Preface", {}, {u"", u"urn:p"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1);
  EXPECT_THROW(partition2XML(&*partition, true, false), xercesc::DOMException);
}

}  // namespace
}  // namespace Vantor::XMLBuilder

VANTOR_AUTO_PTR_END
