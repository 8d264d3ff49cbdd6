#include "XMLBuilder/ToXMLElementVisitor.h"

#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using Types::Identifiers::kRational;
using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUInt8;
using Types::Identifiers::kUUID;
using Types::Identifiers::kWeakReference;

constexpr const char* kNothing = R"(
    <s377m:MetadataSets {p} {rp210} {s377m}><p:Preface rp210:InstanceUID="{1}"/></s377m:MetadataSets>)";
constexpr const char* kEmptyElement = R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Items/></p:Preface>
    </s377m:MetadataSets>)";

/// A partition with a Preface that has one property, "Items".
TestPartition withItems(MetaMetadata::DataType type, uint32 requiredStatus = 4, const XMLName& name = {}) {
  TestDictionary dictionary;
  dictionary.property("Items", type, name);
  return TestPartition(dictionary.set("Preface", {{"Items", requiredStatus}}));
}

/// The same, with sets to refer to.
TestPartition withSets(MetaMetadata::DataType type) {
  TestDictionary dictionary;
  dictionary.property("Items", type);
  return TestPartition(dictionary.set("Preface", {"Items"}).set("A").descriptive("Descriptive"));
}

/// The same, but the Preface has the property out of its place.
TestPartition withMisplacedItems(MetaMetadata::DataType type) {
  TestDictionary dictionary;
  dictionary.property("Items", type).set("Preface").set("A", {{"Items", 0u}});
  TestPartition partition(dictionary);
  partition.add("Preface", 1).misplaced("Items");
  return partition;
}

std::vector<MetaMetadata::DataType> collectionTypes() {
  return {arrayOf(kUInt8),           batchOf(kUInt8),         arrayOf(kStrongReference),
          batchOf(kStrongReference), arrayOf(kWeakReference), batchOf(kWeakReference)};
}

