#pragma once

#include <CLI/CLI.hpp>

#include "CommandLine/Command.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Path.h"
#include "JSON/Value.h"
#include "Terminal/StandardInput.h"

/// Reading what is left of damaged header metadata.
namespace Vantor::Tool {

/// The option --salvage.
class SalvageOption {
 public:
  /// @param byDefault  adds --no-salvage, too.
  void add(CLI::App& command, bool byDefault = false);

  /// For readers: where to put what they cannot read; null when damage is to end the command.
  Missing* placeFor(Missing& missing) const { return isOn_ ? &missing : nullptr; }
  bool isOn() const { return isOn_; }

 private:
  bool isOn_ = false;
};

/// @throws CommandError with the first damage when nothing of the metadata can be read.
void requireSomething(const PartitionMetadata& metadata, const Missing& missing);

/// Prints what is missing, a line for each damaged place, and at last how many sets are there; nothing for metadata
/// without damage.
/// @return kFailure when there is damage.
ExitCode reportMissing(const Path& file, const PartitionMetadata& metadata, const Missing& missing);

/// Adds "missing" to an object; nothing for metadata without damage.
void addMissing(const Missing& missing, JSON::Value& object);

}  // namespace Vantor::Tool
