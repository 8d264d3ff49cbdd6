#pragma once

#include <cstddef>

#include "Core/Types/SimpleDataType.h"

/// The NULs with which writers end a text, or fill its field. They do not belong to the text, but a changed text keeps
/// them, so that a change that is taken back leaves the octets from before.
namespace Vantor::Types {

/// Their number, in code units; 0 for a value that is no text.
std::size_t finalNULsOf(const SimpleDataType& value);

/// A text with this many final NULs where it has none yet; any other value as it is.
auto_ptr<SimpleDataType> withFinalNULs(auto_ptr<SimpleDataType> value, std::size_t count);

}  // namespace Vantor::Types
