#pragma once

#include <string>
#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::JSON {

/// A part of a document.
struct Place {
  std::string pointer = {};  ///< a JSON pointer (RFC 6901), from the value that is read
  uint32 line = 0;           ///< of the document; 0 when it is not known

  /// The value that was read is a part of another one.
  /// @param step  a name or an index, as in a JSON pointer before its escapes. @param partLine  of the part.
  void isWithin(std::string_view step, uint32 partLine);
};

}  // namespace Vantor::JSON
