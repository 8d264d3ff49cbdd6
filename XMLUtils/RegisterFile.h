#pragma once

#include "Core/Dictionary/Registers.h"
#include "Core/Platform/Path.h"

namespace Vantor::XMLUtils {

/// Reads one of the XML registers that SMPTE publishes: Groups (ST 395), Elements (ST 335), Types (ST 2003) or Labels
/// (ST 400). The root element tells which one it is, by its name alone: its namespace changes with the years.
///
/// The file is not trusted. It is parsed as `loadDocumentFromFile` parses, within the same limits, but without a
/// document in memory; nothing else is opened for it. Elements that are not asked for are passed over.
///
/// @param into  gets the entries of the kind LEAF, in the order of the file; nothing when the call throws.
/// @throws Exceptions::IOError when the file cannot be read.
/// @throws Exceptions::InvalidFormat when it is no XML, no register, a register of a kind that was read already, or one
///         with an entry that cannot be understood. The message begins with "FILE:LINE: ", or "FILE:LINE:COLUMN: "
///         where the text is not well-formed.
void readRegister(const Path& path, Registers& into);

}  // namespace Vantor::XMLUtils
