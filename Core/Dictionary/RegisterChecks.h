#pragma once

#include <string>

#include "Core/Dictionary/Registers.h"

namespace Vantor {

/// A symbol is a word that can stand in a row, and in XML: it begins with a letter or '_' and goes on with these,
/// digits, '-' and '.', all of ASCII.
/// @return the symbol.
/// @throws Exceptions::InvalidFormat when it is none.
const std::string& checkedSymbol(const Registers& registers, const std::string& symbol, const Origin& origin);

/// The same for the number of a value of an enumeration, which is decimal.
const std::string& checkedNumber(const Registers& registers, const std::string& number, const Origin& origin);

}  // namespace Vantor
