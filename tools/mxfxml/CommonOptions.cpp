#include "CommonOptions.h"

#include <system_error>

#include "Core/Platform/Exceptions.h"
#include "ErrorText.h"

namespace Vantor::Tool {

std::string whyNoFileName(const std::string& text) { return text.empty() ? "the file name is empty" : ""; }

std::string whyNoPartition(const std::string& text) {
  try {
    MXF::PartitionChoice::parse(text);
  } catch (const Exceptions::InvalidFormat& error) {
    return error.what();
  }
  return {};
}

std::string describe(const MXF::PartitionChoice& choice) {
  return choice.kind() == MXF::PartitionChoice::Kind::kNumber ? choice.name() : "the " + choice.name();
}

void refuseSameFile(const Path& input, const Path& output) {
  std::error_code error;  // a file that does not exist is not the other
  if (!std::filesystem::equivalent(input, output, error) || error) return;
  throw OtherFileError("the output '" + output.u8string() + "' is the input itself");
}

}  // namespace Vantor::Tool
