#include "DocumentSize.h"

#include <limits>

#include "ErrorText.h"

namespace Vantor::Tool {

uint32 documentSize(uint64 bytes) {
  constexpr auto kMost = std::numeric_limits<uint32>::max();
  if (bytes <= kMost) return static_cast<uint32>(bytes);
  throw CommandError("the metadata make a document of " + std::to_string(bytes) + " bytes; no more than " +
                     std::to_string(kMost) + " can be read");
}

}  // namespace Vantor::Tool
