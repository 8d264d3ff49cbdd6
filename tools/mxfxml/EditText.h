#pragma once

#include <string>

#include "Core/Platform/Path.h"
#include "Edit/File.h"

namespace Vantor::Tool {

/// What was edited, on one line: "1 set changed (2 properties), 0 added, 0 removed; written to 1 partition".
std::string summaryOf(const Edit::SaveReport& report);

/// Prints on standard error, a line each, what a merge kept or rejected.
void printRemarks(const Path& file, const Edit::MergeReport& report);
/// The same for partitions that keep their metadata, and for values that many readers do not support.
void printRemarks(const Path& file, const Edit::SaveReport& report);

}  // namespace Vantor::Tool
