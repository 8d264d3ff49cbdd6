#include <gtest/gtest.h>

#include "Core/Types/Types.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using namespace Types::Identifiers;
using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;

constexpr const char* kUnequalItems =
    "subElementSize == dataType -> serializedSize (): There is a collection in the XML that contains an ARRAY or "
    "COLLECTION that contain elements with different sizes.";

std::string items(const std::vector<std::string>& contents) {
  std::string text;
  for (const auto& content : contents) text += "<p:Element>" + content + "</p:Element>";
  return text;
}

/// A text of no units that stands in an element that is not empty.
constexpr const char* kEmptyText = "<b/>";

TEST(CollectionImport, ReadsItsItemsInDocumentOrder) {
  for (const auto entry : kEntries) {
    const ImportedProperty property(arrayOf(kUInt32), items({"1", "4294967295", "3"}), entry);
    Types::Array expected(4);
    for (const uint32 number : {1u, 4294967295u, 3u}) expected.append(std::make_unique<Types::UInt32>(number));
    EXPECT_TRUE(holds(property.value(), expected));
    EXPECT_EQ(property.as<Types::Array>().itemSize(), 4u);
  }
}

TEST(CollectionImport, MakesABatchOfABatch) {
  const ImportedProperty property(batchOf(kUInt16), items({"2", "1"}));
  Types::Batch expected(2);
  for (const uint16 number : {uint16{2}, uint16{1}}) expected.append(std::make_unique<Types::UInt16>(number));
  EXPECT_TRUE(holds(property.value(), expected));
}

TEST(CollectionImport, TakesEveryElementForAnItemAndNothingElse) {
  const ImportedProperty property(
      arrayOf(kUInt8), "9 <a>1</a><!-- <a>9</a> --><?a 9?><x:b xmlns:x='urn:x'>2</x:b> 9 <p:Prop>3</p:Prop>");
  const auto& array = property.as<Types::Array>();
  ASSERT_EQ(array.size(), 3u);
  for (uint32 i = 0; i < 3; ++i) EXPECT_TRUE(holds(&array.at(i), Types::UInt8(static_cast<uint8>(i + 1))));
}

