#include "Summary/Summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Summary/SomeProgramme.h"

namespace Vantor::Summary {
namespace {

using testing::Optional;

TEST(Summary, OfAnEmptyPartitionIsEmpty) {
  const PartitionMetadata metadata(builtInDictionary());
  const auto summary = summaryOf(metadata);
  EXPECT_FALSE(summary.title || summary.start || summary.duration || summary.operationalPattern || summary.modified);
  EXPECT_TRUE(summary.packages.empty() && summary.tracks.empty() && summary.writers.empty());
}

TEST(Summary, TakesTheTitleFromTheMaterialPackage) {
  const SomeProgramme programme;
  const auto summary = summaryOf(programme.metadata);
  EXPECT_THAT(summary.title, Optional(std::string("Programme")));
  ASSERT_EQ(summary.packages.size(), 2u);
  EXPECT_EQ(summary.packages[0].kind, Package::Kind::kMaterial);
  EXPECT_THAT(summary.packages[1].name, Optional(std::string("reel")));
}

TEST(Summary, PrefersThePrimaryOfSeveralMaterialPackages) {
  SomeProgramme programme;
  auto& other = programme.addPackage("MaterialPackage", 3);
  other.set("PackageName", u"Other version");
  EXPECT_THAT(summaryOf(programme.metadata).title, Optional(std::string("Programme")));
  programme.preface.set("PrimaryPackage", other);
  EXPECT_THAT(summaryOf(programme.metadata).title, Optional(std::string("Other version")));
}

TEST(Summary, LeavesOutWhatMeansNothing) {
  SomeProgramme programme;
  programme.material.set("PackageName", u"");
  programme.preface.set("FileLastModified", u"0000-00-00T00:00:00");
  programme.materialClip.set("ComponentLength", -1);
  programme.materialTrack.set("TrackName", u"");
  const auto summary = summaryOf(programme.metadata);
  EXPECT_FALSE(summary.title);
  EXPECT_FALSE(summary.modified);
  EXPECT_FALSE(summary.duration);
  EXPECT_FALSE(summary.tracks.at(0).name);
}

TEST(Summary, TakesTimesFromTheMaterialPackage) {
  SomeProgramme programme;
  programme.addTimecode(programme.material, 900000);
  const auto summary = summaryOf(programme.metadata);
  ASSERT_TRUE(summary.start && summary.duration && summary.frameRate);
  EXPECT_EQ(summary.start->text, "10:00:00:00");
  EXPECT_FALSE(summary.sourceStart);
  EXPECT_EQ(summary.duration->editUnits, 250);
  EXPECT_DOUBLE_EQ(summary.duration->seconds(), 10);
  EXPECT_EQ(summary.frameRate->numerator, 25);
}

TEST(Summary, CountsDropFrameTimecodeWithoutTheFramesThatDoNotExist) {
  SomeProgramme programme;
  programme.addTimecode(programme.material, 1078920, true);
  const auto start = summaryOf(programme.metadata).start;
  ASSERT_TRUE(start);
  EXPECT_EQ(start->text, "10:00:00;00");
  EXPECT_TRUE(start->dropFrame);
}

TEST(Summary, NamesTheTimecodeOfTheSourceWhereItIsAnother) {
  SomeProgramme programme;
  programme.addTimecode(programme.material, 900000);
  auto& source = programme.addTimecode(programme.file, 900000);
  EXPECT_FALSE(summaryOf(programme.metadata).sourceStart);
  source.set("StartTimecode", 25);
  const auto start = summaryOf(programme.metadata).sourceStart;
  ASSERT_TRUE(start);
  EXPECT_EQ(start->text, "00:00:01:00");
}

TEST(Summary, FollowsClipsToTheDescriptorOfTheTrack) {
  SomeProgramme programme;
  auto& all = programme.add("MultipleDescriptor");
  auto& sound = programme.add("WAVEPCMDescriptor");
  auto& picture = programme.add("CDCIDescriptor");
  sound.set("LinkedTrackID", 3);
  picture.set("LinkedTrackID", 2);
  picture.set("StoredWidth", 1920);
  all.append("FileDescriptors", sound);
  all.append("FileDescriptors", picture);
  programme.file.set("EssenceDescription", all);
  const auto summary = summaryOf(programme.metadata);
  ASSERT_EQ(summary.tracks.size(), 1u);
  EXPECT_EQ(summary.tracks[0].kind, Track::Kind::kPicture);
  ASSERT_NE(summary.tracks[0].essence, nullptr);
  EXPECT_EQ(summary.tracks[0].essence->descriptor, "CDCIDescriptor");
  EXPECT_EQ(summary.packages[1].kind, Package::Kind::kFile);
}

TEST(Summary, EndsWhereClipsLeadInACircle) {
  SomeProgramme programme;
  programme.fileClip.set("SourcePackageID", *programme.material.tryGet<Types::UMID32>("PackageID"));
  programme.fileClip.set("SourceTrackID", 2);
  EXPECT_EQ(summaryOf(programme.metadata).tracks.at(0).essence, nullptr);
}

TEST(Summary, ListsTheTracksOfFilePackagesWithoutAMaterialPackage) {
  SomeProgramme programme;
  programme.file.set("EssenceDescription", programme.add("CDCIDescriptor"));
  programme.metadata.remove(programme.material);
  const auto summary = summaryOf(programme.metadata);
  EXPECT_FALSE(summary.title);
  ASSERT_EQ(summary.tracks.size(), 1u);
  EXPECT_NE(summary.tracks[0].essence, nullptr);
}

TEST(Summary, ListsWritersInTheirOrder) {
  SomeProgramme programme;
  for (const char16_t* product : {u"first", u"last"}) {
    auto& identification = programme.add("Identification");
    identification.set("ApplicationName", std::u16string_view(product));
    identification.set("FileModificationDate", u"2024-02-09T10:00:00");
    programme.preface.append("IdentificationList", identification);
  }
  const auto summary = summaryOf(programme.metadata);
  ASSERT_EQ(summary.writers.size(), 2u);
  EXPECT_THAT(summary.writers[1].product, Optional(std::string("last")));
  ASSERT_TRUE(summary.writers[1].date);
  EXPECT_EQ(summary.writers[1].date->year(), 2024);
}

TEST(Summary, NamesTheOperationalPattern) {
  SomeProgramme programme;
  programme.preface.set("OperationalPattern", u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00");
  const auto summary = summaryOf(programme.metadata);
  EXPECT_THAT(summary.operationalPatternName, Optional(std::string("OP1a")));
  ASSERT_TRUE(summary.operationalPattern);
  EXPECT_EQ(summary.operationalPattern->symbol, "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal");
}

}  // namespace
}  // namespace Vantor::Summary
