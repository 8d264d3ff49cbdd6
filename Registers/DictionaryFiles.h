#pragma once

#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Core/Platform/Path.h"

namespace Vantor::Registers {

/// Adds the definitions of files to others: dictionary files (docs/dictionary-format.md), the XML registers that SMPTE
/// publishes, or folders that hold Groups.xml, Elements.xml and Types.xml and perhaps Labels.xml. The content of a
/// file tells what it is.
///
/// Registers come first, whatever the order of the files, and what they define takes the place of what is there; they
/// need each other, so that groups, elements and types have to be there together. The dictionary files follow in their
/// order. What only shows when everything is read is left to `Definitions::check`.
/// @throws Exceptions::InvalidFormat or Exceptions::IOError naming the file and, where there is one, the line.
void readDictionaryFiles(const std::vector<Path>& files, Definitions& into);

}  // namespace Vantor::Registers
