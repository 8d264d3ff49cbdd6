#pragma once

#include <string>

#include "Command.h"
#include "DictionaryOptions.h"

namespace Vantor::Tool {

/// `mxfxml dictionary`: prints the sets that the dictionary knows, or what it knows under a name, a key or a tag.
class DictionaryCommand final : public Command {
 public:
  explicit DictionaryCommand(CLI::App& program);
  void run() const override;

 private:
  std::string wanted_;  ///< empty for the list of sets
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
