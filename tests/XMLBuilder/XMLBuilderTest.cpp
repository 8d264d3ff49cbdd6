#include "XMLBuilder.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/UnicodeString.h"
#include "tests/XMLBuilder/Support.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {
namespace {

using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUInt32;

/// A Preface with a number, a strong and a weak reference, and sets of the same kind.
TestDictionary linkedSets() {
  TestDictionary dictionary;
  dictionary.property("Number", kUInt32).property("Strong", kStrongReference);
  dictionary.property("Weak", Types::Identifiers::kWeakReference);
  for (const char* symbol : {"Preface", "A", "B", "C"}) dictionary.set(symbol, {"Number", "Strong", "Weak"});
  return dictionary;
}

TestPartition partitionOf(TestDictionary dictionary) { return TestPartition(dictionary); }

int countAttributes(const xercesc::DOMNode& element, std::u16string_view name) {
  int count = 0;
  const auto& attributes = *element.getAttributes();
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) count += attributes.item(i)->getNodeName() == name ? 1 : 0;
  return count;
}

TEST(XMLBuilder, TellsPrefixAndNamespaceOfItsRoot) {
  EXPECT_EQ(getPrefix(), XMLUtils::UnicodeString("s377m"));
  EXPECT_EQ(getNamespaceURI(), XMLUtils::UnicodeString("urn:SMPTE:S377M"));
  EXPECT_EQ(&getPrefix(), &getPrefix());
  EXPECT_EQ(&getNamespaceURI(), &getNamespaceURI());
}

TEST(XMLBuilder, GivesADocumentThatGoesWithItsPointer) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1).value("Number", Types::UInt32(7));
  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  ASSERT_NE(document.get(), nullptr);
  ASSERT_EQ(document->getNodeType(), xercesc::DOMNode::DOCUMENT_NODE);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  EXPECT_TRUE(root->getNodeName() == std::u16string_view(u"s377m:MetadataSets"));
  EXPECT_TRUE(root->getLocalName() == std::u16string_view(u"MetadataSets"));
  EXPECT_TRUE(root->getPrefix() == std::u16string_view(u"s377m"));
  EXPECT_TRUE(root->getNamespaceURI() == std::u16string_view(u"urn:SMPTE:S377M"));
}

TEST(XMLBuilder, MakesNamespaceAwareNodes) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1);
  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  const auto* declaration = root->getAttributeNodeNS(u"http://www.w3.org/2000/xmlns/", u"p");
  ASSERT_NE(declaration, nullptr);
  EXPECT_TRUE(declaration->getValue() == std::u16string_view(u"urn:p"));
  const auto* preface = root->getFirstElementChild();
  EXPECT_TRUE(preface->getNamespaceURI() == std::u16string_view(u"urn:p"));
  EXPECT_TRUE(preface->getLocalName() == std::u16string_view(u"Preface"));
  EXPECT_TRUE(preface->hasAttributeNS(u"urn:SMPTE:RP210", u"InstanceUID"));
}

TEST(XMLBuilder, GivesNothingForNoPartition) {
  EXPECT_EQ(partition2XML(nullptr, true, false).get(), nullptr);
  EXPECT_EQ(partition2XML(nullptr, static_cast<const MetadataSet*>(nullptr), true, false).get(), nullptr);
}

TEST(XMLBuilder, GivesNothingForNoPartitionEvenWithAStartSet) {
  auto partition = partitionOf(linkedSets());
  const auto start = partition.add("A", 1);
  EXPECT_EQ(partition2XML(nullptr, &*start, true, false).get(), nullptr);
}

TEST(XMLBuilder, GivesNothingForNoStartSet) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1);
  EXPECT_EQ(partition2XML(&*partition, static_cast<const MetadataSet*>(nullptr), true, false).get(), nullptr);
}

TEST(XMLBuilder, GivesNothingWithoutAPrefaceThoughASetCouldBeTheStart) {
  auto partition = partitionOf(linkedSets());
  const auto start = partition.add("A", 1);
  partition.addDarkSet({1});
  EXPECT_EQ(partition2XML(&*partition, true, false).get(), nullptr);
  EXPECT_NE(partition2XML(&*partition, &*start, true, false).get(), nullptr);
}

