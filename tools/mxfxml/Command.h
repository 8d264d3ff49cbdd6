#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// One subcommand of the program. Its constructor adds it and its options; after parsing, the chosen one is run.
class Command {
 public:
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  bool isChosen() const { return app_->parsed(); }
  std::string name() const { return app_->get_name(); }
  /// The file that messages are about.
  const Path& input() const { return input_; }
  /// Does the whole task. When it throws, nothing was written to an output, unless the output failed or shows what is
  /// wrong.
  virtual void run() const = 0;

 protected:
  /// @param program  keeps the subcommand; lives longer than this object.
  Command(CLI::App& program, const std::string& name, const std::string& description)
      : app_(program.add_subcommand(name, description)) {}

  CLI::App& app() { return *app_; }
  Path& input() { return input_; }

 private:
  CLI::App* app_;
  Path input_;
};

}  // namespace Vantor::Tool
