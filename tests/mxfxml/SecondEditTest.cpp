#ifdef __linux__

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "Program.h"
#include "ScratchFolder.h"
#include "tests/Core/MXF/WholeFile.h"

/// Two edits of one file at a time.
namespace Vantor::Tool {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// A pipe with room for so many bytes before who writes more has to wait.
class NarrowPipe {
 public:
  explicit NarrowPipe(std::size_t room) {
    if (::pipe2(ends_.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
    const int size = ::fcntl(ends_[1], F_SETPIPE_SZ, 1);
    if (size <= static_cast<int>(room)) throw std::runtime_error("the pipe is too small");
    const std::string filling(static_cast<std::size_t>(size) - room, '.');
    if (::write(ends_[1], filling.data(), filling.size()) < 0) throw std::runtime_error("write");
    full_ = size;
  }
  ~NarrowPipe() {
    for (const int end : ends_) ::close(end);
  }
  NarrowPipe(const NarrowPipe&) = delete;
  NarrowPipe& operator=(const NarrowPipe&) = delete;

  int writer() const { return ends_[1]; }
  bool isFull() const {
    int size = 0;
    return ::ioctl(ends_[0], FIONREAD, &size) == 0 && size >= full_;
  }
  /// Everything up to the end of the last writer, the filling first.
  std::string readAll() {
    ::close(std::exchange(ends_[1], -1));
    std::string all;
    std::array<char, 4096> some{};
    for (ssize_t size = 1; size > 0;) {
      size = ::read(ends_[0], some.data(), some.size());
      if (size > 0) all.append(some.data(), static_cast<std::size_t>(size));
    }
    return all;
  }

 private:
  std::array<int, 2> ends_{};
  int full_ = 0;
};

/// A header and a footer partition with the same metadata.
std::string fileWithTwoMetadata() {
  MXF::FileLayout layout;
  layout.partitions.resize(2);
  layout.partitions[0].kind = KLV::PartitionKind::kHeader;
  layout.partitions[1].kind = KLV::PartitionKind::kFooter;
  for (auto& partition : layout.partitions) {
    partition.metadata = MXF::metadataIn(sample("gst-audio-ac3.mxf"), 0);
    partition.spare = 4096;
  }
  const Bytes bytes = MXF::fileOf(layout);
  return {bytes.begin(), bytes.end()};
}

/// An export with another ApplicationName and two mistakes, each of which gets a line on standard error.
std::string documentWithMistakes(const std::string& file, std::size_t size) {
  std::string xml = run({"export", file}).out;
  const std::string name = "<rp210:ApplicationName>", track = "<rp210:TrackID>1<";
  xml.insert(xml.find(name) + name.size(), size, 'x');
  for (int i = 0; i < 2; ++i) xml.replace(xml.find(track), track.size(), "<rp210:TrackID>one<");
  return xml;
}

std::string setting(std::size_t size) { return "Identification.ApplicationName=" + std::string(size, 'x'); }

TEST(SecondEdit, IsNotLostToAFirstThatEndsLater) {
  for (const std::size_t size : {2, 12000}) {  // within the room and beyond
    for (const bool inPlace : {true, false}) {
      const ScratchFolder folder;
      const std::string file = folder.path("a.mxf"), copy = folder.path("b.mxf"), document = folder.path("a.xml");
      writeFile(file, fileWithTwoMetadata());
      writeFile(document, documentWithMistakes(file, size));
      std::vector<std::string> arguments = {"import", document, "--into", file, "--keep-going"};
      if (inPlace) arguments.emplace_back("--in-place");
      if (!inPlace) arguments.insert(arguments.end(), {"-o", copy});
      const std::string firstLine = "mxfxml: " + document +
                                    ": warning: line 22: TimelineTrack "
                                    "79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3: TrackID: 'one' is no whole "
                                    "number from 0 to 4294967295\n";
      // It reads the file and then waits before its second line, until the second edit is done.
      NarrowPipe err(firstLine.size());
      StartedProgram first(arguments, err.writer());
      first.waitUntil([&] { return err.isFull(); });
      ASSERT_EQ(run({"set", file, setting(7), "--partition", "footer", "--ignore", "repeated-metadata"}).exitCode, 0);
      const std::string expected = readFile(file);
      const std::string messages = err.readAll();
      EXPECT_EQ(first.resume().exitCode, 1);
      EXPECT_THAT(messages, HasSubstr(firstLine));
      EXPECT_THAT(messages, EndsWith("another program has changed it meanwhile; begin anew\n"));
      EXPECT_TRUE(readFile(file) == expected);
      EXPECT_THAT(folder.files(), ElementsAre("a.mxf", "a.xml"));
    }
  }
}

constexpr int kRounds = 40;

/// Two edits of different properties that begin at once.
TEST(SecondEdit, IsRefusedOrKeepsTheFirstWhenBothBeginAtOnce) {
  int refused = 0;
  for (int i = 0; i < kRounds; ++i) {
    const ScratchFolder folder;
    const std::string file = folder.path("a.mxf");
    std::filesystem::copy_file(sample("op1a.mxf"), file);
    const std::string name(i % 4 == 1 ? 2 : 12000, 'n'),
        supplier(i % 4 == 3 ? 2 : 12000, 's');  // mostly beyond the room
    StartedProgram first({"set", file, "Identification.ApplicationName=" + name});
    StartedProgram second({"set", file, "Identification.ApplicationSupplierName=" + supplier});
    const Result one = first.resume(), other = second.resume();
    const std::string xml = run({"export", file}).out;
    EXPECT_EQ(one.exitCode == 0, xml.find(">" + name + "<") != std::string::npos) << one.err << other.err;
    EXPECT_EQ(other.exitCode == 0, xml.find(">" + supplier + "<") != std::string::npos) << one.err << other.err;
    EXPECT_THAT(folder.files(), ElementsAre("a.mxf"));
    refused += one.exitCode + other.exitCode;
  }
  EXPECT_GT(refused, 0);  // or none ever met another
}

}  // namespace
}  // namespace Vantor::Tool

#endif