TEST(CollectionImport, ReadsNoItemsAsAnEmptyCollectionOfTheSizeOfItsType) {
  const auto itemSize = [](MetaMetadata::DataType type, const std::string& content) {
    const ImportedProperty property(type, content);
    EXPECT_TRUE(property.isPresent());
    const auto& collection = property.as<Types::Collection>();
    EXPECT_EQ(collection.size(), 0u);
    return collection.itemSize();
  };
  for (const std::string content : {"", " ", "text", "<!-- -->"}) {
#define VANTOR_CHECK_TYPE(Type, number, octets)                                 \
  if (k##Type != kStrongReference && k##Type != kWeakReference) {               \
    EXPECT_EQ(itemSize(arrayOf(k##Type), content), typeSize(k##Type)) << #Type; \
    EXPECT_EQ(itemSize(batchOf(k##Type), content), typeSize(k##Type)) << #Type; \
  }
    VANTOR_FOR_EACH_TYPE(VANTOR_CHECK_TYPE)
#undef VANTOR_CHECK_TYPE
  }
}

TEST(CollectionImport, MeasuresItemsWhoseTypeHasNoSize) {
  const auto itemSize = [](Identifier type, const std::vector<std::string>& contents) {
    const ImportedProperty property(batchOf(type), items(contents));
    EXPECT_EQ(property.as<Types::Batch>().size(), contents.size());
    return property.as<Types::Batch>().itemSize();
  };
  EXPECT_EQ(itemSize(kUTF16String, {"abc", "d\u00e9f"}), 6u);
  EXPECT_EQ(itemSize(kISO7String, {"ab", "cd"}), 2u);
  EXPECT_EQ(itemSize(kISO8String, {"a\u00e9b", "cde"}), 3u);
  EXPECT_EQ(itemSize(kDataStream, {"0A0B", "0C0D", "0E0F"}), 2u);
  EXPECT_EQ(itemSize(kUnknown, {"0A0B0C0D0E"}), 5u);
}

TEST(CollectionImport, RefusesItemsOfSeveralSizesOfATypeThatHasNone) {
  const auto expected = invalidLength(kUnequalItems, 970);
  for (const auto entry : kEntries) {
    for (const auto type : {kUTF16String, kISO7String, kISO8String}) {
      EXPECT_EQ(failureOf(batchOf(type), items({"ab", "ab", "abc"}), entry), expected);
      EXPECT_EQ(failureOf(arrayOf(type), items({"abc", "ab"}), entry), expected);
    }
    for (const auto type : {kDataStream, kUnknown}) {
      EXPECT_EQ(failureOf(arrayOf(type), items({"0A", "0A0B"}), entry), expected);
    }
  }
}

TEST(CollectionImport, LeavesThePropertyUnsetWhenItsItemsHaveSeveralSizes) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.property("Prop", arrayOf(kISO7String)).set("Preface", {"Prop"}));
  const auto text = document("<p:Preface><p:Prop>" + items({"ab", "c"}) + "</p:Prop></p:Preface>");
  EXPECT_EQ(failureOf([&] { import(text, partition); }).line, 970);
  EXPECT_FALSE(property(*partition->sets().front(), "Prop").isPresent());
}

TEST(CollectionImport, AcceptsItemsWithoutOctetsBeforeThoseThatFixTheSize) {
  for (const auto entry : kEntries) {
    const ImportedProperty property(arrayOf(kISO7String), items({kEmptyText, kEmptyText, "abcde", "fghij"}), entry);
    Types::Array expected(5);
    for (const auto* text : {"", "", "abcde", "fghij"}) expected.append(std::make_unique<Types::ISO7String>(text));
    EXPECT_TRUE(holds(property.value(), expected));
    EXPECT_EQ(property.value()->encodedSize(), 8u + 4 * 5);
  }
  const ImportedProperty streams(batchOf(kDataStream), items({kEmptyText, "0A0B"}));
  EXPECT_EQ(streams.as<Types::Batch>().itemSize(), 2u);
  EXPECT_EQ(streams.as<Types::Batch>().at(0).encodedSize(), 0u);
}

TEST(CollectionImport, RefusesItemsWithoutOctetsBehindThoseThatFixTheSize) {
  const auto expected = invalidLength(kUnequalItems, 970);
  EXPECT_EQ(failureOf(arrayOf(kISO7String), items({"abcde", kEmptyText})), expected);
  EXPECT_EQ(failureOf(arrayOf(kISO7String), items({kEmptyText, "abcde", kEmptyText, "abcde"})), expected);
}

TEST(CollectionImport, KeepsItemsThatAllAreWithoutOctets) {
  const ImportedProperty property(arrayOf(kUTF16String), items({kEmptyText, kEmptyText}));
  EXPECT_EQ(property.as<Types::Array>().size(), 2u);
  EXPECT_EQ(property.as<Types::Array>().itemSize(), 0u);
}

TEST(CollectionImport, RefusesAnItemWithoutTextWhereItHasToBeMeasured) {
  const auto expected = invalidLength(kUnequalItems, 970);
  for (const auto type : {kUTF16String, kISO7String, kISO8String, kDataStream, kUnknown}) {
    EXPECT_EQ(failureOf(arrayOf(type), items({""})), expected);
    EXPECT_EQ(failureOf(arrayOf(type), items({"0A", ""})), expected);
  }
  EXPECT_EQ(failureOf(arrayOf(kISO7String), items({" "})), expected);
  EXPECT_TRUE(ImportedProperty(arrayOf(kISO7String), items({" "}), Entry::kFile).isPresent());
}

TEST(CollectionImport, RefusesItemsOfATypeWithoutAForm) {
  EXPECT_EQ(failureOf(arrayOf(kDataValue), items({"0A"})), invalidLength(kUnequalItems, 970));
}

TEST(CollectionImport, PassesOverAnItemWithoutTextWhereTheTypeHasASize) {
  const ImportedProperty property(arrayOf(kUInt8), items({"1", "", "3"}));
  EXPECT_EQ(property.as<Types::Array>().size(), 2u);
  EXPECT_EQ(ImportedProperty(arrayOf(kLocalTag), items({"3C.0A"})).as<Types::Array>().size(), 0u);
}

TEST(CollectionImport, LeavesTextsOfSeveralSizesToTheCollectionWhereTheTypeIsNotMeasured) {
  const ImportedProperty property(arrayOf(kUTF8String), items({"ab", "\u00e9"}));
  EXPECT_EQ(property.as<Types::Array>().itemSize(), 2u);
  const auto failure = failureOf(arrayOf(kUTF8String), items({"ab", "abc"}));
  EXPECT_EQ(failure.kind, "InvalidLength");
  EXPECT_EQ(failure.file, "Core/Types/Collection");
}

TEST(CollectionImport, KeepsTheItemsBeforeAFailure) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.property("Prop", arrayOf(kUUID)).set("Preface", {"Prop"}));
  const auto text = document("<p:Preface><p:Prop>" + items({"{1}", "{2}", "no"}) + "</p:Prop></p:Preface>");
  EXPECT_EQ(failureOf([&] { import(text, partition); }).kind, "InvalidFormat");
  const auto& array = dynamic_cast<const Types::Array&>(*valueOf(*partition->sets().front(), "Prop"));
  ASSERT_EQ(array.size(), 2u);
  EXPECT_TRUE(holds(&array.at(1), uid(2)));
}

TEST(CollectionImport, ReadsItemsOfSeveralElements) {
  const std::string ratio = "<types:Numerator>1</types:Numerator><types:Denominator>2</types:Denominator>";
  for (const auto entry : kEntries) {
    const ImportedProperty property(batchOf(kRational), items({ratio, "\n" + ratio}), entry);
    const auto& batch = property.as<Types::Batch>();
    ASSERT_EQ(batch.size(), 2u);
    EXPECT_TRUE(holds(&batch.at(1), Types::Rational(1, 2)));
  }
}

TEST(CollectionImport, PadsAnItemByTheNameOfItsElement) {
  std::string umid = "A5";
  for (int i = 1; i < 32; ++i) umid += ".A5";
  EXPECT_EQ(failureOf(arrayOf(kUMID64), items({umid})).kind, "InvalidFormat");
  const ImportedProperty property(arrayOf(kUMID64), "<p:ExtendedClipID>" + umid + "</p:ExtendedClipID>");
  EXPECT_EQ(property.as<Types::Array>().itemSize(), 64u);
}

TEST(CollectionImport, RefusesToPadVeryManyItemsWithoutOctetsToAVeryLongOne) {
  std::string content = items({std::string(2'000'000, '0')});
  std::string empty;
  for (int i = 0; i < 1000; ++i) empty += "<a><b/></a>";
  // The first item fixes the size of texts, whose type has none; of streams it is measured beforehand.
  const auto* message = "17 items without octets cannot be padded to 1000000 octets each";
  const auto failure = failureOf(arrayOf(kDataStream), empty + content);
  EXPECT_EQ(failure.kind, "InvalidLength");
  EXPECT_EQ(failure.message, message);
  const std::string text = items({std::string(1'000'000, 'x')});
  std::string emptyTexts;
  for (int i = 0; i < 1000; ++i) emptyTexts += "<a><b/></a>";
  EXPECT_EQ(failureOf(arrayOf(kUTF8String), text + emptyTexts).message, message);
}

/// Two kinds of sets: nodes with every kind of reference, and leaves.
TestDictionary references() {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference).property("Weak", kWeakReference);
  dictionary.property("Strongs", arrayOf(kStrongReference)).property("Weaks", batchOf(kWeakReference));
  dictionary.property("StrongBatch", batchOf(kStrongReference)).property("WeakArray", arrayOf(kWeakReference));
  dictionary.property("Number", kInt32);
  dictionary.set("Preface", {"Strong", "Weak", "Strongs", "Weaks", "StrongBatch", "WeakArray"});
  dictionary.set("Leaf", {"Number"});
  return dictionary;
}

/// A partition that holds what a Preface with some properties gives.
class Imported {
 public:
  explicit Imported(const std::string& properties, const std::string& more = {}) : partition_(references().build()) {
    listed_ = import(document("<p:Preface>" + properties + "</p:Preface>" + more), partition_).size();
  }

  MetadataSet& set(std::size_t index) const { return *partition_->sets().at(index); }
  std::size_t sets() const { return partition_->sets().size(); }
  std::size_t listed() const { return listed_; }
  const Types::UUID& identifier(std::size_t index) const { return *set(index).instanceUID(); }
  bool isPresent(const char* symbol) const { return property(set(0), symbol).isPresent(); }
  const Types::SimpleDataType* value(const char* symbol) const { return valueOf(set(0), symbol); }
  /// What the members of a collection refer to.
  std::vector<Types::UUID> targets(const char* symbol) const {
    std::vector<Types::UUID> targets;
    const auto& collection = dynamic_cast<const Types::Collection&>(*value(symbol));
    for (uint32 i = 0; i < collection.size(); ++i) {
      targets.push_back(dynamic_cast<const Types::Reference&>(collection.at(i)).target());
    }
    return targets;
  }

 private:
  TestPartition partition_;
  std::size_t listed_ = 0;
};

TEST(ReferenceImport, ReadsAPointerAsAReferenceByIdentifier) {
  const Imported imported(R"(<p:Strong><p:Leaf_REF types:TargetInstance="{7}"/></p:Strong>
                             <p:Weak><s377m:Dangling_REF types:TargetInstance="{8}"/></p:Weak>)",
                          R"(<p:Leaf rp210:InstanceUID="{7}"/>)");
  EXPECT_TRUE(holds(imported.value("Strong"), Types::StrongReference(imported.identifier(1))));
  const auto& weak = dynamic_cast<const Types::WeakReference&>(*imported.value("Weak"));
  EXPECT_NE(weak.target(), uid(8));
  EXPECT_EQ(imported.sets(), 2u);
}

