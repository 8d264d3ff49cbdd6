#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <malloc.h>
#include <shellapi.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <random>

#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"
#include "Core/Platform/System.h"

namespace Vantor::Platform::System {

namespace {

std::string narrow(const wchar_t* text) {
  const std::wstring wide(text);
  return Utils::wstringToString(Vantor::wstring(wide.begin(), wide.end()));
}

std::wstring widen(const std::string& text) {
  const Vantor::wstring wide = Utils::stringToWstring(text);
  return {wide.begin(), wide.end()};
}

struct LocalMemory {
  void operator()(void* memory) const noexcept { ::LocalFree(memory); }
};

UINT codePageBefore = 0;
constexpr std::size_t kConsoleBuffer = 4096;

/// A console shows bytes by its code page, which stays when the program has ended.
void restoreCodePage() {
  std::fflush(nullptr);
  ::SetConsoleOutputCP(codePageBefore);
}

void prepareConsole(DWORD standardStream) {
  const HANDLE console = ::GetStdHandle(standardStream);
  DWORD mode = 0;
  if (::GetConsoleMode(console, &mode) == 0) return;
  ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);  // colours
  if (codePageBefore != 0) return;
  codePageBefore = ::GetConsoleOutputCP();
  if (codePageBefore != 0 && ::SetConsoleOutputCP(CP_UTF8) != 0) std::atexit(restoreCodePage);
}

}  // namespace

std::size_t allocatedSize(void* memory) noexcept { return ::_msize(memory); }

bool fillWithRandomOctets(uint8* octets, std::size_t size) {
  // The standard library there asks the system for every number.
  thread_local std::random_device device;
  for (std::size_t i = 0; i < size; ++i) octets[i] = static_cast<uint8>(device());
  return true;
}

std::vector<std::string> programArguments(int, char**) {
  // The system's code page, in which main() has them, cannot name every file.
  int count = 0;
  const std::unique_ptr<LPWSTR, LocalMemory> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(narrow(words.get()[i]));
  return arguments;
}

std::string environmentVariable(const char* name) {
  const wchar_t* value = ::_wgetenv(widen(name).c_str());
  return value == nullptr ? "" : narrow(value);
}

void prepareStandardStreams() {
  ::_setmode(::_fileno(stdout), _O_BINARY);
  ::_setmode(::_fileno(stderr), _O_BINARY);
  // The C library writes to a console byte by byte, which are no UTF-8 each.
  for (std::FILE* stream : {stdout, stderr}) {
    if (isTerminal(stream)) std::setvbuf(stream, nullptr, _IOFBF, kConsoleBuffer);
  }
  prepareConsole(STD_OUTPUT_HANDLE);
  prepareConsole(STD_ERROR_HANDLE);
}

// The null device counts as a terminal for the C library.
bool isTerminal(std::FILE* stream) {
  DWORD mode = 0;
  const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
  return ::GetConsoleMode(handle, &mode) != 0;
}

std::size_t terminalColumns() {
  CONSOLE_SCREEN_BUFFER_INFO information{};
  if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &information) == 0) return 0;
  return static_cast<std::size_t>(information.srWindow.Right - information.srWindow.Left + 1);
}

int closingSignal() { return SIGBREAK; }

void waitForInput(const std::vector<int>&, const volatile std::sig_atomic_t&) {}

int readCharacter() { return std::getchar(); }

int runCommand(const std::string& command, const std::vector<std::string>& arguments, int& exitCode) {
  std::string line = command;
  for (const auto& argument : arguments) line += " \"" + argument + "\"";
  errno = 0;
  exitCode = ::_wsystem(widen("\"" + line + "\"").c_str());  // the shell takes the outer quotes away
  return exitCode == -1 ? errno : 0;
}

}  // namespace Vantor::Platform::System