TEST(XMLBuilder, LeavesTheTextAsItIsWhenThereIsNothingToWrite) {
  const wstring before = u"before";
  wstring text = before;
  auto partition = partitionOf(linkedSets());
  partition2XML(nullptr, true, false, XMLUtils::EncodingType::kUTF8, text);
  EXPECT_EQ(text, before);
  partition2XML(nullptr, nullptr, true, false, XMLUtils::EncodingType::kUTF8, text);
  EXPECT_EQ(text, before);
  partition2XML(&*partition, true, false, XMLUtils::EncodingType::kUTF8, text);
  EXPECT_EQ(text, before);
  partition2XML(&*partition, nullptr, true, false, XMLUtils::EncodingType::kUTF8, text);
  EXPECT_EQ(text, before);
}

TEST(XMLBuilder, ReplacesTheTextWithTheDocumentInEveryEncoding) {
  auto partition = partitionOf(linkedSets());
  const auto preface = partition.add("Preface", 1);
  partition.addDarkSet({0xab});
  using XMLUtils::EncodingType;
  for (const auto encoding :
       {EncodingType::kUTF8, EncodingType::kUTF8Indented, EncodingType::kUTF16, EncodingType::kUTF16Indented}) {
    wstring expected;
    XMLUtils::domToBuffer(partition2XML(&*partition, true, false).get(), expected, encoding);
    wstring text = u"before";
    partition2XML(&*partition, true, false, encoding, text);
    EXPECT_EQ(text, expected);
    text = u"before";
    partition2XML(&*partition, &*preface, true, false, encoding, text);
    EXPECT_EQ(text, expected);
  }
}

TEST(XMLBuilder, WritesTheFirstPrefaceAsTheStartAndTheSecondAsAnyOtherSet) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1);
  partition.add("Preface", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <p:Preface rp210:InstanceUID="{2}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, FindsAPrefaceOfAnyVersionAndCoding) {
  auto partition = partitionOf(linkedSets());
  MetadataSet* preface = partition->createMetadataSet(MetaMetadata::registerKey("060e2b34.02130105.0d010101.01012f00"));
  TestSet(*preface, *partition->partitionDictionary().dictionary()).value("InstanceUID", uid(1));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}><p:Preface rp210:InstanceUID="{1}"/></s377m:MetadataSets>)");
}

TEST(XMLBuilder, HasNoFloatingContainerWhenNothingFloats) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1).refer("Strong", 2);
  partition.add("A", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Strong><p:A rp210:InstanceUID="{2}"/></p:Strong></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, DeclaresTheNamespaceOfTheRootOnce) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1).refer("Strong", 404);  // a dangling reference uses that namespace once more
  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  EXPECT_EQ(countAttributes(*root, u"xmlns:s377m"), 1);
  EXPECT_XML(textOf(*root), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Strong><s377m:Dangling_REF types:TargetInstance="{404}"/></p:Strong>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, LetsAnyOtherNamespaceTakeThePrefixOfTheRootInTheDocument) {
  for (const wstring uri : {u"http://x", u"urn:zzz"}) {  // before and behind that of the root
    TestDictionary dictionary;
    dictionary.property("Number", kUInt32, {u"s377m", uri});
    TestPartition partition(dictionary.set("Preface", {"Number"}));
    partition.add("Preface", 1).value("Number", Types::UInt32(7));
    const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
    const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
    EXPECT_EQ(wstring(root->getAttribute(u"xmlns:s377m")), uri);
    EXPECT_EQ(wstring(root->getNamespaceURI()), u"urn:SMPTE:S377M");
  }
}

TEST(XMLBuilder, DeclaresNoOtherPrefixForTheNamespaceOfTheRoot) {
  TestDictionary dictionary;
  dictionary.set("Preface", {}, {u"q", u"urn:SMPTE:S377M"});
  TestPartition partition(dictionary);
  partition.add("Preface", 1);
  const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
  const auto* root = static_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
  EXPECT_EQ(countAttributes(*root, u"xmlns:q"), 0);
  EXPECT_TRUE(root->getFirstElementChild()->getNodeName() == std::u16string_view(u"q:Preface"));
}

