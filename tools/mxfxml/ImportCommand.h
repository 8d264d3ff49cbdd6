#pragma once

#include "Command.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml import`: writes the header metadata of an XML document as an MXF file that holds nothing else.
class ImportCommand final : public Command {
 public:
  explicit ImportCommand(CLI::App& program);
  void run() const override;

 private:
  Path output_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
