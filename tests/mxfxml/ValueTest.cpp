#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Program.h"
#include "ScratchFolder.h"

/// Values as people write them, on the command line.
namespace Vantor::Tool {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// A copy of a sample whose values are set.
class ValuedFile {
 public:
  explicit ValuedFile(const std::string& name) : original_(sample(name)) {
    std::filesystem::copy_file(original_, path());
  }

  std::string path() const { return folder_.path("a.mxf"); }
  std::string write(const std::string& name, const std::string& bytes) const {
    writeFile(folder_.path(name), bytes);
    return folder_.path(name);
  }
  Result set(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"set", path()});
    return run(arguments);
  }
  /// What the first difference from the sample prints behind the name of the set.
  std::string difference() const {
    const auto lines = run({"diff", original_, path()}).out;
    const auto line = lines.substr(0, lines.find('\n'));
    const auto at = line.find(": ", line.find(": ") + 2);
    return at == std::string::npos ? "" : line.substr(at + 2);
  }

 private:
  std::string original_;
  ScratchFolder folder_;
};

struct Assignment {
  const char* sample;
  const char* text;
  const char* difference;
};

const Assignment kAssignments[] = {
    {"gst-audio-ac3.mxf", "Timecode[1].StartTimecode=10:00:00:00", "StartTimecode: 00:00:00:00 -> 10:00:00:00"},
    {"gst-audio-ac3.mxf", "Preface.FileLastModified=2026-11-22T10:00+01:00",
     "FileLastModified (LastModifiedDate): 2026-10-21T01:15:27.020 -> 2026-11-22T09:00:00.000"},
    {"gst-audio-ac3.mxf", "Identification.ApplicationVersion=1.2.3.4 release",
     "ApplicationVersion (ProductVersion): 1.22.0.0 release -> 1.2.3.4 release"},
    {"op1a.mxf", "MPEGVideoDescriptor.TransferCharacteristic=BT.709",
     "TransferCharacteristic (CaptureGamma): nothing -> TransferCharacteristic_ITU709"},
};

class ToolValues : public testing::TestWithParam<Assignment> {};

TEST_P(ToolValues, AreSetAndPrintedAndPastedBack) {
  const ValuedFile file(GetParam().sample);
  EXPECT_EQ(file.set({GetParam().text}).exitCode, 0);
  EXPECT_EQ(file.difference(), GetParam().difference);
  const std::string text = GetParam().text, difference = GetParam().difference;
  const auto pasted = text.substr(0, text.find('=') + 1) + difference.substr(difference.find(" -> ") + 4);
  EXPECT_EQ(file.set({pasted}).out, "nothing is edited\n") << pasted;
}

INSTANTIATE_TEST_SUITE_P(Tool, ToolValues, testing::ValuesIn(kAssignments));

TEST(Values, OfAStartTimecodeFollowABaseThatChangesWithIt) {
  const ValuedFile file("gst-audio-ac3.mxf");
  const auto result = file.set({"Timecode[1].StartTimecode=10:00:00;00", "Timecode[1].DropFrame=yes",
                                "Timecode[1].FramesPerSecond=30", "--ignore", "timecode-rate"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(run({"diff", sample("gst-audio-ac3.mxf"), file.path()}).out,
              HasSubstr("StartTimecode: 00:00:00:00 -> 10:00:00;00\n"));
}

TEST(Values, ThatAreNoneAreRefusedWithAnExample) {
  for (const auto& [text, message] : std::vector<std::pair<std::string, std::string>>{
           {"Timecode[1].StartTimecode=10:00:00;00",
            "'10:00:00;00' is not a timecode or a number of frames (';' is for drop frame, and DropFrame of the set is "
            "false); for example 10:00:00:00 or 900000\n"},
           {"Preface.OperationalPattern=OP9z",
            "'OP9z' is not an operational pattern (no label has that name); for example "
            "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal\n"},
           {"MaterialPackage.PackageID=060a2b34",
            "'060a2b34' is not a UMID of 32 octets (it has 4 octets, not 32); for example 0x060A2B34"},
           {"Identification.ApplicationVersion=newest",
            "'newest' is not a version; for example 1.2.3.4 release or 1.2 beta\n"}}) {
    const ValuedFile file("gst-audio-ac3.mxf");
    const auto result = file.set({text});
    EXPECT_EQ(result.exitCode, 1) << text;
    EXPECT_THAT(result.err, HasSubstr(message)) << text;
    EXPECT_EQ(readFile(file.path()), readFile(sample("gst-audio-ac3.mxf")));
  }
}

TEST(Values, OfOtherKindsOfLabelsAreRefused) {
  const ValuedFile file("op1a.mxf");
  const auto result = file.set({"Identification.ApplicationProductID=ITU601"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("'ITU601' is not a UUID; for example urn:uuid:"));
}

TEST(Values, OfRunsOfOctetsAreReadFromFiles) {
  const ValuedFile file("gst-audio-ac3.mxf");
  const auto octets = file.write("octets", std::string("\x0a\x1b", 2));
  EXPECT_EQ(file.set({"SoundDescriptor.DialNorm=@" + octets}).exitCode, 1) << "that is a number";
  const auto missing = file.set({"EssenceData.EssenceStream=@" + octets + "x"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_THAT(missing.err, HasSubstr("octetsx': No such file or directory"));
  EXPECT_EQ(file.set({"EssenceData.EssenceStream=@" + octets}).exitCode, 0);
  EXPECT_EQ(file.difference(), "EssenceStream: nothing -> 0A1B");
}

TEST(Values, ThatWereNotReadAreListedByInfoWithTheReason) {
  EXPECT_THAT(run({"info", "--partitions", sample("bmx-rdd9-embedxml.header.mxf")}).out,
              EndsWith("\nvalues that cannot be read: 4\n"
                       "  4  AES3PCMDescriptor.FixedChannelStatusData  its items have 24 octets, not the 1 of their "
                       "type  [850000000000000000000000000000000000000000000000]\n"));
  EXPECT_THAT(run({"info", "--partitions", "--no-own-dictionary", sample("libmxf-writeaviddv50.header.mxf")}).out,
              HasSubstr("\nunknown properties: 3\n"
                        "  1  CDCIDescriptor: unknown property FF.F6 (A0.24.00.60.94.EB.75.CB.CE.2A.CA.4D.51.AB.11.D3)"
                        "  the dictionary does not have it  0000008E\n"));
}

}  // namespace
}  // namespace Vantor::Tool
