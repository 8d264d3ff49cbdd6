#include "Edit/PartitionMerge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Types.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/SampleFiles.h"

namespace Vantor {
namespace {

constexpr const char* kSample = VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf";

std::unique_ptr<PartitionMetadata> readSample(const Path& path = kSample) {
  return MXF::readHeaderMetadata(path, builtInDictionary());
}

Bytes written(PartitionMetadata& partition) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(partition, MXF::SetOrder::kFile, sink);
  return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

MetadataSet& setNamed(const PartitionMetadata& partition, const std::string& symbol) {
  for (auto* set : partition.sets()) {
    if (set->name() == symbol) return *set;
  }
  throw std::out_of_range(symbol);
}

Element& propertyNamed(MetadataSet& set, const std::string& symbol) {
  for (const auto& attribute : set.definition()->attributes()) {
    if (attribute.metaElement()->symbol() == symbol) return set.createElement(attribute);
  }
  throw std::out_of_range(symbol);
}

std::string uidOf(const MetadataSet& set) { return Utils::wstringToString(set.instanceUID()->toString(kDottedForm)); }

void setText(PartitionMetadata& partition, const std::string& set, const std::string& property, const wstring& text) {
  dynamic_cast<SimpleElement&>(propertyNamed(setNamed(partition, set), property))
      .set(std::make_unique<Types::UTF16String>(text), true);
}

/// Makes a list of references shorter.
void removeReference(PartitionMetadata& partition, const std::string& set, const std::string& property, uint32 index) {
  dynamic_cast<CollectionElement&>(propertyNamed(setNamed(partition, set), property)).removeAt(index);
}

/// One file, read three times: as it is, and as what two documents of it would give.
class PartitionMerge : public testing::Test {
 protected:
  auto_ptr<PartitionMetadata> merge(const MergeRules& rules = {}) { return mergeDocument({after_.get()}, rules); }
  auto_ptr<PartitionMetadata> mergeDocument(const DocumentContent& edited, const MergeRules& rules = {}) {
    const DocumentContent before{before_.get()};
    return mergeEdits(*original_, {before, before}, edited, rules, &summary_);
  }
  std::size_t differences(const PartitionMetadata& merged) const {
    return comparePartitions(*original_, merged).differences.size();
  }

