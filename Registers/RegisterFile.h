#pragma once

#include "Core/Platform/Path.h"
#include "Registers/Entries.h"

namespace Vantor::Registers {

/// Reads one of the XML registers that SMPTE publishes: Groups (ST 395), Elements (ST 335), Types (ST 2003) or Labels
/// (ST 400). The name of the root element decides which; its namespace changes with the edition.
///
/// The file is not trusted. It is parsed as `XMLUtils::loadDocumentFromFile` parses, within the same limits, but
/// without a document in memory; nothing else is opened for it. Elements that the library does not need are passed
/// over.
///
/// @param into  receives the entries of the kind LEAF, in the order of the file; nothing when the call throws.
/// @throws Exceptions::IOError when the file cannot be read.
/// @throws Exceptions::InvalidFormat when it is not XML, not a register, a second register of its kind, or one with a
///         malformed entry. The message begins with "FILE:LINE: ", or "FILE:LINE:COLUMN: " where the text is not
///         well-formed.
void readRegister(const Path& path, Entries& into);

}  // namespace Vantor::Registers
