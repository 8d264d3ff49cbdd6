#pragma once

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml verify`: writes the header metadata of one partition as XML in memory, reads that back, and prints what did
/// not come back as it was. Fails after printing when there is such a thing.
class VerifyCommand final : public Command {
 public:
  explicit VerifyCommand(CLI::App& program);
  void run() const override;

 private:
  bool flat_ = false;
  bool exact_ = false;
  bool strict_ = false;
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
