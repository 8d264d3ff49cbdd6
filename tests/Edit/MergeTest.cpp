#include "Edit/Merge.h"

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

namespace Vantor::Edit {
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

/// One file, read twice: as it is, and as the edited state.
class MergeTest : public testing::Test {
 protected:
  /// Merges into a base that is ours itself.
  void merge(bool mayRemove = true) { mergeInto(*ours_, mayRemove); }
  void mergeInto(const PartitionMetadata& base, bool mayRemove = true) {
    report_ = Edit::merge(*ours_, base, {*theirs_, {}, mayRemove}, Scope(base));
  }
  std::vector<PartitionDifference> differences() const { return comparePartitions(*readSample(), *ours_).differences; }
  bool isUnchanged() const { return written(*ours_) == written(*readSample()); }

  std::unique_ptr<PartitionMetadata> ours_ = readSample();
  std::unique_ptr<PartitionMetadata> theirs_ = readSample();
  MergeReport report_;
};

TEST(MergeOfSamples, GivesTheSameBytesWhenNothingWasEdited) {
  for (const auto& file : sampleFiles()) {
    const auto ours = readSample(file), base = readSample(file), theirs = readSample(file);
    const Bytes before = written(*ours);
    for (const auto* one : {ours.get(), base.get()}) {
      const auto report = merge(*ours, *one, {*theirs}, Scope(*one));
      EXPECT_TRUE(report.kept.empty() && report.rejected.empty()) << file;
      EXPECT_EQ(written(*ours), before) << file;
    }
  }
}

TEST_F(MergeTest, ChangesOnePropertyAndKeepsItsTagAndPlace) {
  setText(*theirs_, "Identification", "ApplicationName", u"Ed");
  const auto order = setNamed(*ours_, "Identification").inWritingOrder();
  merge();
  EXPECT_EQ(differences().size(), 1u);
  EXPECT_EQ(propertyNamed(setNamed(*ours_, "Identification"), "ApplicationName").localTag(), 0x3c02);
  EXPECT_EQ(setNamed(*ours_, "Identification").inWritingOrder(), order);
}

TEST_F(MergeTest, KeepsFinalNULsThatTheEditLacks) {
  const Bytes octets = hex("00610000");
  auto& supplier = propertyNamed(setNamed(*ours_, "Identification"), "ApplicationSupplierName");
  setDecodedValue(supplier,
                  Types::Factories::fromBytes(Types::Identifiers::kUTF16String, octets.data(), octets.size()));
  setText(*theirs_, "Identification", "ApplicationSupplierName", u"a");
  setText(*theirs_, "Identification", "ApplicationName", u"Ed");
  merge();
  const auto* kept = propertyNamed(setNamed(*ours_, "Identification"), "ApplicationSupplierName").wireValue();
  EXPECT_EQ(Bytes(kept->rawBuffer(), kept->rawBuffer() + kept->encodedSize()), octets);
  EXPECT_EQ(differences().size(), 2u);
}

TEST_F(MergeTest, GivesAChangedTextTheFinalNULsOfTheOneBefore) {
  const Bytes octets = hex("00610000");
  auto& supplier = propertyNamed(setNamed(*ours_, "Identification"), "ApplicationSupplierName");
  setDecodedValue(supplier,
                  Types::Factories::fromBytes(Types::Identifiers::kUTF16String, octets.data(), octets.size()));
  setText(*theirs_, "Identification", "ApplicationSupplierName", u"b");
  merge();
  const auto* changed = supplier.wireValue();
  EXPECT_EQ(Bytes(changed->rawBuffer(), changed->rawBuffer() + changed->encodedSize()), hex("00620000"));
}

TEST_F(MergeTest, AddsAndRemovesProperties) {
  auto& identification = setNamed(*theirs_, "Identification");
  identification.remove(propertyNamed(identification, "ApplicationName"));
  auto& preface = setNamed(*theirs_, "Preface");
  dynamic_cast<SimpleElement&>(propertyNamed(preface, "IsRIPPresent"))
      .set(std::make_unique<Types::Boolean>(true), true);
  merge();
  EXPECT_FALSE(setNamed(*ours_, "Identification").has("ApplicationName"));
  EXPECT_TRUE(setNamed(*ours_, "Preface").get<Types::Boolean>("IsRIPPresent").value());
  EXPECT_EQ(differences().size(), 2u);
}

TEST_F(MergeTest, RemovesNothingWhenItMayNot) {
  auto& identification = setNamed(*theirs_, "Identification");
  identification.remove(propertyNamed(identification, "ApplicationName"));
  merge(false);
  EXPECT_TRUE(isUnchanged());
  ASSERT_EQ(report_.kept.size(), 1u);
  EXPECT_EQ(report_.kept[0].set, "Identification " + uidOf(identification));
  EXPECT_EQ(report_.kept[0].property, "ApplicationName");
}

TEST_F(MergeTest, RemovesNoReferencesWhenItMayNot) {
  removeReference(*theirs_, "ContentStorage", "Packages", 0);
  merge(false);
  EXPECT_TRUE(isUnchanged());
  ASSERT_EQ(report_.kept.size(), 1u);
  EXPECT_EQ(report_.kept[0].set, "ContentStorage " + uidOf(setNamed(*theirs_, "ContentStorage")));
  EXPECT_EQ(report_.kept[0].property, "Packages");
}

TEST_F(MergeTest, LeavesWhatCouldNotBeRead) {
  setText(*theirs_, "Identification", "ApplicationName", u"Ed");
  Theirs theirs{*theirs_};
  theirs.unread.emplace(*setNamed(*ours_, "Identification").instanceUID(), "ApplicationName");
  Edit::merge(*ours_, *ours_, theirs, Scope(*ours_));
  EXPECT_TRUE(isUnchanged());
}

TEST_F(MergeTest, AddsNewSetsAtTheEnd) {
  auto& added = theirs_->createMetadataSet("NetworkLocator");
  added.set("URL", u"a");
  const auto count = ours_->sets().size();
  merge();
  ASSERT_EQ(ours_->sets().size(), count + 1);
  EXPECT_EQ(ours_->sets().back()->name(), "NetworkLocator");
  EXPECT_EQ(*ours_->sets().back()->instanceUID(), *added.instanceUID());
  EXPECT_EQ(ours_->sets().back()->text("URL"), u"a");
}

TEST_F(MergeTest, RemovesSetsThatTheEditLacks) {
  removeReference(*theirs_, "Preface", "IdentificationList", 0);
  theirs_->remove(setNamed(*theirs_, "Identification"));
  const auto count = ours_->sets().size();
  merge();
  EXPECT_EQ(ours_->sets().size(), count - 1);
  EXPECT_EQ(ours_->tryFind("Identification"), nullptr);
}

TEST_F(MergeTest, KeepsSetsThatTheScopeDoesNotShow) {
  const auto& timecode = *ours_->find("Timecode[1]").instanceUID();
  DocumentForm form;
  form.start = timecode;
  for (MetadataSet* set : std::vector<MetadataSet*>(theirs_->sets())) {
    if (!(*set->instanceUID() == timecode)) theirs_->remove(*set);
  }
  theirs_->find("Timecode[1]").set("StartTimecode", 90000);
  Edit::merge(*ours_, *ours_, {*theirs_}, Scope(*ours_, *theirs_, form));
  EXPECT_EQ(differences().size(), 1u);
}

TEST_F(MergeTest, RefusesToRemoveATargetOfASetThatTheScopeDoesNotShow) {
  const auto& sequence = *ours_->findByInstanceUID(*ours_->find("Sequence[1]").instanceUID()).front();
  DocumentForm form;
  form.start = *sequence.instanceUID();
  for (MetadataSet* set : std::vector<MetadataSet*>(theirs_->sets())) {
    if (set->name() != "Identification") theirs_->remove(*set);
  }
  const Bytes before = written(*ours_);
  EXPECT_THAT([&] { Edit::merge(*ours_, *ours_, {*theirs_}, Scope(*ours_, *theirs_, form)); },
              testing::ThrowsMessage<Exceptions::InvalidFormat>(
                  testing::AllOf(testing::StartsWith("the document omits the "),
                                 testing::HasSubstr(" refers to it, which the document does not show"))));
  EXPECT_EQ(written(*ours_), before);
}

TEST_F(MergeTest, KeepsReferencesThatTheLetterOfTheNestedFormHides) {
  const auto packages = [](PartitionMetadata& partition) {
    std::vector<Types::UUID> targets;
    propertyNamed(setNamed(partition, "ContentStorage"), "Packages").appendTargets({true}, targets);
    return targets;
  };
  const auto all = packages(*ours_);
  ASSERT_EQ(all.size(), 2u);
  DocumentForm form;
  form.isAssumed = true;
  removeReference(*theirs_, "ContentStorage", "Packages", 0);
  Edit::merge(*ours_, *ours_, {*theirs_}, Scope(*ours_, *theirs_, form));
  EXPECT_EQ(packages(*ours_), all) << "their set is elsewhere in the document";
  form.isAssumed = false;
  Edit::merge(*ours_, *ours_, {*theirs_}, Scope(*ours_, *theirs_, form));
  EXPECT_EQ(packages(*ours_), std::vector<Types::UUID>{all[1]}) << "every reference is shown";
}

TEST_F(MergeTest, ReplacesASingleReferenceAlsoWhereTheFormMayHideIt) {
  DocumentForm form;
  form.isAssumed = true;
  auto& reference = propertyNamed(setNamed(*theirs_, "Preface"), "ContentStorageObject");
  dynamic_cast<ReferenceElement&>(reference).set(&setNamed(*theirs_, "Preface"));
  Edit::merge(*ours_, *ours_, {*theirs_}, Scope(*ours_, *theirs_, form));
  EXPECT_EQ(differences().size(), 1u);
}

/// Gives a second set of a partition the InstanceUID of another.
void shareInstanceUID(PartitionMetadata& partition) {
  auto& copy = *partition.createMetadataSet(setNamed(partition, "Identification").key());
  dynamic_cast<SimpleElement&>(propertyNamed(copy, "InstanceID"))
      .set(std::make_unique<Types::UUID>(*setNamed(partition, "Identification").instanceUID()), true);
}

TEST_F(MergeTest, RejectsAnEditOfASetThatSharesItsInstanceUID) {
  shareInstanceUID(*ours_);
  const Bytes before = written(*ours_);
  merge();
  EXPECT_TRUE(report_.rejected.empty());
  setText(*theirs_, "Identification", "ApplicationName", u"Ed");
  merge();
  ASSERT_EQ(report_.rejected.size(), 1u);
  EXPECT_EQ(report_.rejected[0].set, "Identification " + uidOf(setNamed(*ours_, "Identification")));
  EXPECT_EQ(report_.rejected[0].reason, RejectedEdit::Reason::kSharedInstanceUID);
  EXPECT_EQ(written(*ours_), before);
}

TEST_F(MergeTest, RejectsAnEditOfASetWithoutInstanceUID) {
  for (auto* partition : {ours_.get(), theirs_.get()}) {
    auto& identification = setNamed(*partition, "Identification");
    identification.remove(propertyNamed(identification, "InstanceID"));
  }
  const Bytes before = written(*ours_);
  merge();
  EXPECT_TRUE(report_.rejected.empty());
  setText(*theirs_, "Identification", "ApplicationName", u"Ed");
  merge();
  ASSERT_EQ(report_.rejected.size(), 1u);
  EXPECT_EQ(report_.rejected[0].set, "Identification");
  EXPECT_EQ(report_.rejected[0].reason, RejectedEdit::Reason::kNoInstanceUID);
  EXPECT_EQ(written(*ours_), before);
}

TEST_F(MergeTest, RejectsASetOfAnotherKind) {
  const auto instanceUID = *ours_->find("Identification").instanceUID();
  theirs_->remove(theirs_->find("Identification"));
  theirs_->createMetadataSet("NetworkLocator").set("InstanceID", instanceUID);
  merge();
  ASSERT_EQ(report_.rejected.size(), 1u);
  EXPECT_EQ(report_.rejected[0].reason, RejectedEdit::Reason::kOtherKind);
  EXPECT_EQ(report_.rejected[0].theirs, "NetworkLocator");
  EXPECT_TRUE(isUnchanged());
}

TEST_F(MergeTest, GivesNoPropertyATagThatADarkSetHas) {
  constexpr uint16 kHighest = 0xffff;  // the first dynamic tag that is given away
  const KLV::Key key(hex("060E2B34025301010F00000000000001").data());
  readSet(*theirs_, key, Items().instanceUID(7).item(kHighest, "01"));
  ASSERT_EQ(ours_->partitionDictionary().tryFind(kHighest), nullptr);
  theirs_->find("Preface").set("IsRIPPresent", true);
  const auto rows = ours_->partitionDictionary().primerEntries().size();
  merge();
  written(*ours_);
  EXPECT_EQ(ours_->partitionDictionary().tryFind(kHighest), nullptr);
  EXPECT_EQ(ours_->partitionDictionary().primerEntries().size(), rows + 1);
}

TEST_F(MergeTest, MergesIntoAPartitionThatRepeatsTheBaseInItsOwnOrder) {
  const auto base = readSample();
  auto entries = ours_->releaseEntries();
  for (auto at = entries.rbegin(); at != entries.rend(); ++at) {
    ours_->addMetadataSet(std::move(std::get<auto_ptr<MetadataSet>>(*at)));
  }
  setText(*theirs_, "Identification", "ApplicationName", u"Ed");
  const std::string last = ours_->sets().back()->name();
  mergeInto(*base);
  EXPECT_EQ(differences().size(), 1u);
  EXPECT_EQ(ours_->sets().back()->name(), last);
}

TEST_F(MergeTest, FindsAPropertyByItsTagThatTheEditHasAsAnUnknownOne) {
  const auto base = readSample();
  const auto makeUnknown = [](PartitionMetadata& partition, const std::string& octets) {
    auto& identification = setNamed(partition, "Identification");
    identification.remove(propertyNamed(identification, "ApplicationName"));
    const Bytes value = hex(octets);
    setDecodedValue(identification.createInvalidElement(
                        std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(uint16{0x3c02}))),
                    Types::Factories::fromBytes(Types::Identifiers::kUnknown, value.data(), value.size()));
  };
  makeUnknown(*base, "0041");
  makeUnknown(*theirs_, "0042");
  mergeInto(*base);
  EXPECT_EQ(ours_->find("Identification").text("ApplicationName"), u"B");
  makeUnknown(*theirs_, "42");
  EXPECT_THAT([&] { mergeInto(*base); }, testing::ThrowsMessage<Exceptions::InvalidFormat>(
                                             testing::HasSubstr(": ApplicationName cannot have a value of 1 octets")));
}

