#pragma once

#include <filesystem>

namespace Vantor {

/// The name of a file, in the system's own encoding.
using Path = std::filesystem::path;

}  // namespace Vantor
