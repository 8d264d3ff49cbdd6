#pragma once

#include "Command.h"

namespace Vantor::Tool {

/// `mxfxml recover`: puts a file back that a change in place left half-way.
class RecoverCommand final : public Command {
 public:
  explicit RecoverCommand(CLI::App& program);
  void run() const override;
};

}  // namespace Vantor::Tool
