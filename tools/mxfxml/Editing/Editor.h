#pragma once

#include <string>
#include <vector>

#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::Tool {

/// The text editor of the user.
class Editor {
 public:
  /// What VISUAL has in the environment, else EDITOR. @throws CommandError with what to set.
  static Editor ofUser();
  /// @param command  a program, with arguments where it has some: on POSIX a command of the shell.
  explicit Editor(std::string command) : command_(std::move(command)) {}

  /// The arguments with which it opens a file at a line. Editors that are not known get the file alone.
  /// @param line  from 1; 0 for none.
  std::vector<std::string> argumentsFor(const Path& file, uint64 line) const;
  /// Opens the file and waits until the editor ends. An interrupt is the editor's meanwhile, not this program's.
  /// @throws CommandError when it cannot be started, or ends with another status than 0.
  void edit(const Path& file, uint64 line) const;

 private:
  std::string command_;
};

}  // namespace Vantor::Tool
