#pragma once

#include <string>

#include "Core/DataIO/File.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// Tells what a command has done, in a line on standard output; on standard error where the file that it wrote is no
/// regular one, which may be standard output. As the file is written by now, what is not taken, or may not last, makes
/// a warning on standard error and no failure.
void tellDone(const std::string& summary, const Path& file, DataIO::File::Durability durability);

}  // namespace Vantor::Tool
