#pragma once

#include <stdexcept>
#include <string>

#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::Tool {

inline constexpr const char* kProgramName = "mxfxml";

/// Why a subcommand fails, in words for the user.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Options that do not go together, in words for the user.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// An error in a file or stream that is not the subcommand's input. The text names it.
class OtherFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Writes a line to standard error, after the program's name.
void printMessage(const std::string& message);

/// As long as it lives, messages are not printed, since they were before. Only one object may exist at a time.
class SilentMessages {
 public:
  SilentMessages();
  ~SilentMessages();
  SilentMessages(const SilentMessages&) = delete;
  SilentMessages& operator=(const SilentMessages&) = delete;
};

/// The message, in UTF-8, of the exception that is being handled, whoever threw it. To be called in a catch clause.
std::string currentExceptionText();

/// The same with the name of a file in front, unless the exception names its file itself, as every IOError does; an
/// IOError about a folder with MXF files gets a hint at these.
/// @param file  may be empty.
std::string currentExceptionText(const Path& file);

/// The line of a document that the exception being handled carries (`Exceptions::DocumentLine`); 0 for none. To be
/// called in a catch clause.
uint64 currentExceptionLine();

/// Does something with a file that is not the input, which its errors name then. @throws OtherFileError.
template <class Action>
auto namingFile(const Path& file, Action&& action) -> decltype(action()) {
  try {
    return action();
  } catch (...) {
    throw OtherFileError(currentExceptionText(file));
  }
}

/// The text as `printable` shows it, so that a message with a file name of any kind stays on one line.
std::string oneLine(std::string_view text);

}  // namespace Vantor::Tool
