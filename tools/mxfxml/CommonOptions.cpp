#include "CommonOptions.h"

#include <system_error>
#include "Core/Platform/Exceptions.h"
#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

std::string whyNoPartition(const std::string& text) {
  try {
    MXF::PartitionChoice::parse(text);
  } catch (const Exceptions::InvalidFormat& error) {
    return error.what();
  }
  return {};
}

}  // namespace

std::string whyNoFileName(const std::string& text) { return text.empty() ? "the file name is empty" : ""; }

void addFileArgument(CLI::App& command, const std::string& name, Path& file, const std::string& description) {
  const auto take = [&file](const std::string& text) { file = std::filesystem::u8path(text); };
  command.add_option_function<std::string>(name, take, description)->required()->type_name("")->check(whyNoFileName);
}

void addInput(CLI::App& command, Path& input, const std::string& description) {
  addFileArgument(command, "INPUT", input, description);
}

CLI::Option* addFile(CLI::App& command, const std::string& name, std::optional<Path>& file,
                     const std::string& description) {
  const auto take = [&file](const std::string& text) { file = std::filesystem::u8path(text); };
  return command.add_option_function<std::string>(name, take, description)->type_name("FILE")->check(whyNoFileName);
}

void addPartition(CLI::App& command, MXF::PartitionChoice& choice) {
  const auto take = [&choice](const std::string& text) { choice = MXF::PartitionChoice::parse(text); };
  command
      .add_option_function<std::string>(
          "--partition", take,
          "header (default), footer, or a number in file order\nfrom 0, which is the header partition")
      ->type_name("WHICH")
      ->check(whyNoPartition);
}

CLI::Option* addPartition(CLI::App& command, std::optional<MXF::PartitionChoice>& choice,
                          const std::string& description) {
  const auto take = [&choice](const std::string& text) { choice = MXF::PartitionChoice::parse(text); };
  return command.add_option_function<std::string>("--partition", take, description)
      ->type_name("WHICH")
      ->check(whyNoPartition);
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
