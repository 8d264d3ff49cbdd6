#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

#include "Core/Metadata/ElementFactory.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUInt32;
using Types::Identifiers::kUUID;

TestDictionary numbers() {
  TestDictionary dictionary;
  dictionary.property("First", kUInt32).property("Second", kUInt32).property("Third", kUInt32);
  return dictionary;
}

/// A Preface that lists three numbers in the given ways, each with its own value.
std::string exportedNumbers(const std::vector<Listed>& listed) {
  TestDictionary dictionary = numbers();
  TestPartition partition(dictionary.set("Preface", listed));
  auto preface = partition.add("Preface", 1);
  preface.value("First", Types::UInt32(1)).value("Second", Types::UInt32(2)).value("Third", Types::UInt32(3));
  return exported(partition);
}

TEST(SetExport, ASetThatTwoReferencesReachIsWrittenOnce) {
  TestDictionary dictionary;
  dictionary.property("One", kStrongReference).property("Other", kStrongReference);
  TestPartition partition(dictionary.set("Preface", {"One", "Other"}).set("A"));
  partition.add("Preface", 1).refer("One", 2).refer("Other", 2);
  partition.add("A", 2);
  EXPECT_XML(exported(partition, kNested), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:One><p:A rp210:InstanceUID="{2}"/></p:One>
        <p:Other/>
      </p:Preface>
    </s377m:MetadataSets>)");
  EXPECT_XML(exported(partition, kFlat), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:One><p:A_REF types:TargetInstance="{2}"/></p:One>
        <p:Other><p:A_REF types:TargetInstance="{2}"/></p:Other>
      </p:Preface>
      <p:A rp210:InstanceUID="{2}"/>
    </s377m:MetadataSets>)");
}

TEST(SetExport, ASetThatRefersToItselfIsWrittenOnce) {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference);
  TestPartition partition(dictionary.set("Preface", {"Strong"}));
  partition.add("Preface", 1).refer("Strong", 1);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Strong/></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, ARegisterKeepsASetFromBeingWrittenAgain) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface"));
  const auto preface = partition.add("Preface", 1);
  TestDocument document;
  ExportDocument exportDocument(*document);
  WrittenSets written;
  ToXMLMetadataSetVisitor writer(document.element(), {*partition, {true, false}, exportDocument, written});
  preface->accept(writer);
  preface->accept(writer);
  EXPECT_EQ(written.count(&*preface), 1u);
  EXPECT_XML(textOf(document.element()), R"(<p:Prop {p}><p:Preface {rp210} rp210:InstanceUID="{1}"/></p:Prop>)");
}

