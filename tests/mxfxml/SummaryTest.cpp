#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "Program.h"
#include "ScratchFolder.h"

/// What a command tells of an edit that is done.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr const char* kSample = "gst-audio-ac3.mxf";
constexpr const char* kSummary = "1 set changed (1 property); written to 2 partitions, which repeat each other";

std::string setting(std::size_t size) { return "Identification.ApplicationName=" + std::string(size, 'x'); }

/// A copy of a file, edited by `mxfxml set`.
class SummaryTest : public testing::Test {
 protected:
  SummaryTest() { fs::copy_file(sample(kSample), file()); }

  std::string file() const { return folder_.path("a.mxf"); }
  std::string copy() const { return folder_.path("b.mxf"); }
  bool isEdited(const std::string& path, std::size_t size) const {
    return run({"export", path}).out.find(">" + std::string(size, 'x') + "<") != std::string::npos;
  }

  const ScratchFolder folder_;
};

TEST_F(SummaryTest, IsAWarningWhereStandardOutputDoesNotTakeIt) {
  const std::pair<Out, std::string> outs[] = {{Out::kFullDevice, "No space left on device"},
                                              {Out::kClosed, "Bad file descriptor"}};
  std::size_t size = 1;
  for (const auto& [out, reason] : outs) {
    for (const std::size_t more : {0, 12000}) {  // within the room and beyond
      const Result result = run({"set", file(), setting(++size + more)}, out);
      EXPECT_EQ(result.exitCode, 0);
      EXPECT_EQ(result.err, "mxfxml: " + file() + ": warning: cannot write to standard output: " + reason +
                                "; the command is done: " + kSummary + "\n");
      EXPECT_TRUE(isEdited(file(), size + more));
    }
  }
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

TEST_F(SummaryTest, NeedsNoReader) {
  const Result result = run({"set", file(), setting(5)}, Out::kPipeWithoutReader);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(isEdited(file(), 5));
}

TEST_F(SummaryTest, OfADocumentIsAWarningAsWell) {
  const std::string document = folder_.path("a.xml");
  ASSERT_EQ(run({"export", file(), "-o", document}).exitCode, 0);
  for (const auto& [target, path] :
       {std::pair(std::vector<std::string>{"--in-place"}, file()), {std::vector<std::string>{"-o", copy()}, copy()}}) {
    std::vector<std::string> arguments = {"import", document, "--into", file()};
    arguments.insert(arguments.end(), target.begin(), target.end());
    const Result result = run(arguments, Out::kFullDevice);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "mxfxml: " + path +
                              ": warning: cannot write to standard output: No space left on device; the command is "
                              "done: nothing is edited\n");
  }
  EXPECT_EQ(readFile(copy()), readFile(sample(kSample)));
}

TEST_F(SummaryTest, IsNotMixedIntoAnOutputThatIsNoFile) {
  ASSERT_EQ(run({"set", file(), setting(5), "-o", copy()}).out, std::string(kSummary) + "\n");
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  const Result result = run({"set", file(), setting(5), "-o", pipe});  // a copy that the pipe has room for
  std::string bytes(std::size_t{1} << 16, 0);
  const auto size = ::read(reader, bytes.data(), bytes.size());
  ::close(reader);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + pipe + ": " + kSummary + "\n");
  EXPECT_TRUE(bytes.substr(0, size < 0 ? 0 : static_cast<std::size_t>(size)) == readFile(copy()));
}

TEST_F(SummaryTest, WarnsWhereTheNameOfTheNewFileMayNotLast) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  fs::permissions(folder_.path(), fs::perms::owner_write | fs::perms::owner_exec);
  const Result result = run({"set", file(), setting(12000)});
  fs::permissions(folder_.path(), fs::perms::owner_all);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, std::string(kSummary) + "\n");
  EXPECT_EQ(result.err, "mxfxml: " + file() +
                            ": warning: the file is written, but its folder cannot be flushed, so that a power failure "
                            "may undo it\n");
  EXPECT_TRUE(isEdited(file(), 12000));
}

}  // namespace
}  // namespace Vantor::Tool
