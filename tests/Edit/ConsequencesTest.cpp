#include "Edit/Consequences.h"

#include <gmock/gmock.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Types/Types.h"
#include "tests/SampleFiles.h"

namespace Vantor::Edit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Types::UInt32;
using Types::UMID32;

UMID32 packageID(uint8 last) {
  std::array<uint8, 32> octets{0x06, 0x0a, 0x2b, 0x34};
  octets[31] = last;
  return UMID32(octets);
}

Types::Batch numbers(std::initializer_list<uint32> values) {
  Types::Batch batch(4);
  for (const auto value : values) batch.append(std::make_unique<UInt32>(value));
  return batch;
}

/// A material package of two tracks that refer to those of a source package, which has a descriptive track, too.
std::unique_ptr<PartitionMetadata> twoPackages() {
  auto metadata = std::make_unique<PartitionMetadata>(builtInDictionary());
  auto& preface = metadata->createMetadataSet("Preface");
  preface.set("DescriptiveSchemes", Types::Batch(16));
  auto& storage = metadata->createMetadataSet("ContentStorage");
  preface.set("ContentStorageObject", storage);
  for (const bool isMaterial : {true, false}) {
    auto& package = metadata->createMetadataSet(isMaterial ? "MaterialPackage" : "SourcePackage");
    package.set("PackageID", packageID(isMaterial ? 1 : 2));
    storage.append("Packages", package);
    for (const uint32 number : {1u, 2u}) {
      auto& track = metadata->createMetadataSet("TimelineTrack");
      track.set("TrackID", number);
      auto& clip = metadata->createMetadataSet("SourceClip");
      clip.set("SourcePackageID", isMaterial ? packageID(2) : UMID32());
      clip.set("SourceTrackID", isMaterial ? number : 0u);
      track.set("TrackSegment", clip);
      package.append("PackageTracks", track);
    }
  }
  auto& source = metadata->find("SourcePackage");
  auto& descriptor = metadata->createMetadataSet("MPEGVideoDescriptor");
  descriptor.set("LinkedTrackID", 2);
  source.set("EssenceDescription", descriptor);
  auto& essence = metadata->createMetadataSet("EssenceData");
  essence.set("LinkedPackageID", packageID(2));
  storage.append("EssenceDataObjects", essence);
  auto& described = metadata->createMetadataSet("StaticTrack");
  described.set("TrackID", 3);
  auto& marker = metadata->createMetadataSet("DescriptiveMarker");
  marker.set("DescribedTrackIDs", numbers({1, 2}));
  described.set("TrackSegment", marker);
  source.append("PackageTracks", described);
  return metadata;
}

/// The same sets again, to edit.
std::unique_ptr<PartitionMetadata> copyOf(const PartitionMetadata& metadata) {
  auto copy = std::make_unique<PartitionMetadata>(builtInDictionary());
  for (const MetadataSet* set : metadata.sets()) {
    auto& added = *copy->createMetadataSet(set->key());
    for (const Element& property : *set) {
      if (property.wireValue() == nullptr) continue;
      added.set(property.metaAttribute().metaElement()->symbol(), *property.wireValue());
    }
  }
  return copy;
}

class ConsequencesTest : public testing::Test {
 protected:
  ConsequencesTest() : before_(twoPackages()), after_(copyOf(*before_)) {}

  MetadataSet& set(const char* name) const { return after_->find(name); }
  /// The properties that follow, with the names of their sets.
  std::vector<std::string> complete() const {
    std::vector<std::string> names;
    for (const auto& place : completeEdit(*before_, *after_)) {
      names.push_back(place.set.substr(0, place.set.find(' ')) + "." + place.property);
    }
    return names;
  }
  uint32 number(const char* name, const char* property) const { return set(name).get<UInt32>(property).value(); }

  std::unique_ptr<PartitionMetadata> before_, after_;
};

TEST_F(ConsequencesTest, NothingFollowsAnEditOfSomethingElse) {
  EXPECT_THAT(complete(), IsEmpty());
  set("SourcePackage").set("PackageName", u"A name");
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, ReferencesFollowARenamedPackage) {
  set("SourcePackage").set("PackageID", packageID(9));
  EXPECT_THAT(complete(), UnorderedElementsAre("SourceClip.SourcePackageID", "SourceClip.SourcePackageID",
                                               "EssenceData.LinkedPackageID"));
  EXPECT_EQ(set("EssenceData").get<UMID32>("LinkedPackageID"), packageID(9));
  EXPECT_EQ(set("SourceClip[2]").get<UMID32>("SourcePackageID"), packageID(9));
  EXPECT_EQ(set("SourceClip[3]").get<UMID32>("SourcePackageID"), UMID32()) << "the end of the chain";
  EXPECT_EQ(set("MaterialPackage").get<UMID32>("PackageID"), packageID(1));
  EXPECT_THAT(complete(), IsEmpty()) << "it has followed";
}

