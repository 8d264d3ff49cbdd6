#include "Summary/Frameworks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Summary/SomeProgramme.h"

namespace Vantor::Summary {
namespace {

using testing::ElementsAre;

std::vector<std::string> valuesOf(const Framework& framework) {
  std::vector<std::string> values;
  for (const auto& value : framework.values) values.push_back(value.set + "." + value.property + "=" + value.value);
  return values;
}

TEST(Frameworks, HaveTheirValuesInOrderOfDefinitionAndTheirTrack) {
  SomeProgramme programme;
  auto& track = programme.add("StaticTrack");
  auto& marker = programme.add("DescriptiveMarker");
  auto& core = programme.add("DM_AS_11_Core_Framework");
  track.set("TrackName", u"AS_11_Core");
  track.set("TrackSegment", marker);
  marker.set("DescriptiveFrameworkObject", core);
  core.set("AS_11_Programme_Title", u"The North Sea");
  core.set("AS_11_Series_Title", u"Coast");
  core.set("AS_11_Shim_Version", u"1.2");
  programme.material.append("PackageTracks", track);
  const auto frameworks = frameworksOf(programme.metadata);
  ASSERT_EQ(frameworks.size(), 1u);
  EXPECT_EQ(frameworks[0].set, "DM_AS_11_Core_Framework");
  EXPECT_EQ(frameworks[0].track.value_or(""), "AS_11_Core");
  EXPECT_THAT(valuesOf(frameworks[0]), ElementsAre("DM_AS_11_Core_Framework.AS_11_Series_Title=Coast",
                                                   "DM_AS_11_Core_Framework.AS_11_Programme_Title=The North Sea",
                                                   "DM_AS_11_Core_Framework.AS_11_Shim_Version=1.2"));
}

TEST(Frameworks, HaveXMLWithItsOctetsInTheOrderOfText) {
  SomeProgramme programme;
  auto& core = programme.add("DM_AS_11_Core_Framework");
  const auto titleOf = [&](std::u16string_view title) {
    core.set("AS_11_Programme_Title", title);
    return valuesOf(frameworksOf(programme.metadata).at(0)).at(0);
  };
  const std::string start = "DM_AS_11_Core_Framework.AS_11_Programme_Title=";
  EXPECT_EQ(titleOf(u"\x3c00\x3f00\x7800"), start + "<?x");
  EXPECT_EQ(titleOf(u"\xfffe\x3c00\x6100"), start + "<a");
  EXPECT_EQ(titleOf(u"\x3c00\x7800"), start + "\xE3\xB0\x80\xE7\xA0\x80");  // may be Chinese
  EXPECT_EQ(titleOf(u"<?x"), start + "<?x");
}

TEST(Frameworks, HaveTheTextsOfTheSetsThatTheyReferToOnce) {
  PartitionMetadata metadata(builtInDictionary());
  auto& titles = metadata.createMetadataSet("Titles");
  titles.set("MainTitle", u"Coast");
  for (int i = 0; i < 2; ++i) {
    metadata.createMetadataSet("ProductionFramework").append("TitlesObjects", titles);
  }
  const auto frameworks = frameworksOf(metadata);
  ASSERT_EQ(frameworks.size(), 2u);
  EXPECT_THAT(valuesOf(frameworks[0]), ElementsAre("Titles.MainTitle=Coast"));
  EXPECT_TRUE(frameworks[1].values.empty());
}

TEST(Frameworks, MayChainAsManySetsAsAFileHas) {
  constexpr int kSets = 10000;
  PartitionMetadata metadata(builtInDictionary());
  auto* last = &metadata.createMetadataSet("ProductionFramework");
  for (int i = 0; i < kSets; ++i) {
    auto& next = metadata.createMetadataSet("Titles");
    next.set("MainTitle", u"again");
    last->append(last->find("TitlesObjects") != nullptr ? "TitlesObjects" : "ApplicationPlugInObjects", next);
    last = &next;
  }
  EXPECT_EQ(frameworksOf(metadata).at(0).values.size(), std::size_t{kSets});
}

}  // namespace
}  // namespace Vantor::Summary
