#include "Summary.h"

#include <system_error>

#include "ErrorText.h"
#include "StandardStreams.h"

namespace Vantor::Tool {

namespace {

void tell(const std::string& summary, const Path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return printMessage(file.u8string() + ": " + summary);
  try {
    writeStandardOutput(summary + "\n");
  } catch (const OtherFileError& failure) {
    printMessage(file.u8string() + ": warning: " + failure.what() + "; the command is done: " + summary);
  }
}

}  // namespace

void tellDone(const std::string& summary, const Path& file, DataIO::File::Durability durability) {
  if (durability == DataIO::File::Durability::kAtomic) {
    printMessage(
        file.u8string() +
        ": warning: the file is written, but its folder cannot be flushed, so that a power failure may undo it");
  }
  tell(summary, file);
}

}  // namespace Vantor::Tool
