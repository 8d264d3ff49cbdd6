#pragma once

#include "Command.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml import`: writes the header metadata of an XML document as an MXF file that holds nothing else.
class ImportCommand final : public Command {
 public:
  explicit ImportCommand(CLI::App& program);
  void run() const override;

 private:
  /// Reads the document into a partition, and tells on standard error what it could not read.
  void read(PartitionMetadata& metadata) const;

  Path output_;
  bool exact_ = false;
  bool strict_ = false;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
