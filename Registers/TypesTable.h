#pragma once

#include <string>
#include <string_view>

#include "Registers/Entries.h"

/// The types of the Types register (ST 2003) as a table that is part of the library. Files refer to these types without
/// defining them.
namespace Vantor::Registers {

/// A row for every type of the register: key, symbol, kind, octets of an integer behind 's' or 'u' for its sign, or
/// '-', and the key of its base, or '-'. Values of enumerations are left out.
std::string tableOfTypes(const Entries& entries);

/// Reads such a table. For a text that is known to be right: words that are none of the above are taken for '-'.
Templates::vector<TypeEntry> typesOfTable(std::string_view table);

/// The types of the table in the library. Read by the first caller; any thread may call.
const Templates::vector<TypeEntry>& registeredTypes();

}  // namespace Vantor::Registers
