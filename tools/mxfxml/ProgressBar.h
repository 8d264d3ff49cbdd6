#pragma once

#include "Core/MXF/HeaderMetadataReplacement.h"

namespace Vantor::Tool {

/// Shows the progress of a copy on standard error, if that is a terminal.
MXF::Progress progressBar();

}  // namespace Vantor::Tool
