#pragma once

#include "Command.h"

namespace Vantor::Tool {

/// `mxfxml recover`: undoes a change in place that was stopped half-way.
class RecoverCommand final : public Command {
 public:
  explicit RecoverCommand(CLI::App& program);
  void run() const override;
};

}  // namespace Vantor::Tool
