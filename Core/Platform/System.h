#pragma once

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "Core/Platform/Types.h"

/// Processes, signals and consoles, with one interface for all systems.
namespace Vantor::Platform::System {

/// Fills with unpredictable octets; false and `errno` when the system gives none.
bool fillWithRandomOctets(uint8* octets, std::size_t size);

/// Bytes of a block that malloc() gave, which may be more than was asked for.
std::size_t allocatedSize(void* memory) noexcept;

/// The arguments of the program in UTF-8, without its name; `argc` and `argv` as main() has them.
std::vector<std::string> programArguments(int argc, char** argv);

/// A variable of the environment in UTF-8; empty when it is not set.
std::string environmentVariable(const char* name);

/// For a program that writes files, to be called first. Afterwards standard output and error take bytes as they are; a
/// pipe without a reader and a file beyond the caller's limit make a write fail instead of ending the process, which
/// would leave a temporary file behind; and a standard stream that the caller closed is not confused with the first
/// file opened. A console shows UTF-8 and colours. Windows has no closed streams and no limits of that kind.
void prepareStandardStreams();

bool isTerminal(std::FILE* stream);
/// Columns of the terminal that standard output is; 0 when it is none.
std::size_t terminalColumns();

/// The signal for a terminal that is closed.
int closingSignal();

/// Waits for a character on standard input, or for one of the signals, whose handler sets `came`. Lets these signals
/// come at no other moment than while it waits, so that none is missed.
void waitForInput(const std::vector<int>& signals, const volatile std::sig_atomic_t& came);
/// The next character of standard input; `EOF` at its end.
int readCharacter();

/// Runs a command line of the system's shell with further arguments, and leaves the keyboard's signals to it.
/// @param exitCode  where the command runs: its exit code, or as shells have it, 128 and the signal that ended it.
/// @return 0, or the value of `errno` when it cannot be started.
int runCommand(const std::string& command, const std::vector<std::string>& arguments, int& exitCode);

}  // namespace Vantor::Platform::System