TEST(ReferenceImport, ReadsAnotherElementAsANestedSet) {
  const Imported imported(R"(<p:Strong><p:Leaf rp210:InstanceUID="{7}"><p:Number>5</p:Number></p:Leaf></p:Strong>)");
  ASSERT_EQ(imported.sets(), 2u);
  EXPECT_EQ(imported.listed(), 1u);
  EXPECT_TRUE(holds(imported.value("Strong"), Types::StrongReference(imported.identifier(1))));
  EXPECT_TRUE(holds(valueOf(imported.set(1), "Number"), Types::Int32(5)));
}

TEST(ReferenceImport, RefersToANestedSetWithoutIdentifierToo) {
  const Imported imported("<p:Weak><Leaf/></p:Weak>");
  EXPECT_TRUE(holds(imported.value("Weak"), Types::WeakReference(imported.identifier(1))));
}

TEST(ReferenceImport, LooksAtTheFirstElementOnly) {
  const Imported imported(
      "<p:Strong>text<!-- --><p:Leaf/><p:Leaf_REF types:TargetInstance=\"{7}\"/><p:Leaf/></p:Strong>");
  EXPECT_EQ(imported.sets(), 2u);
  EXPECT_TRUE(holds(imported.value("Strong"), Types::StrongReference(imported.identifier(1))));
}

