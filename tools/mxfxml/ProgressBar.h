#pragma once

#include "Core/MXF/HeaderMetadataReplacement.h"

namespace Vantor::Tool {

/// Shows on standard error how far copying a file has come, where that is a terminal; nothing elsewhere.
MXF::Progress progressBar();

}  // namespace Vantor::Tool
