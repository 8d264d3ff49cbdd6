#pragma once

#include <string_view>

#include "XMLUtils/Initializer.h"

namespace Vantor::XMLUtils {

/// Whether the loaded XMLUtils uses XQilla. Tests that are compiled with XQilla run with an XMLUtils that is not, too.
inline bool hasXQilla() { return std::u16string_view(Initializer::instance().features()) == u"XPath2 3.0"; }

}  // namespace Vantor::XMLUtils
