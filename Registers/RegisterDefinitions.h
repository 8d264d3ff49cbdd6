#pragma once

#include "Core/Dictionary/Definitions.h"
#include "Registers/Entries.h"

namespace Vantor::Registers {

/// Adds the sets of header metadata, their properties and the enumerations that these use. They replace what is defined
/// already.
///
/// A set is taken when its KLV syntax allows 2-byte tags and lengths and it belongs to header metadata, and so are the
/// sets that it inherits from. Elements and types that no set uses are not checked.
/// @param into  copies what it needs; its sources are the files of the registers.
/// @throws Exceptions::InvalidFormat when one of Groups, Elements and Types was not read, or when their entries do not
///         fit together; the message begins with the file and, where an entry is at fault, its line.
void addDefinitions(const Entries& entries, Definitions& into);

/// Adds the labels, by key; they replace what is defined already. A label without a name has its symbol for one.
/// @throws Exceptions::InvalidFormat when Labels was not read, or an entry is wrong.
void addLabels(const Entries& entries, Definitions& into);

}  // namespace Vantor::Registers
