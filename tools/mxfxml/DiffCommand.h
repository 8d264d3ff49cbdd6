#pragma once

#include <memory>
#include <optional>

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml diff`: prints the differences between the header metadata of two files, MXF or XML. Fails after printing if
/// there are any.
class DiffCommand final : public Command {
 public:
  explicit DiffCommand(CLI::App& program);
  void run() const override;

 private:
  std::unique_ptr<PartitionMetadata> read(const Path& file) const;
  std::unique_ptr<PartitionMetadata> readOther() const;
  std::unique_ptr<PartitionMetadata> readDocument(const Path& file) const;

  Path other_;
  bool ignoreIdentifiers_ = false;
  bool strict_ = false;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
