#pragma once

#include <string>

#include "ScratchFolder.h"

namespace Vantor::Tool {

/// A copy of a file of tests/data in which the last occurrence of some bytes has become others.
class ChangedSample {
 public:
  /// @param to  as long as `from`.
  ChangedSample(const std::string& name, const std::string& from, const std::string& to);
  std::string path() const { return folder_.path("changed.mxf"); }

 private:
  ScratchFolder folder_;
};

}  // namespace Vantor::Tool
