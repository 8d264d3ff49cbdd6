#include "Edit/EqualValues.h"

#include <gmock/gmock.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"

namespace Vantor::Edit {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

std::unique_ptr<PartitionMetadata> readOP1a() {
  return MXF::readHeaderMetadata(VANTOR_TEST_DATA_DIR "/op1a.mxf", builtInDictionary());
}

TEST(EqualValues, NameTheSetsThatKeepTheOldValue) {
  const auto before = readOP1a(), after = readOP1a();
  after->find("Timecode[1]").set("StartTimecode", 90000);
  const auto found = equalValuesOf(*before, *after);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].property, "StartTimecode");
  EXPECT_EQ(found[0].value, "00:00:00:00");
  ASSERT_EQ(found[0].sets.size(), before->findAll("Timecode").size() - 1);
  EXPECT_EQ(found[0].sets[0], before->find("Timecode[2]").fullName());
}

TEST(EqualValues, NameOnePropertyInSetsOfSeveralKinds) {
  const auto before = readOP1a(), after = readOP1a();
  for (auto* partition : {before.get(), after.get()}) {
    partition->find("MaterialPackage").set("PackageName", u"A title");
    partition->find("SourcePackage[1]").set("PackageName", u"A title");
  }
  after->find("MaterialPackage").set("PackageName", u"Another title");
  const auto found = equalValuesOf(*before, *after);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].value, "\"A title\"");
  EXPECT_THAT(found[0].sets, testing::ElementsAre(StartsWith("SourcePackage ")));
}

TEST(EqualValues, AreNoneWhereTheEditChangesAll) {
  const auto before = readOP1a(), after = readOP1a();
  for (auto& timecode : after->findAll("Timecode")) timecode.set("StartTimecode", 90000);
  EXPECT_THAT(equalValuesOf(*before, *after), IsEmpty());
}

TEST(EqualValues, AreNoneWhereTheEditSwapsThem) {
  const auto before = readOP1a(), after = readOP1a();
  before->find("MaterialPackage").set("PackageName", u"x");
  before->find("SourcePackage[1]").set("PackageName", u"y");
  after->find("MaterialPackage").set("PackageName", u"y");
  after->find("SourcePackage[1]").set("PackageName", u"x");
  EXPECT_THAT(equalValuesOf(*before, *after), IsEmpty());
}

TEST(EqualValues, AreNoNumbersIdentifiersOrReferences) {
  const auto before = readOP1a(), after = readOP1a();
  after->find("TimelineTrack[1]").set("TrackID", 77);
  after->find("Timecode[1]").set("DropFrame", true);
  EXPECT_THAT(equalValuesOf(*before, *after), IsEmpty());
}

}  // namespace
}  // namespace Vantor::Edit
