#pragma once

#include <string>

#include "Core/DataIO/File.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// Prints what a command has done, in a line on standard output; on standard error if the file that it wrote is not a
/// regular one, which may be standard output. The file is written by now, so a summary that cannot be written, or a
/// file that a power failure may undo, is a warning on standard error and no failure.
void tellDone(const std::string& summary, const Path& file, DataIO::File::Durability durability);

}  // namespace Vantor::Tool
