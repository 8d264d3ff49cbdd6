#include "Core/Platform/System.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>

#include "Core/Platform/Files.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::Platform::System {
namespace {

class SystemTest : public FolderTest {};

TEST_F(SystemTest, GivesRandomOctetsThatDiffer) {
  std::array<uint8, 32> first{}, second{};
  ASSERT_TRUE(fillWithRandomOctets(first.data(), first.size()));
  ASSERT_TRUE(fillWithRandomOctets(second.data(), second.size()));
  EXPECT_NE(first, second);
}

// What the shells of systems call the same things.
#ifdef _WIN32
constexpr const char* kNull = "NUL";
constexpr const char* kExit7 = "exit 7 &";
constexpr const char* kCopyNothingTo = "copy /b NUL";
#else
constexpr const char* kNull = "/dev/null";
constexpr const char* kExit7 = "exit 7;";
constexpr const char* kCopyNothingTo = "cp /dev/null";
#endif

TEST_F(SystemTest, TakesNoFileForATerminal) {
  const Files::Stream file(Files::openStream(folder_ / "a", "wb"));
  EXPECT_FALSE(isTerminal(file.get()));
  const Files::Stream null(Files::openStream(kNull, "wb"));
  EXPECT_FALSE(isTerminal(null.get()));
}

TEST_F(SystemTest, RunsACommandAndTakesItsExitCode) {
  int exitCode = -1;
  EXPECT_EQ(runCommand(kExit7, {}, exitCode), 0);
  EXPECT_EQ(exitCode, 7);
}

TEST_F(SystemTest, GivesACommandArgumentsOfAllCharacters) {
  const Path target = folder_ / Platform::pathFromUTF8("two \u5b9f.txt");
  int exitCode = -1;
  EXPECT_EQ(runCommand(kCopyNothingTo, {Platform::pathToUTF8(target)}, exitCode), 0);
  EXPECT_EQ(exitCode, 0);
  EXPECT_TRUE(std::filesystem::exists(target));
}

TEST_F(SystemTest, GivesVariablesOfTheEnvironment) {
  EXPECT_EQ(environmentVariable("VANTOR_NO_SUCH_VARIABLE"), "");
  EXPECT_NE(environmentVariable("PATH"), "");
}

}  // namespace
}  // namespace Vantor::Platform::System