TEST(SetExport, PropertiesStandInTheOrderOfTheirSchemaIndexNotOfTheirLabels) {
  EXPECT_XML(exportedNumbers({{"First", u"10"}, {"Second", u"9"}, {"Third", u"1"}}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Third>3</p:Third><p:Second>2</p:Second><p:First>1</p:First></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, PropertiesStandInTheOrderInWhichTheSetListsThem) {
  EXPECT_XML(exportedNumbers({"Second", "Third", "First"}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Second>2</p:Second><p:Third>3</p:Third><p:First>1</p:First></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, AValidPropertyWithoutSchemaIndexIsLeftOut) {
  EXPECT_XML(exportedNumbers({"First", {"Second", u""}, "Third"}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:First>1</p:First><p:Third>3</p:Third></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, PropertiesOfOneSchemaIndexAreAllWritten) {
  const std::string text = exportedNumbers({{"First", u"7"}, {"Second", u"7"}, {"Third", u"7"}});
  for (const char* property : {"<p:First>1</p:First>", "<p:Second>2</p:Second>", "<p:Third>3</p:Third>"}) {
    const auto at = text.find(property);
    EXPECT_NE(at, std::string::npos) << property;
    EXPECT_EQ(text.find(property, at + 1), std::string::npos) << property;
  }
}

TEST(SetExport, ASchemaIndexMayHaveAll32Bits) {
  EXPECT_XML(exportedNumbers({{"First", u"4294967295"}, {"Second", u"4294967294"}, {"Third", u"2147483648"}}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Third>3</p:Third><p:Second>2</p:Second><p:First>1</p:First></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, ASchemaIndexThatIsNoNumberStandsFirst) {
  EXPECT_XML(exportedNumbers({{"First", u"2"}, {"Second", u"1"}, {"Third", u"none"}}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Third>3</p:Third><p:Second>2</p:Second><p:First>1</p:First></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, InvalidPropertiesStandBeforeValidOnesInTheOrderInWhichTheyWereMet) {
  TestDictionary dictionary = numbers();
  dictionary.property("Strong", kStrongReference).property("List", arrayOf(kUInt32));
  TestPartition partition(dictionary.set("Preface", {{"First", u"0"}}).set("A", {"Second", "Strong", "List"}));
  auto preface = partition.add("Preface", 1).value("First", Types::UInt32(1));
  setDecodedValue(preface.misplaced("Strong"), Types::StrongReference(uid(2)).clone());
  preface.unknown(0x0102, Types::Unknown(Bytes{2}));
  Types::Array list;
  list.append(Types::UInt32(5).clone());
  setDecodedValue(preface.misplaced("List"), list.clone());
  setDecodedValue(preface.misplaced("Second"), Types::UInt32(2).clone());
  partition.add("A", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements>
          <p:Strong><p:A rp210:InstanceUID="{2}"/></p:Strong>
          <groups:DarkElement groups:StaticLocalTag="01.02">02</groups:DarkElement>
          <p:List><p:Element>5</p:Element></p:List>
          <p:Second>2</p:Second>
        </groups:ExtensionElements>
        <p:First>1</p:First>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, InstanceUIDAndGenerationUIDAreAttributesOfTheSetElement) {
  TestDictionary dictionary;
  dictionary.property("GenerationUID", kUUID, {u"rp210", u"urn:SMPTE:RP210"});
  TestPartition partition(dictionary.set("Preface", {"GenerationUID"}));
  partition.add("Preface", 1).value("GenerationUID", uid(0xffffffff));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:GenerationUID="00.00.00.00.00.00.00.00.00.00.00.00.FF.FF.FF.FF" rp210:InstanceUID="{1}"/>
    </s377m:MetadataSets>)");
}

TEST(SetExport, AnAttributeWithoutValueIsEmpty) {
  TestDictionary dictionary;
  dictionary.property("GenerationUID", kUUID, {u"rp210", u"urn:SMPTE:RP210"});
  TestPartition partition(dictionary.set("Preface", {"GenerationUID"}));
  partition.add("Preface", 1).present("GenerationUID");
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:GenerationUID="" rp210:InstanceUID="{1}"/>
    </s377m:MetadataSets>)");
}

TEST(SetExport, ASetWithoutInstanceUIDHasNoSuchAttribute) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface"));
  const auto* definition = partition->partitionDictionary().dictionary()->findSetBySymbol("Preface");
  partition->addMetadataSet(std::make_unique<MetadataSet>(definition->key(), definition));
  EXPECT_XML(exported(partition), R"(<s377m:MetadataSets {p} {s377m}><p:Preface/></s377m:MetadataSets>)");
}

TEST(SetExport, AnUnsetPropertyIsLeftOutAndAPresentOneWithoutValueIsAnEmptyElement) {
  TestDictionary dictionary = numbers();
  TestPartition partition(dictionary.set("Preface", {{"First", 0u}, {"Second", 0u}}));
  partition.add("Preface", 1).present("Second");
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Second/></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(SetExport, ASetWithoutDefinitionThatIsNoDarkGroupIsNotWritten) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface"));
  MetadataSet* set = partition->createMetadataSet(MetaMetadata::registerKey(kDarkGroupKey));
  EXPECT_XML(exported(*partition, set), R"(
    <s377m:MetadataSets {s377m}/>)");
}

TEST(SetExport, ADarkGroupGoesIntoTheFloatingContainerAndMovesThatBehindTheOtherSets) {
  TestDictionary dictionary;
  dictionary.property("References", batchOf(kStrongReference));
  TestPartition partition(dictionary.set("Preface", {"References"}).set("A"));
  partition.add("Preface", 1).refer("References", 3).refer("References", 2);
  partition.add("A", 2);
  partition.addDarkGroup(3);
  EXPECT_XML(exported(partition, kNested), R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:References><p:A rp210:InstanceUID="{2}"/></p:References>
      </p:Preface>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4" groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">
          3C0A001000000000000000000000000000000003
        </groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(SetExport, ADarkGroupMayBeTheStartSet) {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference);
  TestPartition partition(dictionary.set("Preface", {"Strong"}));
  partition.add("Preface", 1).refer("Strong", 2);
  const MetadataSet& start = partition.addDarkGroup(2);
  EXPECT_XML(exported(*partition, &start), R"(
    <s377m:MetadataSets {groups} {s377m} {types}>
      <groups:FloatingDarkMetadata>
        <groups:DarkMetadata groups:BEROctetCount="4" groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">
          3C0A001000000000000000000000000000000002
        </groups:DarkMetadata>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

}  // namespace
}  // namespace Vantor::XMLBuilder
