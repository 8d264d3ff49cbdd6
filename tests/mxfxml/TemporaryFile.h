#pragma once

#include <cstdint>
#include <filesystem>

namespace Vantor::Tool {

/// How much is written of the new file that a folder is about to get, in bytes; 0 when there is none yet, or no more.
inline std::uintmax_t temporarySize(const std::filesystem::path& folder) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const auto size = std::filesystem::file_size(entry.path(), error);
    if (!error && entry.path().extension() == ".tmp") return size;
  }
  return 0;
}

}  // namespace Vantor::Tool
