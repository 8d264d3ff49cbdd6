#pragma once

#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Core/Platform/Path.h"

namespace Vantor::Registers {

/// Reads definitions from files: dictionary files (docs/dictionary-format.md), the XML registers that SMPTE publishes,
/// or folders with Groups.xml, Elements.xml, Types.xml and perhaps Labels.xml. Files are recognised by content.
///
/// Registers are read first, whatever the order of the files, and replace what is defined already; Groups, Elements and
/// Types are needed together. Dictionary files follow in their order. Checks that need all definitions are left to
/// `Definitions::check`.
/// @throws Exceptions::InvalidFormat or Exceptions::IOError naming the file and, where there is one, the line.
void readDictionaryFiles(const std::vector<Path>& files, Definitions& into);

}  // namespace Vantor::Registers
