#pragma once

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "ScratchFolder.h"
#include "tests/Installed.h"

namespace Vantor::Tool {

/// Validates documents against the schema.
class JSONSchema : public testing::Test {
 protected:
  /// The exit code of the script; the test is skipped where the script misses its library, but not in CI.
  int validate(const std::vector<std::string>& files) {
    constexpr int kLibraryIsMissing = 77;
    std::string command = "python3 '" VANTOR_TEST_DATA_DIR "/../../scripts/check-json'";
    for (const auto& file : files) command += " '" + file + "'";
    const int status = std::system((command + " >'" + folder.path("problems") + "' 2>&1").c_str());
    isMissing = !isInstalled("python3-jsonschema", WEXITSTATUS(status) != kLibraryIsMissing);
    return WEXITSTATUS(status);
  }

  ScratchFolder folder;
  bool isMissing = false;
};

}  // namespace Vantor::Tool