TEST(ReferenceImport, KnowsAPointerByItsNameContainingREF) {
  const auto isPointer = [](const std::string& name) {
    return Imported("<p:Weak><" + name + " types:TargetInstance='x'/></p:Weak>").isPresent("Weak");
  };
  EXPECT_TRUE(isPointer("p:Leaf_REF"));
  EXPECT_TRUE(isPointer("_REF"));
  EXPECT_TRUE(isPointer("p:A_REFERENCE"));
  EXPECT_FALSE(isPointer("p:Leaf_ref"));
  EXPECT_FALSE(isPointer("p:REF"));
  EXPECT_FALSE(isPointer("p:Unheard"));
}

TEST(ReferenceImport, LooksForREFInTheLocalNameOfASinglePointerAndTheWholeNameOfAnItem) {
  const std::string declared = " xmlns:a_REF='urn:a' types:TargetInstance='x'";
  const Imported single("<p:Weak><a_REF:Leaf" + declared + "/></p:Weak>");
  EXPECT_EQ(single.sets(), 2u);
  const Imported item("<p:Weaks><a_REF:Leaf" + declared + "/></p:Weaks>");
  EXPECT_EQ(item.sets(), 1u);
  EXPECT_EQ(item.targets("Weaks").size(), 1u);
}

TEST(ReferenceImport, LeavesAReferenceUnsetThatLeadsToNoSet) {
  for (const auto* content : {"", " ", "text", "<p:Unheard/>", "<p:Leaf_REF/>", "<!-- -->", "<p:Preface_/>"}) {
    const Imported imported(std::string("<p:Strong>") + content + "</p:Strong><p:Weak>" + content + "</p:Weak>");
    EXPECT_FALSE(imported.isPresent("Strong")) << content;
    EXPECT_FALSE(imported.isPresent("Weak")) << content;
    EXPECT_EQ(imported.sets(), 1u) << content;
  }
}

