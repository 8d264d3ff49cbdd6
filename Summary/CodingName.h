#pragma once

#include <optional>
#include <string>

#include "Core/Types/UniversalLabel.h"

namespace Vantor::Summary {

/// What people call a coding of pictures or sound, such as "JPEG 2000"; none for labels outside of the nodes of the
/// register of labels (ST 400) that the table behind this has. Octet 8 of the label, its version, does not count.
std::optional<std::string> codingName(const Types::UniversalLabel& label);

}  // namespace Vantor::Summary
