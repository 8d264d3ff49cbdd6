#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"
#include "ScopedVariable.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kShown = "gst-audio-ac3.mxf";

TEST(Show, PrintsTheSameTreeOfAFileAndOfItsExport) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", folder.path("a.xml")}).exitCode, 0);
  const Result ofFile = run({"show", sample("op1a.mxf")}), ofDocument = run({"show", folder.path("a.xml")});
  EXPECT_EQ(ofFile.exitCode, 0) << ofFile.err;
  EXPECT_EQ(ofDocument.exitCode, 0) << ofDocument.err;
  EXPECT_THAT(ofFile.out, StartsWith("Preface\n"));
  EXPECT_EQ(ofFile.out, ofDocument.out);
}

TEST(Show, StartsAtTheSetThatAPathChooses) {
  const Result result = run({"show", sample(kShown), "--set", "MaterialPackage/Timecode"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, StartsWith("Timecode[1] (TimecodeComponent)\n  StartTimecode: 00:00:00:00\n"));
  const Result none = run({"show", sample(kShown), "--set", "Tiemcode"});
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_THAT(none.err, HasSubstr("Tiemcode"));
}

TEST(Show, DrawsBoxesOnlyInLocalesWithUTF8) {
  const ScopedVariable locale("LC_ALL", "C");
  EXPECT_THAT(run({"show", sample(kShown)}).out, AllOf(HasSubstr("\n|- "), Not(HasSubstr("├"))));
  const ScopedVariable other("LC_ALL", "en_GB.UTF-8");
  EXPECT_THAT(run({"show", sample(kShown)}).out, HasSubstr("\n├─ "));
}

TEST(Show, ColoursOnlyOnATerminalOrWhenAskedTo) {
  EXPECT_THAT(run({"show", sample(kShown)}).out, Not(HasSubstr("\x1b[")));
  EXPECT_THAT(run({"show", sample(kShown), "--color", "never"}).out, Not(HasSubstr("\x1b[")));
  EXPECT_THAT(run({"show", sample(kShown), "--color", "always"}).out, StartsWith("\x1b[1mPreface\x1b[0m\n"));
  EXPECT_EQ(run({"show", sample(kShown), "--color", "some"}).exitCode, 2);
}

TEST(Show, MarksDarkSetsAndUnknownProperties) {
  const Result result = run({"show", sample("libmxf-writeaviddv50.header.mxf"), "--no-own-dictionary"});
  EXPECT_THAT(result.out, AllOf(HasSubstr("\nDark sets:\n80.53.08.00.36.21.08.04.B3.B3.98.A5.1C.90.11.D4  "),
                                HasSubstr("unknown property FF.F6\n")));
}

TEST(Show, RefusesAPartitionOfADocument) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample(kShown), "-o", folder.path("a.xml")}).exitCode, 0);
  EXPECT_EQ(run({"show", folder.path("a.xml"), "--partition", "footer"}).exitCode, 2);
  EXPECT_EQ(run({"show", sample(kShown), "--partition", "footer"}).exitCode, 0);
}

}  // namespace
}  // namespace Vantor::Tool
