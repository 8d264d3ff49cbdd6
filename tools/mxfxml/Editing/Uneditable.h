#pragma once

#include <string>

#include "Core/Platform/Path.h"

/// Files that are not safe to edit: damaged, cut off, or not finished.
namespace Vantor::Tool {

/// Refuses such a file before anybody looks for the right spelling.
/// @param isForced  as `Edit::SaveOptions` has it.
/// @throws CommandError or OtherFileError with the reason and the way around.
void refuseUneditable(const Path& file, bool isForced);

/// The way around for such a file: "; --force ..."; empty for one that can be edited, or not be read.
std::string wayAround(const Path& file);

}  // namespace Vantor::Tool