  std::unique_ptr<PartitionMetadata> original_ = readSample();
  std::unique_ptr<PartitionMetadata> before_ = readSample();
  std::unique_ptr<PartitionMetadata> after_ = readSample();
  MergeSummary summary_;
};

TEST(PartitionMergeOfSamples, GivesTheSameBytesWhenNothingWasEdited) {
  for (const auto& file : sampleFiles()) {
    const auto original = readSample(file);
    const auto before = readSample(file);
    const auto after = readSample(file);
    MergeSummary summary;
    const DocumentContent unedited{before.get()};
    const auto merged = mergeEdits(*original, {unedited, unedited}, {after.get()}, {}, &summary);
    EXPECT_EQ(countEdits(unedited, {after.get()}), 0u) << file;
    EXPECT_TRUE(summary.isUnchanged()) << file;
    EXPECT_EQ(written(*merged), written(*original)) << file;
  }
}

TEST_F(PartitionMerge, ChangesOnePropertyAndKeepsItsTag) {
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  const auto merged = merge();
  EXPECT_EQ(summary_.changedSets, 1u);
  EXPECT_EQ(summary_.changedProperties, 1u);
  EXPECT_EQ(differences(*merged), 1u);
  EXPECT_EQ(propertyNamed(setNamed(*merged, "Identification"), "ApplicationName").localTag(), 0x3c02);
}

TEST_F(PartitionMerge, KeepsWhatTheDocumentCannotSayOfAnEditedSet) {
  // A NUL behind the text, which no document tells.
  const Bytes octets = hex("00610000");
  auto& supplier = propertyNamed(setNamed(*original_, "Identification"), "ApplicationSupplierName");
  setDecodedValue(supplier,
                  Types::Factories::fromBytes(Types::Identifiers::kUTF16String, octets.data(), octets.size()));
  setText(*before_, "Identification", "ApplicationSupplierName", u"a");
  setText(*after_, "Identification", "ApplicationSupplierName", u"a");
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  const auto merged = merge();
  const auto* kept = propertyNamed(setNamed(*merged, "Identification"), "ApplicationSupplierName").wireValue();
  EXPECT_EQ(Bytes(kept->rawBuffer(), kept->rawBuffer() + kept->encodedSize()), octets);
  EXPECT_EQ(differences(*merged), 1u);
}

TEST_F(PartitionMerge, AddsAndTakesOutProperties) {
  auto& identification = setNamed(*after_, "Identification");
  identification.remove(propertyNamed(identification, "ApplicationName"));
  setText(*after_, "Identification", "ApplicationPlatform", u"Acme");
  setText(*before_, "Identification", "ApplicationPlatform", u"Other");
  const auto merged = merge();
  EXPECT_EQ(summary_.changedProperties, 2u);
  std::vector<std::string> present;
  for (const auto* property : setNamed(*merged, "Identification").inDefinitionOrder()) {
    present.push_back(property->metaAttribute().metaElement()->symbol());
  }
  EXPECT_THAT(present, testing::Not(testing::Contains("ApplicationName")));
  EXPECT_THAT(present, testing::Contains("ApplicationPlatform"));
}

TEST_F(PartitionMerge, TakesNothingOutWhenItMayNot) {
  auto& identification = setNamed(*after_, "Identification");
  identification.remove(propertyNamed(identification, "ApplicationName"));
  const auto merged = merge({false});
  EXPECT_TRUE(summary_.isUnchanged());
  EXPECT_EQ(written(*merged), written(*original_));
  ASSERT_EQ(summary_.kept.size(), 1u);
  EXPECT_EQ(summary_.kept[0].set, "Identification " + uidOf(identification));
  EXPECT_EQ(summary_.kept[0].property, "ApplicationName");
}

TEST_F(PartitionMerge, TakesNoReferencesOutWhenItMayNot) {
  removeReference(*after_, "ContentStorage", "Packages", 0);
  const auto merged = merge({false});
  EXPECT_TRUE(summary_.isUnchanged());
  EXPECT_EQ(written(*merged), written(*original_));
  ASSERT_EQ(summary_.kept.size(), 1u);
  EXPECT_EQ(summary_.kept[0].set, "ContentStorage " + uidOf(setNamed(*after_, "ContentStorage")));
  EXPECT_EQ(summary_.kept[0].property, "Packages");
}

TEST_F(PartitionMerge, GivesNoPropertyATagThatADarkSetHas) {
  constexpr uint16 kHighest = 0xffff;  // the first dynamic tag that is given away
  const KLV::Key key(hex("060E2B34025301010F00000000000001").data());
  for (auto* partition : {original_.get(), before_.get(), after_.get()}) {
    readSet(*partition, key, Items().instanceUID(7).item(kHighest, "01"));
  }
  ASSERT_EQ(original_->partitionDictionary().tryFind(kHighest), nullptr);
  dynamic_cast<SimpleElement&>(propertyNamed(setNamed(*after_, "Preface"), "IsRIPPresent"))
      .set(std::make_unique<Types::Boolean>(true), true);
  const auto merged = merge();
  written(*merged);
  const auto& tags = merged->partitionDictionary();
  EXPECT_EQ(tags.tryFind(kHighest), nullptr);
  EXPECT_EQ(tags.primerEntries().size(), original_->partitionDictionary().primerEntries().size() + 1);
}

TEST_F(PartitionMerge, LeavesWhatCouldNotBeRead) {
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  DocumentContent edited{after_.get()};
  edited.unread.insert(
      DocumentContent::keyOf(*setNamed(*original_, "Identification").instanceUID(), "ApplicationName"));
  EXPECT_EQ(differences(*mergeDocument(edited)), 0u);
}

TEST_F(PartitionMerge, AddsNewSetsAtTheEndAndTakesMissingOnesOut) {
  auto* added = after_->createMetadataSet(builtInDictionary()->findSetBySymbol("NetworkLocator")->key());
  dynamic_cast<SimpleElement&>(propertyNamed(*added, "URL"))
      .set(std::make_unique<Types::UTF16String>(wstring(u"a")), true);
  const auto merged = merge();
  EXPECT_EQ(summary_.addedSets, 1u);
  ASSERT_EQ(merged->sets().size(), original_->sets().size() + 1);
  EXPECT_EQ(merged->sets().back()->name(), "NetworkLocator");
  EXPECT_EQ(*merged->sets().back()->instanceUID(), *added->instanceUID());
}

/// A partition without the sets of one name.
std::unique_ptr<PartitionMetadata> without(const std::string& name, const PartitionMetadata& original) {
  auto fewer = std::make_unique<PartitionMetadata>(builtInDictionary());
  for (const auto& entry : original.partitionDictionary().primerEntries()) {
    fewer->partitionDictionary().addPrimerEntry(entry);
  }
  for (const auto* set : original.sets()) {
    if (set->name() == name) continue;
    DataIO::Memory::MemoryDataSink sink;
    auto tags = original.partitionDictionary();
    set->serialize(sink, tags);
    const auto head = KLV::Key::kSize + set->berLength();
    fewer->addKLV(set->key(), set->berLength(), sink.rawBuffer() + head, sink.serializedSize() - head, 0);
  }
  return fewer;
}

TEST_F(PartitionMerge, TakesOutSetsThatTheEditedPartitionLacks) {
  for (auto* partition : {before_.get(), after_.get()}) removeReference(*partition, "Preface", "IdentificationList", 0);
  removeReference(*original_, "Preface", "IdentificationList", 0);
  after_ = without("Identification", *after_);
  const auto merged = merge();
  EXPECT_EQ(summary_.removedSets, 1u);
  EXPECT_EQ(summary_.changedSets, 0u);
  EXPECT_EQ(merged->sets().size(), original_->sets().size() - 1);
}

TEST_F(PartitionMerge, KeepsSetsThatTheFormOfTheDocumentLacks) {
  const auto fewer = without("Identification", *original_);
  const DocumentContent shown{fewer.get()}, full{before_.get()};
  const auto merged = mergeEdits(*original_, {shown, full}, shown, {}, &summary_);
  EXPECT_TRUE(summary_.isUnchanged());
  EXPECT_EQ(written(*merged), written(*original_));
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  mergeEdits(*original_, {shown, full}, {after_.get()}, {}, &summary_);
  EXPECT_EQ(summary_.changedSets, 1u) << "the user has brought it in";
  EXPECT_EQ(summary_.changedProperties, 1u);
}

TEST_F(PartitionMerge, PutsReferencesBackThatTheFormOfTheDocumentDoesNotShow) {
  const auto packages = [](PartitionMetadata& partition) {
    std::vector<Types::UUID> targets;
    propertyNamed(setNamed(partition, "ContentStorage"), "Packages").appendTargets({true}, targets);
    return targets;
  };
  const auto all = packages(*original_);
  ASSERT_EQ(all.size(), 2u);
  removeReference(*before_, "ContentStorage", "Packages", 0);
  removeReference(*after_, "ContentStorage", "Packages", 0);
  EXPECT_EQ(packages(*merge()), all);
  EXPECT_TRUE(summary_.isUnchanged());

  removeReference(*after_, "ContentStorage", "Packages", 0);
  EXPECT_EQ(packages(*merge()), std::vector<Types::UUID>{all[0]});
  EXPECT_EQ(summary_.changedProperties, 1u);

  auto& storage = setNamed(*after_, "ContentStorage");
  storage.remove(propertyNamed(storage, "Packages"));
  EXPECT_THAT([&] { merge(); },
              testing::ThrowsMessage<UnclearEdit>(testing::HasSubstr(
                  ": Packages was edited, and refers to sets that the document does not show there")));
}

TEST_F(PartitionMerge, RefusesToReplaceASingleReferenceThatTheDocumentDoesNotShow) {
  for (auto* partition : {before_.get(), after_.get()}) {
    auto& preface = setNamed(*partition, "Preface");
    preface.remove(propertyNamed(preface, "ContentStorageObject"));
  }
  EXPECT_EQ(written(*merge()), written(*original_));
  auto& reference = propertyNamed(setNamed(*after_, "Preface"), "ContentStorageObject");
  dynamic_cast<ReferenceElement&>(reference).set(&setNamed(*after_, "Preface"));
  EXPECT_THAT([&] { merge(); },
              testing::ThrowsMessage<UnclearEdit>(testing::HasSubstr(": ContentStorageObject was edited, and refers")));
  dynamic_cast<ReferenceElement&>(reference).set(&setNamed(*after_, "ContentStorage"));
  EXPECT_EQ(written(*merge()), written(*original_)) << "the same reference is no edit";
}

TEST_F(PartitionMerge, RefusesToTakeOutASetThatAReferenceLeadsToWhichTheDocumentDoesNotShow) {
  for (auto* partition : {before_.get(), after_.get()}) removeReference(*partition, "Preface", "IdentificationList", 0);
  after_ = without("Identification", *after_);
  EXPECT_THAT([&] { merge(); },
              testing::ThrowsMessage<UnclearEdit>(testing::AllOf(
                  testing::StartsWith("the Identification " + uidOf(setNamed(*original_, "Identification")) +
                                      " was taken out, and the Preface "),
                  testing::HasSubstr(" refers to it, which the document does not show there"))));
}

/// Gives a second set of a partition the InstanceUID of another.
void shareInstanceUID(PartitionMetadata& partition) {
  auto& copy = *partition.createMetadataSet(setNamed(partition, "Identification").key());
  dynamic_cast<SimpleElement&>(propertyNamed(copy, "InstanceID"))
      .set(std::make_unique<Types::UUID>(*setNamed(partition, "Identification").instanceUID()), true);
}

TEST_F(PartitionMerge, TellsOfAnEditOfASetThatSharesItsInstanceUID) {
  shareInstanceUID(*original_);
  EXPECT_TRUE(merge() != nullptr && summary_.untaken.empty());
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  const auto merged = merge();
  EXPECT_TRUE(summary_.isUnchanged());
  ASSERT_EQ(summary_.untaken.size(), 1u);
  EXPECT_EQ(summary_.untaken[0].set, "Identification " + uidOf(setNamed(*original_, "Identification")));
  EXPECT_EQ(summary_.untaken[0].reason, "another set has the same InstanceUID");
  EXPECT_EQ(written(*merged), written(*original_));
}

TEST_F(PartitionMerge, TellsOfAnEditOfASetWithoutInstanceUID) {
  auto& identification = setNamed(*original_, "Identification");
  identification.remove(propertyNamed(identification, "InstanceID"));
  const auto unnamed = [](PartitionMetadata& partition) {
    auto& set = setNamed(partition, "Identification");
    dynamic_cast<SimpleElement&>(propertyNamed(set, "InstanceID"))
        .set(std::make_unique<Types::UUID>(Types::Factories::UID::generateUUID()), true);
    removeReference(partition, "Preface", "IdentificationList", 0);
    return DocumentContent{&partition, {&set}};
  };
  removeReference(*original_, "Preface", "IdentificationList", 0);
  const auto before = unnamed(*before_), after = unnamed(*after_);
  mergeEdits(*original_, {before, before}, after, {}, &summary_);
  EXPECT_TRUE(summary_.isUnchanged());
  EXPECT_TRUE(summary_.untaken.empty());
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  mergeEdits(*original_, {before, before}, after, {}, &summary_);
  EXPECT_TRUE(summary_.isUnchanged());
  ASSERT_EQ(summary_.untaken.size(), 1u);
  EXPECT_EQ(summary_.untaken[0].set, "Identification");
  EXPECT_EQ(summary_.untaken[0].reason, "it has no InstanceUID");
}

TEST_F(PartitionMerge, FindsAPropertyByItsTagThatTheDocumentHasAsAnUnknownOne) {
  const auto makeUnknown = [](PartitionMetadata& partition, const std::string& octets) {
    auto& identification = setNamed(partition, "Identification");
    identification.remove(propertyNamed(identification, "ApplicationName"));
    const Bytes value = hex(octets);
    setDecodedValue(identification.createInvalidElement(
                        std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(uint16{0x3c02}))),
                    Types::Factories::fromBytes(Types::Identifiers::kUnknown, value.data(), value.size()));
  };
  makeUnknown(*before_, "0041");
  makeUnknown(*after_, "0042");
  const auto merged = merge();
  EXPECT_EQ(summary_.changedProperties, 1u);
  auto& identification = setNamed(*merged, "Identification");
  EXPECT_EQ(identification.inDefinitionOrder().size(),
            setNamed(*original_, "Identification").inDefinitionOrder().size());
  EXPECT_EQ(propertyNamed(identification, "ApplicationName").wireValue()->encodedSize(), 2u);
  EXPECT_EQ(propertyNamed(identification, "ApplicationName").wireValue()->rawBuffer()[1], 0x42);
}

TEST_F(PartitionMerge, CountsTheEditsOfADocument) {
  setText(*after_, "Identification", "ApplicationName", u"Ed");
  setText(*after_, "Identification", "ApplicationPlatform", u"Acme");
  EXPECT_EQ(countEdits({before_.get()}, {after_.get()}), 2u);
  const auto fewer = without("Sequence", *after_);
  EXPECT_EQ(countEdits({before_.get()}, {fewer.get()}), 2u + original_->sets().size() - fewer->sets().size());
  EXPECT_EQ(countEdits({fewer.get()}, {after_.get()}), original_->sets().size() - fewer->sets().size());
}

TEST_F(PartitionMerge, ReplacesDarkKLVsByKey) {
  const KLV::Key key(hex("060E2B34010101010F00000000000001").data());
  const auto dark = [&key](const std::string& octets) {
    return std::make_unique<DarkMetadataSet>(key, uint8{4}, KLV::Value(hex(octets)));
  };
  original_->addDarkMetadataSet(dark("0102"));
  before_->addDarkMetadataSet(dark("0102"));
  after_->addDarkMetadataSet(dark("0304"));
  const auto merged = merge();
  EXPECT_EQ(summary_.changedSets, 1u);
  ASSERT_EQ(merged->darkEnd() - merged->darkBegin(), 1);
  EXPECT_EQ((*merged->darkBegin())->value().rawBuffer()[0], 0x03);
}

TEST_F(PartitionMerge, EditsLengthFieldsAlsoWhereThePartitionHasOthersThanTheDocument) {
  const KLV::Key key(hex("060E2B34010101010F00000000000001").data());
  const auto add = [&key](PartitionMetadata& partition, std::initializer_list<uint8> lengthOctets) {
    for (const uint8 octets : lengthOctets) {
      partition.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, octets, KLV::Value(hex("0102"))));
    }
  };
  const auto mergedOctets = [this] {
    std::vector<int> octets;
    const auto merged = merge();
    for (auto at = merged->darkBegin(); at != merged->darkEnd(); ++at) octets.push_back((*at)->berLength());
    return octets;
  };
  add(*original_, {3, 5});
  add(*before_, {3, 4});
  add(*after_, {9, 3});
  EXPECT_EQ(countEdits({before_.get()}, {after_.get()}), 1u);
  EXPECT_EQ(mergedOctets(), (std::vector<int>{3, 9}));
  EXPECT_EQ(summary_.changedSets, 1u);
  add(*original_, {9});
  add(*before_, {6});
  add(*after_, {0});
  EXPECT_EQ(countEdits({before_.get()}, {after_.get()}), 1u) << "a document need not say it";
  EXPECT_EQ(mergedOctets(), (std::vector<int>{3, 5, 9}));
  EXPECT_TRUE(summary_.isUnchanged()) << "the one that was edited is so already";
}

}  // namespace
}  // namespace Vantor
