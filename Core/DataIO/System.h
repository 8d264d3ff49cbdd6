#pragma once

#include "Core/Platform/Files.h"

/// What differs between systems, under the names that files have here.
namespace Vantor::DataIO::File {

using namespace Platform::Files;

}  // namespace Vantor::DataIO::File
