#pragma once

#include <optional>
#include <string>

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "DictionaryOptions.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor::Tool {

/// `mxfxml export`: writes the header metadata of one partition as XML.
class ExportCommand final : public Command {
 public:
  explicit ExportCommand(CLI::App& program);
  void run() const override;

 private:
  void addEncoding();
  std::string document() const;
  const MetadataSet& findStart(const PartitionMetadata& metadata) const;

  std::optional<Path> output_;
  bool flat_ = false;
  bool structuralOnly_ = false;
  bool exact_ = false;
  std::optional<std::string> start_;
  XMLUtils::EncodingType encoding_ = XMLUtils::EncodingType::kUTF8Indented;
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
