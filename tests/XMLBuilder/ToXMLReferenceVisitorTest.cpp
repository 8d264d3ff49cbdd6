#include "XMLBuilder/ToXMLReferenceVisitor.h"

#include "Core/Metadata/ReferenceElement.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using Types::Identifiers::kStrongReference;
using Types::Identifiers::kWeakReference;

/// A property p:Prop of the Preface that refers to sets called q:Target, q:Descriptive or x:Other.
TestPartition withProperty(Types::Identifiers::Identifier type) {
  TestDictionary dictionary;
  dictionary.property("Prop", type).set("Preface", {"Prop"});
  dictionary.set("Target", {"Prop"}, {u"q", u"urn:q"}).set("Other", {"Prop"}, {u"x", u"urn:x"});
  dictionary.set("Descriptive", {"Prop"}, {u"q", u"urn:q"}, TestDictionary::Kind::kDescriptive);
  return TestPartition(dictionary);
}

/// The Preface's p:Prop refers to a q:Target.
std::string exportedTarget(Types::Identifiers::Identifier type, Flags flags) {
  const auto partition = withProperty(type);
  partition.add("Preface", 1).refer("Prop", 2);
  partition.add("Target", 2);
  return exported(partition, flags);
}

TEST(ReferenceExport, AStrongReferenceHoldsItsTargetWhereReferencesNest) {
  for (const auto& flags : {kNested, kNestedStructural}) {
    EXPECT_XML(exportedTarget(kStrongReference, flags), R"(
      <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m}>
        <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target rp210:InstanceUID="{2}"/></p:Prop></p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceExport, AStrongReferencePointsAtTheSiblingThatIsItsTargetWhereNothingNests) {
  for (const auto& flags : {kFlat, kFlatStructural}) {
    EXPECT_XML(exportedTarget(kStrongReference, flags), R"(
      <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target_REF types:TargetInstance="{2}"/></p:Prop></p:Preface>
        <q:Target rp210:InstanceUID="{2}"/>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceExport, AWeakReferencePointsAtItsTargetInEveryMode) {
  for (const auto& flags : kAllFlags) {
    EXPECT_XML(exportedTarget(kWeakReference, flags), R"(
      <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target_REF types:TargetInstance="{2}"/></p:Prop></p:Preface>
        <groups:FloatingDarkMetadata {groups}><q:Target rp210:InstanceUID="{2}"/></groups:FloatingDarkMetadata>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceExport, AReferenceToNoSetDanglesInItsPropertyInEveryMode) {
  for (const auto type : {kStrongReference, kWeakReference}) {
    const auto partition = withProperty(type);
    partition.add("Preface", 1).refer("Prop", 2);
    for (const auto& flags : kAllFlags) {
      EXPECT_XML(exported(partition, flags), R"(
        <s377m:MetadataSets {p} {rp210} {s377m} {types}>
          <p:Preface rp210:InstanceUID="{1}">
            <p:Prop><s377m:Dangling_REF types:TargetInstance="{2}"/></p:Prop>
          </p:Preface>
        </s377m:MetadataSets>)");
    }
  }
}

TEST(ReferenceExport, AReferenceOfZerosIsAReferenceLikeAnyOther) {
  const auto partition = withProperty(kWeakReference);
  partition.add("Preface", 1).refer("Prop", 0);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Prop><s377m:Dangling_REF types:TargetInstance="{0}"/></p:Prop></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, APropertyWithoutReferenceIsLeftOut) {
  for (const auto type : {kStrongReference, kWeakReference}) {
    const auto unset = withProperty(type);
    unset.add("Preface", 1);
    const auto withoutValue = withProperty(type);
    withoutValue.add("Preface", 1).present("Prop");
    for (const auto& flags : kAllFlags) {
      EXPECT_XML(exported(unset, flags), R"(
        <s377m:MetadataSets {p} {rp210} {s377m}><p:Preface rp210:InstanceUID="{1}"/></s377m:MetadataSets>)");
      EXPECT_EQ(exported(withoutValue, flags), exported(unset, flags));
    }
  }
}

/// Two sets of different names carry the InstanceUID that p:Prop refers to.
TestPartition ambiguous(Types::Identifiers::Identifier type) {
  auto partition = withProperty(type);
  partition.add("Preface", 1).refer("Prop", 2);
  partition.add("Target", 2);
  partition.add("Other", 2);
  return partition;
}

TEST(ReferenceExport, APointerToOneOfSeveralSetsNamesNoneOfThem) {
  EXPECT_XML(exported(ambiguous(kStrongReference), kFlat), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types} xmlns:x="urn:x">
      <p:Preface rp210:InstanceUID="{1}">
        <p:Prop><MULTIPLE_METADATASETS_REF xmlns="urn:q" types:TargetInstance="{2}"/></p:Prop>
      </p:Preface>
      <q:Target rp210:InstanceUID="{2}"/>
      <groups:FloatingDarkMetadata {groups}><x:Other rp210:InstanceUID="{2}"/></groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  EXPECT_XML(exported(ambiguous(kWeakReference), kFlat), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types} xmlns:x="urn:x">
      <p:Preface rp210:InstanceUID="{1}">
        <p:Prop><MULTIPLE_METADATASETS_REF xmlns="urn:q" types:TargetInstance="{2}"/></p:Prop>
      </p:Preface>
      <groups:FloatingDarkMetadata {groups}>
        <q:Target rp210:InstanceUID="{2}"/>
        <x:Other rp210:InstanceUID="{2}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, TheFirstOfSeveralSetsIsTheTargetWhereReferencesNest) {
  EXPECT_XML(exported(ambiguous(kStrongReference), kNested), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} xmlns:x="urn:x">
      <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target rp210:InstanceUID="{2}"/></p:Prop></p:Preface>
      <groups:FloatingDarkMetadata {groups}><x:Other rp210:InstanceUID="{2}"/></groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  EXPECT_XML(exported(ambiguous(kWeakReference), kNested), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types} xmlns:x="urn:x">
      <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target_REF types:TargetInstance="{2}"/></p:Prop></p:Preface>
      <groups:FloatingDarkMetadata {groups}>
        <q:Target rp210:InstanceUID="{2}"/>
        <x:Other rp210:InstanceUID="{2}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

/// The Preface's p:Prop refers to a descriptive set, which refers to a q:Target.
TestPartition descriptive(Types::Identifiers::Identifier type) {
  auto partition = withProperty(type);
  partition.add("Preface", 1).refer("Prop", 2);
  partition.add("Descriptive", 2).refer("Prop", 3);
  partition.add("Target", 3);
  return partition;
}

TEST(ReferenceExport, ADescriptiveTargetIsWrittenWhereItIsNotExcluded) {
  EXPECT_XML(exported(descriptive(kStrongReference), kNested), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Prop>
          <q:Descriptive rp210:InstanceUID="{2}"><p:Prop><q:Target rp210:InstanceUID="{3}"/></p:Prop></q:Descriptive>
        </p:Prop>
      </p:Preface>
    </s377m:MetadataSets>)");
  EXPECT_XML(exported(descriptive(kStrongReference), kFlat), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Descriptive_REF types:TargetInstance="{2}"/></p:Prop></p:Preface>
      <q:Descriptive rp210:InstanceUID="{2}"><p:Prop><q:Target_REF types:TargetInstance="{3}"/></p:Prop></q:Descriptive>
      <q:Target rp210:InstanceUID="{3}"/>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, AnExcludedTargetLeavesNoTraceOfThePropertyWhereReferencesNest) {
  EXPECT_XML(exported(descriptive(kStrongReference), kNestedStructural), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}><p:Preface rp210:InstanceUID="{1}"/></s377m:MetadataSets>)");
}

TEST(ReferenceExport, AWeakReferenceToAnExcludedTargetLeavesNoTraceEitherWhereReferencesNest) {
  EXPECT_XML(exported(descriptive(kWeakReference), kNestedStructural), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <q:Descriptive rp210:InstanceUID="{2}">
          <p:Prop><q:Target_REF types:TargetInstance="{3}"/></p:Prop>
        </q:Descriptive>
        <q:Target rp210:InstanceUID="{3}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, AnExcludedTargetIsPointedAtButNotWrittenWhereNothingNests) {
  EXPECT_XML(exported(descriptive(kStrongReference), kFlatStructural), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Prop><q:Descriptive_REF xmlns:q="urn:q" types:TargetInstance="{2}"/></p:Prop>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, AnExcludedTargetIsWrittenWhereItFloats) {
  const auto partition = descriptive(kStrongReference);
  const auto start = partition.add("Target", 4).refer("Prop", 5);
  partition.add("Descriptive", 5);
  partition.add("Descriptive", 6);
  EXPECT_XML(exported(partition, start, kFlatStructural), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types}>
      <q:Target rp210:InstanceUID="{4}"><p:Prop><q:Descriptive_REF types:TargetInstance="{5}"/></p:Prop></q:Target>
      <groups:FloatingDarkMetadata {groups}>
        <q:Target rp210:InstanceUID="{4}"><p:Prop><q:Descriptive_REF types:TargetInstance="{5}"/></p:Prop></q:Target>
        <q:Descriptive rp210:InstanceUID="{5}"/>
        <q:Descriptive rp210:InstanceUID="{6}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, ATargetThatIsWrittenAlreadyIsPointedAtOrNestsAsNothing) {
  const auto partition = withProperty(kStrongReference);
  partition.add("Preface", 1).refer("Prop", 2);
  partition.add("Target", 2).refer("Prop", 1);
  EXPECT_XML(exported(partition, kNested), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target rp210:InstanceUID="{2}"><p:Prop/></q:Target></p:Prop></p:Preface>
    </s377m:MetadataSets>)");
  EXPECT_XML(exported(partition, kFlat), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Prop><q:Target_REF types:TargetInstance="{2}"/></p:Prop></p:Preface>
      <q:Target rp210:InstanceUID="{2}"><p:Prop><p:Preface_REF types:TargetInstance="{1}"/></p:Prop></q:Target>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, TargetsInTheFloatingContainerAreSiblingsThere) {
  const auto partition = withProperty(kStrongReference);
  partition.add("Preface", 1);
  partition.add("Target", 2).refer("Prop", 3);
  partition.add("Other", 3);
  EXPECT_XML(exported(partition, kFlat), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {types} xmlns:x="urn:x">
      <p:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata {groups}>
        <q:Target rp210:InstanceUID="{2}"><p:Prop><x:Other_REF types:TargetInstance="{3}"/></p:Prop></q:Target>
        <x:Other rp210:InstanceUID="{3}"/>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

constexpr const char* kDarkGroup2 = R"(
  <groups:DarkMetadata groups:BEROctetCount="4" groups:Key="06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00">
    3C0A001000000000000000000000000000000002
  </groups:DarkMetadata>)";

/// The Preface's p:Prop refers to a set that the dictionary does not know.
TestPartition dark(Types::Identifiers::Identifier type) {
  auto partition = withProperty(type);
  partition.add("Preface", 1).refer("Prop", 2);
  partition.addDarkGroup(2);
  return partition;
}

TEST(ReferenceExport, ADarkTargetLeavesAnEmptyPropertyWhereReferencesNest) {
  EXPECT_XML(exported(dark(kStrongReference), kNested), std::string(R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}"><p:Prop/></p:Preface>
      <groups:FloatingDarkMetadata>)") + kDarkGroup2 + R"(</groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
  EXPECT_EQ(exported(dark(kWeakReference), kNested), exported(dark(kStrongReference), kNested));
}

TEST(ReferenceExport, ADarkTargetDanglesAndStandsInTheContainerWhereNothingNests) {
  for (const auto& flags : {kFlat, kFlatStructural}) {
    EXPECT_XML(exported(dark(kStrongReference), flags), std::string(R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <p:Prop><s377m:Dangling_REF types:TargetInstance="{2}"/></p:Prop>
        </p:Preface>
        <groups:FloatingDarkMetadata>)") + kDarkGroup2 + R"(</groups:FloatingDarkMetadata>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceExport, ADarkTargetThatIsExcludedLeavesNoTraceWhereReferencesNest) {
  EXPECT_XML(exported(dark(kStrongReference), kNestedStructural), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}><p:Preface rp210:InstanceUID="{1}"/></s377m:MetadataSets>)");
}

TEST(ReferenceExport, TheContainerMovesBehindTheSiblingsThatWereWrittenBeforeADarkTarget) {
  TestDictionary dictionary;
  dictionary.property("Props", MetaMetadata::arrayOf(kStrongReference)).set("Preface", {"Props"}).set("Target");
  TestPartition partition(dictionary);
  partition.add("Preface", 1).refer("Props", 2).refer("Props", 3).refer("Props", 2).refer("Props", 4);
  partition.add("Target", 3);
  partition.add("Target", 4);
  partition.addDarkGroup(2);
  // The container was there before the second set, and so stands before the third: nothing moves it after that.
  EXPECT_XML(exported(partition, kFlat), std::string(R"(
    <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
      <p:Preface rp210:InstanceUID="{1}">
        <p:Props>
          <s377m:Dangling_REF types:TargetInstance="{2}"/><p:Target_REF types:TargetInstance="{3}"/>
          <s377m:Dangling_REF types:TargetInstance="{2}"/><p:Target_REF types:TargetInstance="{4}"/>
        </p:Props>
      </p:Preface>
      <p:Target rp210:InstanceUID="{3}"/>
      <groups:FloatingDarkMetadata>)") + kDarkGroup2 +
                                             kDarkGroup2 + R"(</groups:FloatingDarkMetadata>
      <p:Target rp210:InstanceUID="{4}"/>
    </s377m:MetadataSets>)");
}

TEST(ReferenceExport, AMisplacedReferenceStandsAmongTheExtensions) {
  TestDictionary dictionary;
  dictionary.property("Prop", kStrongReference).set("Preface").set("Target", {"Prop"}, {u"q", u"urn:q"});
  TestPartition partition(dictionary);
  auto preface = partition.add("Preface", 1);
  dynamic_cast<ReferenceElement&>(preface.misplaced("Prop"))
      .setUnverifiedReference(std::make_unique<Types::StrongReference>(uid(2)));
  partition.add("Target", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {groups} {p} xmlns:q="urn:q" {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements><p:Prop><q:Target rp210:InstanceUID="{2}"/></p:Prop></groups:ExtensionElements>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ToXMLReferenceVisitor, WritesNothingForOtherValues) {
  const auto partition = withProperty(kStrongReference);
  const auto target = partition.add("Target", 2);
  TestDocument document;
  ExportDocument exportDocument(*document);
  WrittenSets written;
  const ExportPass pass{*partition, {true, false}, exportDocument, written};
  ToXMLReferenceVisitor visitor(partition->findByInstanceUID(*target->instanceUID()), document.element(), pass);
  uid(2).accept(visitor);
  Types::UInt8(2).accept(visitor);
  EXPECT_XML(textOf(document.element()), R"(<p:Prop {p}/>)");
}

}  // namespace
}  // namespace Vantor::XMLBuilder
