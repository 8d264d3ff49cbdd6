#include "CommandLine/CommonOptions.h"

#include <system_error>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

std::string whyNoFileOrDash(const std::string& text) { return text.empty() ? "the file name is empty" : ""; }

std::string whyNoFileName(const std::string& text) {
  return text == "-" ? "'-', a standard stream, is not possible here; ./- is a file of that name"
                     : whyNoFileOrDash(text);
}

Path pathFrom(const std::string& argument, Dash dash) {
  if (dash == Dash::kNone) return Platform::pathFromUTF8(argument);
  return dash == Dash::kInput ? inputPath(argument) : outputPath(argument);
}

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

void addColor(CLI::App& command, ColorChoice& choice) {
  addChoice(command, "--color", choice, "choice of colours",
            {{"auto", ColorChoice::kAuto}, {"always", ColorChoice::kAlways}, {"never", ColorChoice::kNever}},
            "auto (default): colours on a terminal, unless NO_COLOR is in the\nenvironment; always or never");
}

void refuseSameFile(const Path& input, const Path& output) {
  if (isStandardOutput(output)) return;
  std::error_code error;  // a file that does not exist is not the other
  const bool isSame = isStandardInput(input) ? StandardInput::instance().isFile(output)
                                             : std::filesystem::equivalent(input, output, error) && !error;
  if (!isSame) return;
  throw OtherFileError("the output '" + Platform::pathToUTF8(output) + "' is the input itself");
}

}  // namespace Vantor::Tool
