#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Core/DataIO/UndoJournal.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "TemporaryFile.h"
#include "tests/Core/MXF/WholeFile.h"

/// What a user leaves who interrupts the program while it puts edits into a file.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using MXF::operator+;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr uint64 kLarge = uint64{1} << 30;  // takes too long to be through before it is met
constexpr uint64 kWritten = uint64{8} << 20;
constexpr int kAttempts = 30;  // in case that the program is through before it is met
const std::string kWithinRoom = "Identification.ApplicationName=Ed";
const std::string kBeyondRoom = "Identification.ApplicationName=" + std::string(12000, 'x');

/// A file of which nearly all is a hole.
class InterruptionTest : public testing::Test {
 protected:
  void makeFile(uint64 essenceSize) {
    MXF::FileLayout layout;
    layout.partitions.resize(2);
    layout.partitions[0].kind = KLV::PartitionKind::kHeader;
    layout.partitions[0].metadata = MXF::metadataIn(sample("gst-audio-ac3.mxf"), 0);
    layout.partitions[0].spare = 4096;
    layout.hasRandomIndexPack = false;
    const Bytes bytes = MXF::fileOf(layout) + MXF::klvHeader(MXF::kPictureElement, essenceSize, 9);
    start_ = {bytes.begin(), bytes.end()};
    writeFile(original(), start_);
    fs::resize_file(original(), start_.size() + essenceSize);
    state_ = DataIO::File::stateOf(original());
  }

  std::string original() const { return folder_.path("a.mxf"); }
  std::string startOfOriginal() const {
    std::string start(start_.size(), 0);
    std::ifstream(original(), std::ios::binary).read(start.data(), static_cast<std::streamsize>(start.size()));
    return start;
  }

  /// Runs the program until some of the copy is written, and then with a signal to its end.
  Result runInterrupted(const std::vector<std::string>& arguments, int signal, int err = -1) const {
    StartedProgram program(arguments, err);
    program.waitUntil([&] { return temporarySize(folder_.path()) > kWritten; });
    program.stop();
    program.send(signal);
    return program.resume();
  }

  const ScratchFolder folder_;
  std::string start_;
  DataIO::File::FileState state_;
};

TEST_F(InterruptionTest, EndsACopyWithoutATrace) {
  const std::vector<std::string> inPlace = {"set", original(), kBeyondRoom};
  const std::vector<std::string> intoCopy = {"set", original(), kBeyondRoom, "-o", folder_.path("b.mxf")};
  const std::vector<std::string> unedited = {"set", original(), "TimelineTrack[1].TrackID=2", "-o",
                                             folder_.path("b.mxf")};
  makeFile(kLarge);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    for (const auto& arguments : {inPlace, intoCopy, unedited}) {
      const Result result = runInterrupted(arguments, signal);
      EXPECT_EQ(result.exitCode, 1);
      EXPECT_EQ(result.err, "mxfxml: " + original() + ": stopped; nothing is written\n");
      EXPECT_EQ(result.out, "");
      EXPECT_EQ(DataIO::File::stateOf(original()), state_);
      EXPECT_EQ(startOfOriginal(), start_);
      EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
    }
  }
}

TEST_F(InterruptionTest, IsToldOnALineBehindTheProgressBar) {
  makeFile(kLarge);
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0) GTEST_SKIP() << "there are no terminals";
  const int writer = ::open(::ptsname(terminal), O_RDWR | O_NOCTTY);
  EXPECT_EQ(runInterrupted({"set", original(), kBeyondRoom}, SIGINT, writer).exitCode, 1);
  std::string text(10000, 0);
  const auto size = ::read(terminal, text.data(), text.size());
  text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  EXPECT_THAT(text, StartsWith("\r[" + std::string(50, '.') + "]   0 %"));
  EXPECT_THAT(text, EndsWith(" %\r\nmxfxml: " + original() + ": stopped; nothing is written\r\n"));
  ::close(writer);
  ::close(terminal);
}

TEST_F(InterruptionTest, WaitsUntilAChangeInPlaceIsDone) {
  makeFile(kLarge);
  const fs::path journal = DataIO::File::journalPath(original());
  const auto isUnderWay = [&] { return fs::exists(journal) || fs::exists(journal.string() + ".tmp"); };
  bool wasMet = false;
  for (int attempt = 0; attempt < kAttempts && !wasMet; ++attempt) {
    std::fstream(original(), std::ios::binary | std::ios::in | std::ios::out) << start_;
    StartedProgram program({"set", original(), kWithinRoom});
    program.waitUntil(isUnderWay);
    program.stop();
    wasMet = isUnderWay();
    program.send(SIGTERM);
    const Result result = program.resume();
    EXPECT_EQ(result.exitCode, wasMet ? -SIGTERM : result.exitCode);
    EXPECT_NE(startOfOriginal(), start_);
    EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
  }
  ASSERT_TRUE(wasMet);
  EXPECT_EQ(run({"set", original(), kWithinRoom}).out, "nothing is edited\n");
}

TEST_F(InterruptionTest, IsNoneWhereTheCallerIgnoresTheSignal) {
  makeFile(kLarge / 16);
  const auto before = std::signal(SIGHUP, SIG_IGN);  // which the program inherits
  const Result result = runInterrupted({"set", original(), kBeyondRoom}, SIGHUP);
  std::signal(SIGHUP, before);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(startOfOriginal(), start_);
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

}  // namespace
}  // namespace Vantor::Tool