TEST_F(ConsequencesTest, PackagesThatSwapTheirIdentifiersKeepTheirReferences) {
  set("SourcePackage").set("PackageID", packageID(1));
  set("MaterialPackage").set("PackageID", packageID(2));
  complete();
  EXPECT_EQ(set("SourceClip[1]").get<UMID32>("SourcePackageID"), packageID(1));
}

TEST_F(ConsequencesTest, AReferenceThatTheEditChangedStays) {
  set("SourcePackage").set("PackageID", packageID(9));
  set("SourceClip[1]").set("SourcePackageID", packageID(7));
  EXPECT_THAT(complete(), UnorderedElementsAre("SourceClip.SourcePackageID", "EssenceData.LinkedPackageID"));
  EXPECT_EQ(set("SourceClip[1]").get<UMID32>("SourcePackageID"), packageID(7));
}

TEST_F(ConsequencesTest, NothingFollowsAnIdentifierThatSeveralPackagesHave) {
  before_->find("MaterialPackage").set("PackageID", packageID(2));
  set("SourcePackage").set("PackageID", packageID(9));
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, NothingFollowsAPackageThatHadNoIdentifier) {
  before_->find("SourcePackage").set("PackageID", UMID32());
  set("SourcePackage").set("PackageID", packageID(9));
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, NumbersFollowARenumberedTrackOfTheirPackage) {
  set("TimelineTrack[4]").set("TrackID", 7);
  EXPECT_THAT(complete(), UnorderedElementsAre("SourceClip.SourceTrackID", "MPEGVideoDescriptor.LinkedTrackID",
                                               "DescriptiveMarker.DescribedTrackIDs"));
  EXPECT_EQ(number("SourceClip[1]", "SourceTrackID"), 1u);
  EXPECT_EQ(number("SourceClip[2]", "SourceTrackID"), 7u);
  EXPECT_EQ(number("MPEGVideoDescriptor", "LinkedTrackID"), 7u);
  EXPECT_EQ(set("DescriptiveMarker").text("DescribedTrackIDs"), u"[1, 7]");
  EXPECT_EQ(number("TimelineTrack[2]", "TrackID"), 2u) << "that of the other package";
}

TEST_F(ConsequencesTest, NothingFollowsARenumberedTrackThatNothingMeans) {
  set("TimelineTrack[2]").set("TrackID", 7);
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, NumbersFollowTracksThatSwapTheirs) {
  set("TimelineTrack[3]").set("TrackID", 2);
  set("TimelineTrack[4]").set("TrackID", 1);
  complete();
  EXPECT_EQ(number("SourceClip[1]", "SourceTrackID"), 2u);
  EXPECT_EQ(number("SourceClip[2]", "SourceTrackID"), 1u);
  EXPECT_EQ(set("DescriptiveMarker").text("DescribedTrackIDs"), u"[2, 1]");
}

TEST_F(ConsequencesTest, ASourceClipWithoutPackageMeansATrackOfItsOwn) {
  for (auto* partition : {before_.get(), after_.get()}) {
    auto& clip = partition->find("SourceClip[1]");
    clip.remove("SourcePackageID");
    clip.set("SourceTrackID", 2);
  }
  set("TimelineTrack[2]").set("TrackID", 8);
  EXPECT_THAT(complete(), ElementsAre("SourceClip.SourceTrackID"));
  EXPECT_EQ(number("SourceClip[1]", "SourceTrackID"), 8u);
}

TEST_F(ConsequencesTest, ANumberThatTheEditChangedStays) {
  set("TimelineTrack[4]").set("TrackID", 7);
  set("SourceClip[2]").set("SourceTrackID", 5);
  complete();
  EXPECT_EQ(number("SourceClip[2]", "SourceTrackID"), 5u);
}

TEST_F(ConsequencesTest, NothingFollowsANumberThatSeveralTracksOfThePackageHave) {
  for (auto* partition : {before_.get(), after_.get()}) partition->find("TimelineTrack[3]").set("TrackID", 2);
  set("TimelineTrack[4]").set("TrackID", 7);
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, PackageAndTrackAreFollowedTogether) {
  set("SourcePackage").set("PackageID", packageID(9));
  set("TimelineTrack[4]").set("TrackID", 7);
  complete();
  EXPECT_EQ(number("SourceClip[2]", "SourceTrackID"), 7u);
  EXPECT_EQ(set("SourceClip[2]").get<UMID32>("SourcePackageID"), packageID(9));
}