TEST(CollectionExport, ThreeItemsAreThreeElementsWithThePropertysPrefix) {
  for (const auto type : {arrayOf(kUInt8), batchOf(kUInt8)}) {
    const auto partition = withItems(type);
    partition.add("Preface", 1)
        .item("Items", Types::UInt8(3))
        .item("Items", Types::UInt8(1))
        .item("Items", Types::UInt8(2));
    EXPECT_XML(exported(partition), R"(
      <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <p:Items><p:Element>3</p:Element><p:Element>1</p:Element><p:Element>2</p:Element></p:Items>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(CollectionExport, OneItemIsOneElement) {
  const auto partition = withItems(batchOf(kUUID), 0, {u"q", u"urn:q", u"Ids"});
  partition.add("Preface", 1).item("Items", uid(2));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} xmlns:q="urn:q" {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}"><q:Ids><q:Element>{2}</q:Element></q:Ids></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(CollectionExport, ItemElementsAreInThePropertysNamespaceWhichDecidesTheirForm) {
  const auto partition = withItems(arrayOf(kRational), 0, {u"st434", kSt434Elements});
  partition.add("Preface", 1).item("Items", Types::Rational(1, 2)).item("Items", Types::Rational(-3, 4));
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {st377Types} {st434}>
      <p:Preface rp210:InstanceUID="{1}">
        <st434:Items>
          <st434:Element>
            <st377Types:Numerator>1</st377Types:Numerator><st377Types:Denominator>2</st377Types:Denominator>
          </st434:Element>
          <st434:Element>
            <st377Types:Numerator>-3</st377Types:Numerator><st377Types:Denominator>4</st377Types:Denominator>
          </st434:Element>
        </st434:Items>
      </p:Preface>
    </s377m:MetadataSets>)");
}

TEST(CollectionExport, ReferencesInACollectionOfValuesAreIdentifiers) {
  for (const auto type : {arrayOf(kUUID), batchOf(kUUID)}) {
    const auto partition = withItems(type);
    partition.add("Preface", 1)
        .item("Items", Types::StrongReference(uid(1)))
        .item("Items", Types::WeakReference(uid(9)));
    for (const auto flags : {kNested, kFlat}) {
      EXPECT_XML(exported(partition, flags), R"(
        <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
          <p:Preface rp210:InstanceUID="{1}">
            <p:Items><p:Element>{1}</p:Element><p:Element>{9}</p:Element></p:Items>
          </p:Preface>
        </s377m:MetadataSets>)");
    }
  }
}

TEST(CollectionExport, AnEmptyCollectionIsAnEmptyElementWhereEncodersHaveToWriteIt) {
  for (const auto type : collectionTypes()) {
    for (const uint32 requiredStatus : {0u, 1u, 2u, 3u, 4u}) {
      SCOPED_TRACE(std::to_string(type.type) + " of " + std::to_string(type.itemType) + ", required status " +
                   std::to_string(requiredStatus));
      const auto withoutItems = withItems(type, requiredStatus);
      withoutItems.add("Preface", 1).emptied("Items");
      const auto withoutValue = withItems(type, requiredStatus);
      withoutValue.add("Preface", 1).present("Items");
      for (const auto& flags : kAllFlags) {
        EXPECT_XML(exported(withoutItems, flags), requiredStatus <= 1 ? kEmptyElement : kNothing);
        EXPECT_XML(exported(withoutValue, flags), requiredStatus <= 1 ? kEmptyElement : kNothing);
      }
    }
  }
}

TEST(CollectionExport, AnUnsetCollectionIsLeftOutThoughItIsRequired) {
  for (const auto type : collectionTypes()) {
    const auto partition = withItems(type, 0);
    partition.add("Preface", 1);
    for (const auto& flags : kAllFlags) EXPECT_XML(exported(partition, flags), kNothing);
  }
}

TEST(CollectionExport, AnEmptyCollectionIsLeftOutWhereItIsMisplaced) {
  for (const auto type : collectionTypes()) {
    const auto partition = withMisplacedItems(type);
    for (const auto& flags : kAllFlags) EXPECT_XML(exported(partition, flags), kNothing);
  }
}

TEST(ReferenceCollectionExport, StrongMembersNestInOneProperty) {
  for (const auto type : {arrayOf(kStrongReference), batchOf(kStrongReference)}) {
    const auto partition = withSets(type);
    partition.add("Preface", 1).refer("Items", 3).refer("Items", 404).refer("Items", 2);
    partition.add("A", 2);
    partition.add("A", 3);
    EXPECT_XML(exported(partition, kNested), R"(
      <s377m:MetadataSets {p} {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <p:Items>
            <p:A rp210:InstanceUID="{3}"/>
            <s377m:Dangling_REF types:TargetInstance="{404}"/>
            <p:A rp210:InstanceUID="{2}"/>
          </p:Items>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceCollectionExport, StrongMembersArePointersBesideTheirTargetsWhereNothingNests) {
  for (const auto type : {arrayOf(kStrongReference), batchOf(kStrongReference)}) {
    const auto partition = withSets(type);
    partition.add("Preface", 1).refer("Items", 3).refer("Items", 404).refer("Items", 2);
    partition.add("A", 2);
    partition.add("A", 3);
    EXPECT_XML(exported(partition, kFlat), R"(
      <s377m:MetadataSets {p} {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <p:Items>
            <p:A_REF types:TargetInstance="{3}"/>
            <s377m:Dangling_REF types:TargetInstance="{404}"/>
            <p:A_REF types:TargetInstance="{2}"/>
          </p:Items>
        </p:Preface>
        <p:A rp210:InstanceUID="{3}"/>
        <p:A rp210:InstanceUID="{2}"/>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceCollectionExport, WeakMembersArePointersInEveryMode) {
  for (const auto type : {arrayOf(kWeakReference), batchOf(kWeakReference)}) {
    const auto partition = withSets(type);
    partition.add("Preface", 1).refer("Items", 2).refer("Items", 404).refer("Items", 1);
    partition.add("A", 2);
    for (const auto& flags : kAllFlags) {
      EXPECT_XML(exported(partition, flags), R"(
        <s377m:MetadataSets {p} {rp210} {s377m} {types}>
          <p:Preface rp210:InstanceUID="{1}">
            <p:Items>
              <p:A_REF types:TargetInstance="{2}"/>
              <s377m:Dangling_REF types:TargetInstance="{404}"/>
              <p:Preface_REF types:TargetInstance="{1}"/>
            </p:Items>
          </p:Preface>
          <groups:FloatingDarkMetadata {groups}><p:A rp210:InstanceUID="{2}"/></groups:FloatingDarkMetadata>
        </s377m:MetadataSets>)");
    }
  }
}

TEST(ReferenceCollectionExport, OneMemberIsOnePropertyWithOneTarget) {
  const auto partition = withSets(batchOf(kStrongReference));
  partition.add("Preface", 1).refer("Items", 2);
  partition.add("A", 2);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Items><p:A rp210:InstanceUID="{2}"/></p:Items></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ReferenceCollectionExport, MembersThatAreLeftOutLeaveTheOthersTheirProperty) {
  const auto partition = withSets(arrayOf(kStrongReference));
  partition.add("Preface", 1).refer("Items", 3).refer("Items", 2).refer("Items", 3);
  partition.add("A", 2);
  partition.add("Descriptive", 3);
  EXPECT_XML(exported(partition, kNestedStructural), R"(
    <s377m:MetadataSets {p} {rp210} {s377m}>
      <p:Preface rp210:InstanceUID="{1}"><p:Items><p:A rp210:InstanceUID="{2}"/></p:Items></p:Preface>
    </s377m:MetadataSets>)");
}

TEST(ReferenceCollectionExport, APropertyWhoseMembersAreAllLeftOutLeavesNoTrace) {
  const auto partition = withSets(arrayOf(kStrongReference));
  partition.add("Preface", 1).refer("Items", 3).refer("Items", 3);
  partition.add("Descriptive", 3);
  EXPECT_XML(exported(partition, kNestedStructural), kNothing);
}

TEST(CollectionExport, AMisplacedCollectionStandsAmongTheExtensions) {
  for (const auto type : {arrayOf(kUInt8), batchOf(kUInt8)}) {
    const auto partition = withMisplacedItems(type);
    dynamic_cast<CollectionElement&>(*partition->sets()[0]->invalidBegin()).append(Types::UInt8(7).clone());
    EXPECT_XML(exported(partition), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {s422mTypes} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements><p:Items><p:Element>7</p:Element></p:Items></groups:ExtensionElements>
        </p:Preface>
      </s377m:MetadataSets>)");
  }
}

TEST(ReferenceCollectionExport, AMisplacedCollectionStandsAmongTheExtensions) {
  for (const auto type : {arrayOf(kStrongReference), batchOf(kStrongReference)}) {
    const auto partition = withMisplacedItems(type);
    dynamic_cast<CollectionElement&>(*partition->sets()[0]->invalidBegin())
        .append(std::make_unique<Types::StrongReference>(uid(2)));
    partition.add("A", 2);
    EXPECT_XML(exported(partition, kNested), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements><p:Items><p:A rp210:InstanceUID="{2}"/></p:Items></groups:ExtensionElements>
        </p:Preface>
      </s377m:MetadataSets>)");
    EXPECT_XML(exported(partition, kFlat), R"(
      <s377m:MetadataSets {groups} {p} {rp210} {s377m} {types}>
        <p:Preface rp210:InstanceUID="{1}">
          <groups:ExtensionElements><p:Items><p:A_REF types:TargetInstance="{2}"/></p:Items></groups:ExtensionElements>
        </p:Preface>
        <p:A rp210:InstanceUID="{2}"/>
      </s377m:MetadataSets>)");
  }
}

}  // namespace
}  // namespace Vantor::XMLBuilder
