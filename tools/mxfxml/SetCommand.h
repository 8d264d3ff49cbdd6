#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Assignment.h"
#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

class MetadataEdit;

/// `mxfxml set`: gives properties other values or takes them out, as an edited export that is put back would.
class SetCommand final : public Command {
 public:
  explicit SetCommand(CLI::App& program);
  void run() const override;

 private:
  std::vector<Assignment> assignments() const;
  std::vector<PropertyChoice> removals() const;
  void requireOneChoice(const PropertyChoice& choice) const;
  void write(const MetadataEdit& edit) const;

  std::vector<std::string> assignments_;
  std::vector<std::string> removals_;
  std::optional<std::string> start_;
  std::optional<Path> output_;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