TEST(ReferenceImport, ReadsTheTargetFromAnAttributeOfAnyName) {
  const Imported imported("<p:Weak><p:Leaf_REF any='{7}'/></p:Weak>", "<p:Leaf rp210:InstanceUID='{7}'/>");
  EXPECT_TRUE(holds(imported.value("Weak"), Types::WeakReference(imported.identifier(1))));
}

TEST(ReferenceImport, MapsOneIdentifierToOneIdentifierEverywhere) {
  const Imported imported(R"(<p:Strong><p:Leaf_REF types:TargetInstance="{8}"/></p:Strong>
                             <p:Weak><p:Leaf_REF types:TargetInstance="{8}"/></p:Weak>
                             <p:Weaks><p:Leaf_REF types:TargetInstance="{8}"/><p:Leaf_REF types:TargetInstance="{9}"/>
                             </p:Weaks>)");
  const auto target = dynamic_cast<const Types::Reference&>(*imported.value("Weak")).target();
  EXPECT_TRUE(holds(imported.value("Strong"), Types::StrongReference(target)));
  ASSERT_EQ(imported.targets("Weaks").size(), 2u);
  EXPECT_EQ(imported.targets("Weaks")[0], target);
  EXPECT_NE(imported.targets("Weaks")[1], target);
  EXPECT_NE(target, uid(8));
}

TEST(ReferenceImport, GivesANestedSetTheIdentifierThatAReferenceReserved) {
  const Imported imported(R"(<p:Weaks><p:Leaf_REF types:TargetInstance="{8}"/></p:Weaks>)",
                          R"(<p:Preface><p:Strong><p:Leaf rp210:InstanceUID="{8}"/></p:Strong></p:Preface>)");
  EXPECT_EQ(imported.targets("Weaks").front(), imported.identifier(2));
}

