#pragma once

#include <string>
#include <vector>

#include "Edit/Check.h"

namespace Vantor::Tool {

/// A finding on one line, with severity and code.
std::string lineOf(const Edit::Finding& finding);

/// Why a text is the code of no rule, with the nearest one; empty when it is one.
std::string whyNoRule(const std::string& code);

}  // namespace Vantor::Tool
