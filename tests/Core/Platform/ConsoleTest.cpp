#ifdef _WIN32

#include <gmock/gmock.h>

#include <io.h>
#include <windows.h>

#include <cstdio>
#include <string>

#include "Core/Platform/Files.h"
#include "Core/Platform/System.h"

namespace Vantor::Platform::System {
namespace {

/// Needs a console, which a program has that is started in one. scripts/build-windows gives it one.
class ConsoleTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!stream_ || !isTerminal(stream_.get())) GTEST_SKIP() << "this program has no console";
    console_ = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream_.get())));
    ::SetStdHandle(STD_OUTPUT_HANDLE, console_);
  }
  void TearDown() override { ::SetStdHandle(STD_OUTPUT_HANDLE, outputBefore_); }

  const Files::Stream stream_{Files::openStream("CONOUT$", "r+b")};
  const HANDLE outputBefore_ = ::GetStdHandle(STD_OUTPUT_HANDLE);
  HANDLE console_ = nullptr;
};

TEST_F(ConsoleTest, ShowsUTF8AndHasColumns) {
  prepareStandardStreams();
  EXPECT_EQ(::GetConsoleOutputCP(), static_cast<UINT>(CP_UTF8));
  EXPECT_GT(terminalColumns(), 0u);
  const COORD start = {0, 0};
  ::SetConsoleCursorPosition(console_, start);
  std::fputs("\u00fc\u5b9f!", stream_.get());
  std::fflush(stream_.get());
  DWORD count = 0;
  wchar_t shown[3] = {};
  ASSERT_NE(::ReadConsoleOutputCharacterW(console_, shown, 3, start, &count), 0);
  EXPECT_EQ(std::wstring(shown, count), L"\u00fc\u5b9f!");
}

}  // namespace
}  // namespace Vantor::Platform::System

#endif