TEST(ReferenceImport, MixesPointersAndNestedSetsInOneCollection) {
  for (const std::string symbol : {"Strongs", "StrongBatch", "Weaks", "WeakArray"}) {
    const Imported imported("<p:" + symbol + R"(><p:Leaf_REF types:TargetInstance="{7}"/><p:Leaf/>
                              <p:Unheard/><p:Leaf_REF/><p:Leaf rp210:InstanceUID="{8}"/>
                              <p:Leaf_REF types:TargetInstance="{8}"/></p:)" +
                                symbol + ">",
                            R"(<p:Leaf rp210:InstanceUID="{7}"/>)");
    EXPECT_EQ(imported.targets(symbol.c_str()),
              (std::vector<Types::UUID>{imported.identifier(3), imported.identifier(1), imported.identifier(2),
                                        imported.identifier(2)}));
    EXPECT_EQ(imported.value(symbol.c_str())->serializedSize(), 16u);
  }
}

TEST(ReferenceImport, MakesReferencesOfTheCollectionsKind) {
  const auto kind = [](const std::string& symbol) {
    const Imported imported("<p:" + symbol + "><p:Leaf_REF types:TargetInstance='x'/></p:" + symbol + ">");
    return dynamic_cast<const Types::Collection&>(*imported.value(symbol.c_str())).at(0).identifier();
  };
  EXPECT_EQ(kind("Strongs"), kStrongReference);
  EXPECT_EQ(kind("StrongBatch"), kStrongReference);
  EXPECT_EQ(kind("Weaks"), kWeakReference);
  EXPECT_EQ(kind("WeakArray"), kWeakReference);
}

TEST(ReferenceImport, ReadsNoItemsAsAnEmptyCollection) {
  for (const std::string symbol : {"Strongs", "StrongBatch", "Weaks", "WeakArray"}) {
    for (const auto* content : {"", " ", "text", "<!-- -->"}) {
      const Imported imported("<p:" + symbol + ">" + content + "</p:" + symbol + ">");
      ASSERT_TRUE(imported.isPresent(symbol.c_str())) << symbol << content;
      ASSERT_NE(imported.value(symbol.c_str()), nullptr);
      EXPECT_TRUE(imported.targets(symbol.c_str()).empty());
      EXPECT_EQ(imported.value(symbol.c_str())->serializedSize(), 16u);
    }
  }
}

TEST(ReferenceImport, LeavesACollectionUnsetOfWhichNoItemLeadsAnywhere) {
  const Imported imported("<p:Strongs><p:Unheard/><p:Leaf_REF/></p:Strongs>");
  EXPECT_FALSE(imported.isPresent("Strongs"));
}

TEST(ReferenceImport, NestsAsDeeplyAsTheDocument) {
  std::string text = "<p:Leaf/>";
  for (int i = 0; i < 400; ++i) text = "<p:Strong><p:Preface>" + text + "</p:Preface></p:Strong>";
  const Imported imported(text);
  EXPECT_EQ(imported.sets(), 401u);
  for (std::size_t i = 0; i < 400; ++i) {
    EXPECT_TRUE(holds(valueOf(imported.set(i), "Strong"), Types::StrongReference(imported.identifier(i + 1))));
  }
}

TEST(ReferenceImport, ReadsReferencesInACircle) {
  const Imported imported(R"(<p:Strong><p:Preface rp210:InstanceUID="{2}">
                               <p:Strong><p:Preface_REF types:TargetInstance="{3}"/></p:Strong></p:Preface></p:Strong>)",
                          R"(<p:Preface rp210:InstanceUID="{3}">
                               <p:Strong><p:Preface_REF types:TargetInstance="{2}"/></p:Strong>
                               <p:Weak><p:Preface_REF types:TargetInstance="{3}"/></p:Weak></p:Preface>)");
  EXPECT_TRUE(holds(valueOf(imported.set(1), "Strong"), Types::StrongReference(imported.identifier(2))));
  EXPECT_TRUE(holds(valueOf(imported.set(2), "Strong"), Types::StrongReference(imported.identifier(1))));
  EXPECT_TRUE(holds(valueOf(imported.set(2), "Weak"), Types::WeakReference(imported.identifier(2))));
}

}  // namespace
}  // namespace Vantor::XML2Partition
