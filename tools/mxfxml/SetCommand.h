#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Assignment.h"
#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "DictionaryOptions.h"

namespace Vantor::Edit {
class File;
}

namespace Vantor::Tool {

/// `mxfxml set`: changes values of properties, or removes properties.
class SetCommand final : public Command {
 public:
  explicit SetCommand(CLI::App& program);
  void run() const override;

 private:
  std::vector<Assignment> assignments() const;
  std::vector<PropertyChoice> removals() const;
  MetadataSet& find(const PartitionMetadata& metadata, const PropertyChoice& choice) const;
  void edit(PartitionMetadata& metadata, const std::vector<Assignment>& given,
            const std::vector<PropertyChoice>& unwanted) const;
  void save(Edit::File& file) const;

  std::vector<std::string> assignments_;
  std::vector<std::string> removals_;
  std::optional<std::string> start_;
  std::optional<Path> output_;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