TEST(XMLBuilder, PutsDarkSetsBeforeFloatingSetsInOneContainer) {
  auto partition = partitionOf(linkedSets());
  partition.add("B", 3);
  partition.add("Preface", 1);
  partition.addDarkSet({0x01});
  partition.add("A", 2);
  partition.addDarkSet({0x02});
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4"
          groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00">01</groups:DarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4"
          groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00">02</groups:DarkMetadata>
        <p:B rp210:InstanceUID="{3}"/>
        <p:A rp210:InstanceUID="{2}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, WritesAFloatingSetThatIsNestedInAnotherOnce) {
  auto partition = partitionOf(linkedSets());
  partition.add("B", 3);  // stands first in the partition, and yet belongs into A
  partition.add("Preface", 1);
  partition.add("A", 2).refer("Strong", 3);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}"><p:Strong><p:B rp210:InstanceUID="{3}"/></p:Strong></p:A>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, WritesFloatingSetsThatReferToEachOtherOnce) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1);
  partition.add("A", 2).refer("Strong", 3);
  partition.add("B", 3).refer("Strong", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}">
          <p:Strong><p:B rp210:InstanceUID="{3}"><p:Strong/></p:B></p:Strong>
        </p:A>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, WritesAFloatingSetOfSeveralFloatingSetsInTheFirstOfThem) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1);
  partition.add("A", 2).refer("Strong", 4);
  partition.add("B", 3).refer("Strong", 4);
  partition.add("C", 4);
  // Each floating set starts anew, so that C is written into B as well; as a set of its own it is done with A.
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}"><p:Strong><p:C rp210:InstanceUID="{4}"/></p:Strong></p:A>
        <p:B rp210:InstanceUID="{3}"><p:Strong><p:C rp210:InstanceUID="{4}"/></p:Strong></p:B>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, WritesASetTwiceThatTheStartSetReachesAndThePrefaceDoesNot) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1);
  const auto start = partition.add("A", 2).refer("Strong", 3);
  partition.add("B", 3);
  EXPECT_XML(exported(partition, start), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:A rp210:InstanceUID="{2}"><p:Strong><p:B rp210:InstanceUID="{3}"/></p:Strong></p:A>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}"><p:Strong><p:B rp210:InstanceUID="{3}"/></p:Strong></p:A>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, WritesASetOfThePrefaceInsideAFloatingSetThatRefersToItToo) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1).refer("Strong", 3);
  partition.add("A", 2).refer("Strong", 3);
  partition.add("B", 3);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Strong><p:B rp210:InstanceUID="{3}"/></p:Strong></p:Preface>
      <groups:FloatingDarkMetadata {groups}>
        <p:A rp210:InstanceUID="{2}"><p:Strong><p:B rp210:InstanceUID="{3}"/></p:Strong></p:A>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, FloatsASetThatIsOnlyReferredToWeakly) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 1).refer("Weak", 2);
  partition.add("A", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Weak><p:A_REF types:TargetInstance="{2}"/></p:Weak></p:Preface>
      <groups:FloatingDarkMetadata {groups}><p:A rp210:InstanceUID="{2}"/></groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(XMLBuilder, LeavesThePartitionAsItIs) {
  auto partition = partitionOf(linkedSets());
  const auto preface = partition.add("Preface", 1).refer("Strong", 2).present("Number");
  partition.add("A", 2).refer("Weak", 1).unknown(0x8001);
  partition.addDarkGroup(3);
  const auto sets = partition->sets();
  for (const auto& flags : kAllFlags) EXPECT_EQ(exported(partition, flags), exported(partition, preface, flags));
  EXPECT_EQ(partition->sets(), sets);
  EXPECT_TRUE(partition->partitionDictionary().primerEntries().empty());
}

TEST(XMLBuilder, WritesIdentifiersInFull) {
  auto partition = partitionOf(linkedSets());
  partition.add("Preface", 0x0a0b0c0d);
  EXPECT_XML(exported(partition),
             R"(<s377m:MetadataSets xmlns:p="urn:p" xmlns:rp210="urn:SMPTE:RP210" xmlns:s377m="urn:SMPTE:S377M">)"
             R"(<p:Preface rp210:InstanceUID="00.00.00.00.00.00.00.00.00.00.00.00.0A.0B.0C.0D"/>)"
             R"(</s377m:MetadataSets>)");
}

}  // namespace
}  // namespace Vantor::XMLBuilder

VANTOR_AUTO_PTR_END
