#pragma once

#include <string>

#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// A file in a folder of its own among the temporary ones, which only the user can read. Both are removed at the end,
/// unless kept.
class PrivateFile {
 public:
  /// @param name  of the file, without folder.
  /// @throws CommandError with the system's reason when it cannot be made.
  PrivateFile(const Path& name, const std::string& bytes);
  ~PrivateFile();
  PrivateFile(const PrivateFile&) = delete;
  PrivateFile& operator=(const PrivateFile&) = delete;

  const Path& path() const { return path_; }
  /// What it has now. @throws CommandError when it cannot be read.
  std::string bytes() const;
  void keep() { isKept_ = true; }

 private:
  Path folder_;
  Path path_;
  bool isKept_ = false;
};

}  // namespace Vantor::Tool
