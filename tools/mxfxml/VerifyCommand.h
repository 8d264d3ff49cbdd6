#pragma once

#include <vector>

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "DictionaryOptions.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

/// `mxfxml verify`: writes the header metadata of one partition as XML in memory, reads it back, and prints what has
/// changed. Fails after printing if anything has.
class VerifyCommand final : public Command {
 public:
  explicit VerifyCommand(CLI::App& program);
  void run() const override;

 private:
  /// Writes the metadata as XML in memory and reads them into the copy.
  std::vector<LosslessXML::Diagnostic> roundTrip(PartitionMetadata& metadata, PartitionMetadata& copy) const;
  std::vector<LosslessXML::Diagnostic> roundTripExactly(PartitionMetadata& metadata, PartitionMetadata& copy) const;
  void requireDocument(bool isThere) const;

  bool flat_ = false;
  bool exact_ = false;
  bool strict_ = false;
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
