#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Registers/DefinitionNames.h"

namespace Vantor::Registers {

/// Makes symbols of labels. Labels are found by symbol and by name, whatever the case and the punctuation, so that a
/// file's own label gets none of those, and no common name.
class LabelNames {
 public:
  /// @param definitions  whose labels and common names count beside the built-in labels.
  explicit LabelNames(const Definitions& definitions);

  void want(std::string_view name, const KLV::Key& key);
  /// In the order of `want`.
  std::vector<std::string> take() { return names_.take(); }

 private:
  void add(std::string_view name);

  DefinitionNames names_;
  std::unordered_set<std::string> folded_;
};

}  // namespace Vantor::Registers
