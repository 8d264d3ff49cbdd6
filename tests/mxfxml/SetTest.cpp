#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

constexpr const char* kSample = "gst-audio-ac3.mxf";  // its header and footer partitions have the same metadata

/// A file that properties are set in.
class SetFile {
 public:
  SetFile() { std::filesystem::copy_file(sample(kSample), path()); }

  std::string path() const { return folder_.path("a.mxf"); }
  std::string copy() const { return folder_.path("b.mxf"); }
  std::vector<std::string> files() const { return folder_.files(); }
  Result set(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"set", path()});
    return run(arguments);
  }
  std::string diff() const { return run({"diff", sample(kSample), path()}).out; }
  bool isUntouched() const { return readFile(path()) == readFile(sample(kSample)); }

 private:
  ScratchFolder folder_;
};

TEST(Set, ChangesPropertiesAndNothingElse) {
  const SetFile file;
  const Result result =
      file.set({"Identification.ApplicationName=\xC3\x84 & <b>", "TimelineTrack[2].EditRate=30000/1001"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "2 sets changed (2 properties), 0 added, 0 removed, in 2 partitions\n");
  const std::string diff = file.diff();
  EXPECT_THAT(diff, HasSubstr(": ApplicationName: \"GStreamer Multimedia Framework\" -> \"\xC3\x84 & <b>\"\n"));
  EXPECT_THAT(diff, HasSubstr(": EditRate: 48000/256 -> 30000/1001\n"));
  EXPECT_THAT(diff, HasSubstr("sets compared 19, different 2; properties compared 115, different 2\n"));
  EXPECT_EQ(run({"export", file.path(), "--partition", "footer"}).out, run({"export", file.path()}).out);
}

TEST(Set, AddsAPropertyThatWasNotThere) {
  const SetFile file;
  EXPECT_EQ(file.set({"Preface.ByteOrder=18761"}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr("added property: Preface"));
}

TEST(Set, TakesTheSetThatAnInstanceUIDNames) {
  const SetFile file;
  const std::string first = "8D.9D.AD.D1.E1.B5.47.63.93.E4.7F.25.1B.C8.BF.00";
  EXPECT_EQ(file.set({"TimelineTrack.TrackID=9", "--start", first}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr("value: TimelineTrack " + first + ": TrackID: 2 -> 9\n"));
}

TEST(Set, WritesACopyWhenAskedTo) {
  const SetFile file;
  EXPECT_EQ(file.set({"TimelineTrack[1].TrackID=9", "-o", file.copy()}).exitCode, 0);
  EXPECT_TRUE(file.isUntouched());
  EXPECT_EQ(run({"diff", file.path(), file.copy()}).exitCode, 1);
}

TEST(Set, DoesNothingForAValueThatIsThereAlready) {
  const SetFile file;
  EXPECT_EQ(file.set({"TimelineTrack[1].TrackID=2"}).out, "nothing is edited\n");
  EXPECT_TRUE(file.isUntouched());
}

TEST(Set, RefusesWhatCannotBeAndLeavesTheFileAlone) {
  for (const auto& [assignment, reason] : std::vector<std::pair<std::string, std::string>>{
           {"Preface",
            "'Preface' sets nothing; write Set.Property=VALUE, or Set[2].Property=VALUE for the second set of "
            "that name"},
           {"Preface=1", "'Preface=1' sets nothing; write"},
           {"Track[.TrackID=1", "'Track[.TrackID=1' sets nothing; write"},
           {"Identification.ApplicationName=a\xff", "is no text in UTF-8"},
           {"Track[0].TrackID=1", "'Track[0].TrackID=1' sets nothing; write"},
           {"Prefce.ByteOrder=1", "there is no set 'Prefce'"},
           {"Preface.ByteOrdr=1", "a Preface has no property 'ByteOrdr'; see mxfxml dictionary Preface"},
           {"TimelineTrack.TrackID=1",
            "there are 4 sets 'TimelineTrack'; write TimelineTrack[1] to TimelineTrack[4], or "
            "choose one with --start"},
           {"TimelineTrack[5].TrackID=1", "there are 4 sets 'TimelineTrack'; write"},
           {"Preface.ByteOrder=x", ": ByteOrder: 'x' is no whole number from -32768 to 32767"},
           {"TimelineTrack[1].EditRate=25", "'25' is no rational; write it as 25/1"},
           {"Preface.InstanceUID=1", "the value of InstanceID cannot be told in one word; edit an export instead"},
           {"Preface.FileLastModified=now", "the value of FileLastModified cannot be told in one word"},
           {"Preface.EssenceContainers=a", "the value of EssenceContainers cannot be told in one word"}}) {
    const SetFile file;
    const Result result = file.set({assignment});
    EXPECT_EQ(result.exitCode, 1) << assignment;
    EXPECT_THAT(result.err, HasSubstr(reason)) << assignment;
    EXPECT_TRUE(file.isUntouched()) << assignment;
    EXPECT_EQ(file.files(), std::vector<std::string>{"a.mxf"});
  }
}

TEST(Set, NeedsSomethingToSet) { EXPECT_EQ(run({"set", sample(kSample)}).exitCode, 2); }

}  // namespace
}  // namespace Vantor::Tool
