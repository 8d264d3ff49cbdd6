#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "Core/MXF/PartitionChoice.h"
#include "Core/Platform/Path.h"

/// Options of several subcommands. Parsing fills the variables, which have to live that long.
namespace Vantor::Tool {

/// A required file name in the place of the next positional argument.
void addFileArgument(CLI::App& command, const std::string& name, Path& file, const std::string& description);

/// The same in the place of the first one.
void addInput(CLI::App& command, Path& input, const std::string& description);

/// An option with the name of a file, such as "-o,--output"; left as it is when the option is not given.
CLI::Option* addFile(CLI::App& command, const std::string& name, std::optional<Path>& file,
                     const std::string& description);

/// --partition header|footer|N; left as it is when the option is not given.
void addPartition(CLI::App& command, MXF::PartitionChoice& choice);

/// The same for commands to which no choice means something other than the header partition.
CLI::Option* addPartition(CLI::App& command, std::optional<MXF::PartitionChoice>& choice,
                          const std::string& description);

/// Why a text is no name of a file; empty when it may be one.
std::string whyNoFileName(const std::string& text);

/// The chosen partition in messages: "the header partition", "the footer partition" or "partition 2".
std::string describe(const MXF::PartitionChoice& choice);

/// Refuses to write over the file that is read, even through links. @throws OtherFileError naming the output.
void refuseSameFile(const Path& input, const Path& output);

}  // namespace Vantor::Tool
