#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Platform/Types.h"

/// Text as a terminal shows it, in columns.
namespace Vantor::Tool {

/// Whether an octet of UTF-8 goes on with a character.
inline bool isContinuation(char octet) { return (static_cast<unsigned char>(octet) & 0xc0) == 0x80; }

/// Columns of a character: 2 for wide ones, 0 for those that stand on another one and for format characters, else 1.
std::size_t columnsOf(uint32 character);
/// Columns of a text in UTF-8; an octet that is none counts as one character.
std::size_t columnsOf(std::string_view text);

/// The text without what a terminal would obey: control characters and those that turn the direction of text become
/// "\u000A" and the like, octets that are no UTF-8 become U+FFFD.
std::string printable(std::string_view text);

/// The text in lines of so many columns at most: broken behind a blank, else behind a mark such as "." or "/", else
/// before a capital letter, else anywhere; a blank at a break is left out. Never empty; a character wider than a line
/// has one to itself.
/// @param first  columns of the first line. @param rest  of the others.
std::vector<std::string> wrapped(std::string_view text, std::size_t first, std::size_t rest);

}  // namespace Vantor::Tool
