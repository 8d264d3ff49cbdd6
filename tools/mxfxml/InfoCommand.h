#pragma once

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml info`: prints the partitions of a file and the sets in the metadata of one of them.
class InfoCommand final : public Command {
 public:
  explicit InfoCommand(CLI::App& program);
  void run() const override;

 private:
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
