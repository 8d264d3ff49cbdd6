#include "Edit/MovedTimecodes.h"

#include <gmock/gmock.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"

namespace Vantor::Edit {
namespace {

using testing::IsEmpty;

/// A file whose first timecode starts at ten o'clock, in two states.
class MovedTimecodes : public testing::Test {
 protected:
  MovedTimecodes() : before_(read()), after_(read()) {}

  static std::unique_ptr<PartitionMetadata> read() {
    auto metadata = MXF::readHeaderMetadata(VANTOR_TEST_DATA_DIR "/op1a.mxf", builtInDictionary());
    auto& timecode = metadata->find("Timecode[1]");
    timecode.set("FramesPerSecond", 30);
    timecode.set("DropFrame", false);
    timecode.set("StartTimecode", u"10:00:00:00");
    return metadata;
  }
  MetadataSet& timecode() { return after_->find("Timecode[1]"); }
  std::vector<MovedTimecode> moved() { return movedTimecodesOf(*before_, *after_); }

  std::unique_ptr<PartitionMetadata> before_, after_;
};

TEST_F(MovedTimecodes, ReadDifferentlyWhenFramesAreDropped) {
  timecode().set("DropFrame", true);
  const auto found = moved();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].set, timecode().fullName());
  EXPECT_EQ(found[0].property, "StartTimecode");
  EXPECT_EQ(found[0].before, "10:00:00:00");
  EXPECT_EQ(found[0].after, "10:00:36;00");  // 1,080,000 frames, of which 107,892 are an hour
  EXPECT_EQ(found[0].kept, "10:00:00;00");
}

TEST_F(MovedTimecodes, ReadDifferentlyAtAnotherNumberOfFramesPerSecond) {
  timecode().set("FramesPerSecond", 25);
  const auto found = moved();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].after, "12:00:00:00");
  EXPECT_EQ(found[0].kept, "10:00:00:00");
}

TEST_F(MovedTimecodes, CannotAllBeKept) {
  for (auto* state : {before_.get(), after_.get()}) state->find("Timecode[1]").set("StartTimecode", u"10:00:00:29");
  timecode().set("FramesPerSecond", 25);
  const auto found = moved();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].kept, "");
}

TEST_F(MovedTimecodes, AreNoneThatTheEditSetsItself) {
  timecode().set("FramesPerSecond", 25);
  timecode().set("StartTimecode", u"10:00:00:00");
  EXPECT_THAT(moved(), IsEmpty());
}

TEST_F(MovedTimecodes, AreNoneAtMidnightOrInSetsWithTheirOldBase) {
  for (auto* state : {before_.get(), after_.get()}) state->find("Timecode[1]").set("StartTimecode", 0);
  timecode().set("FramesPerSecond", 25);
  after_->find("Timecode[2]").remove("ComponentDataDefinition");
  EXPECT_THAT(moved(), IsEmpty());
}

}  // namespace
}  // namespace Vantor::Edit
