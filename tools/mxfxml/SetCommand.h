#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml set`: gives properties other values, as an edited export that is put back would.
class SetCommand final : public Command {
 public:
  explicit SetCommand(CLI::App& program);
  void run() const override;

 private:
  std::vector<std::string> assignments_;
  std::optional<std::string> start_;
  std::optional<Path> output_;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