TEST_F(MergeTest, ReplacesDarkKLVsInTheirPlaceByKey) {
  const KLV::Key key(hex("060E2B34010101010F00000000000001").data());
  const auto dark = [&key](const std::string& octets) {
    return std::make_unique<DarkMetadataSet>(key, uint8{4}, KLV::Value(hex(octets)));
  };
  ours_->addDarkMetadataSet(dark("0102"));
  shareInstanceUID(*ours_);
  theirs_->addDarkMetadataSet(dark("0304"));
  merge();
  ASSERT_EQ(ours_->darkEnd() - ours_->darkBegin(), 1);
  EXPECT_EQ((*ours_->darkBegin())->value().rawBuffer()[0], 0x03);
  EXPECT_TRUE(std::holds_alternative<auto_ptr<MetadataSet>>(ours_->entries().back()));
}

TEST_F(MergeTest, EditsLengthFieldsAlsoWhereOursHasOthersThanTheBase) {
  const auto base = readSample();
  const KLV::Key key(hex("060E2B34010101010F00000000000001").data());
  const auto add = [&key](PartitionMetadata& partition, std::initializer_list<uint8> lengthOctets) {
    for (const uint8 octets : lengthOctets) {
      partition.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, octets, KLV::Value(hex("0102"))));
    }
  };
  add(*ours_, {3, 5});
  add(*base, {3, 4});
  add(*theirs_, {9, 3});
  mergeInto(*base);
  std::vector<int> octets;
  for (auto at = ours_->darkBegin(); at != ours_->darkEnd(); ++at) octets.push_back((*at)->berLength());
  EXPECT_EQ(octets, (std::vector<int>{3, 9}));
}

}  // namespace
}  // namespace Vantor::Edit