std::string schemes(const PartitionMetadata& metadata) {
  const auto text = metadata.preface()->text("DescriptiveSchemes");
  return {text.begin(), text.end()};
}

constexpr const char* kAS11Core = "[DM_AS_11_Core]";

TEST_F(ConsequencesTest, TheFirstFrameworkOfASchemeListsItAndTheLastTakesItAway) {
  auto& framework = after_->createMetadataSet("DM_AS_11_Core_Framework");
  EXPECT_THAT(complete(), ElementsAre("Preface.DescriptiveSchemes"));
  EXPECT_EQ(schemes(*after_), kAS11Core);
  before_ = copyOf(*after_);
  after_->createMetadataSet("DM_AS_11_Core_Framework");
  EXPECT_THAT(complete(), IsEmpty()) << "the second one";
  after_->remove(framework);
  EXPECT_THAT(complete(), IsEmpty()) << "one is left";
  after_->remove(after_->find("DM_AS_11_Core_Framework"));
  EXPECT_THAT(complete(), ElementsAre("Preface.DescriptiveSchemes"));
  EXPECT_EQ(schemes(*after_), "[]");
}

TEST_F(ConsequencesTest, TheFirstFrameworkBringsTheListThatAFileLacks) {
  for (auto* partition : {before_.get(), after_.get()}) partition->preface()->remove("DescriptiveSchemes");
  after_->createMetadataSet("DM_AS_11_Core_Framework");
  EXPECT_THAT(complete(), ElementsAre("Preface.DescriptiveSchemes"));
  EXPECT_EQ(schemes(*after_), kAS11Core);
}

TEST_F(ConsequencesTest, AListOfSchemesThatTheEditTookAwayStaysAway) {
  after_->preface()->remove("DescriptiveSchemes");
  after_->createMetadataSet("DM_AS_11_Core_Framework");
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, AListOfSchemesThatTheEditChangedStays) {
  after_->createMetadataSet("DM_AS_11_Core_Framework");
  Types::Batch list(16);
  list.append(std::make_unique<Types::AUID>(std::array<uint8, 16>{0x06, 0x0e}));
  after_->preface()->set("DescriptiveSchemes", list);
  EXPECT_THAT(complete(), IsEmpty());
}

TEST_F(ConsequencesTest, ASchemeThatIsListedByAnotherOfItsLabelsIsNotListedAgain) {
  for (auto* partition : {before_.get(), after_.get()}) {
    Types::Batch list(16);
    list.append(std::make_unique<Types::AUID>(std::array<uint8, 16>{0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,
                                                                    0x0d, 0x01, 0x04, 0x01, 0x01, 0x01, 0x02, 0x00}));
    partition->preface()->set("DescriptiveSchemes", list);
  }
  after_->createMetadataSet("ProductionFramework");
  EXPECT_THAT(complete(), IsEmpty()) << "DMS-1 extended";
}

/// In real files, every UMID that named the package names it again.
TEST(Consequences, NoReferenceToARenamedPackageIsLeftInAnySample) {
  for (const auto& sample : sampleFiles()) {
    const auto before = MXF::readHeaderMetadata(sample, builtInDictionary());
    for (auto& package : before->findAll("SourcePackage")) {
      const auto old = package.get<UMID32>("PackageID");
      const auto after = MXF::readHeaderMetadata(sample, builtInDictionary());
      const_cast<MetadataSet&>(*after->findByInstanceUID(*package.instanceUID()).front())
          .set("PackageID", packageID(9));
      const auto places = completeEdit(*before, *after);
      std::size_t left = 0, had = 0;
      for (const auto* partition : {before.get(), after.get()}) {
        for (const MetadataSet* set : partition->sets()) {
          for (const Element& property : *set) {
            const auto* value = property.wireValue();
            const bool isOld = value != nullptr && value->identifier() == UMID32::kIdentifier &&
                               static_cast<const UMID32&>(*value) == old;
            if (isOld) ++(partition == before.get() ? had : left);
          }
        }
      }
      EXPECT_EQ(left, 0u) << sample << " " << package.fullName();
      EXPECT_EQ(places.size() + 1, had) << sample << " " << package.fullName();
    }
  }
}

}  // namespace
}  // namespace Vantor::Edit
