#pragma once

#include <string>
#include <string_view>

#include "Core/Dictionary/Definition.h"
#include "Core/KLV/Key.h"
#include "Registers/Entries.h"

/// What the registers (ST 335, ST 395, ST 400, ST 2003) have about their entries for people, as a table that is part of
/// the library.
namespace Vantor::Registers {

/// A row for every entry that has a definition or a document: key, document and definition, with tabs between them.
std::string tableOfDescriptions(const Entries& entries);

/// Finds an entry in such a table; all sixteen octets count. Takes time in proportion to the table.
/// @return parts of the table; empty for an entry that it does not have.
Explanation explanationIn(std::string_view table, const KLV::Key& key);

/// The same in the table of the library, for a set, a property, a label or a type by its registered key. Any thread may
/// call.
Explanation registeredExplanation(const KLV::Key& key);
/// The same for an enumeration by its name.
Explanation registeredExplanation(std::string_view enumeration);

}  // namespace Vantor::Registers
