#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

namespace Vantor {

/// Whether a test can run: returns `isFound`, the result of the search for a program that it needs. Without the program
/// the test is skipped, and fails in CI, whose environment has the variable CI: help2man, groff, zsh, Python and its
/// jsonschema are installed there.
///
/// The readers that scripts/compare-readers calls, mediainfo and ffprobe, are exempt: scripts/install-dependencies does
/// not install them, and without them Readers.FindTheSameValues is skipped in CI, too.
inline bool isInstalled(const char* name, bool isFound) {
  EXPECT_TRUE(isFound || std::getenv("CI") == nullptr) << name << " is not installed";
  return isFound;
}

}  // namespace Vantor
