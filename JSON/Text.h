#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "JSON/Value.h"

/// JSON text (RFC 8259) to values and back. UTF-8 only, with or without a byte order mark.
namespace Vantor::JSON {

/// A value may stand in this many arrays and objects, the outermost included.
inline constexpr std::size_t kMaximumDepth = 32;

/// The text of a value, indented by two spaces a level, without a line feed at its end. Octets that are no UTF-8, as in
/// a file name, become U+FFFD.
/// @param level  of indentation of all lines but the first.
std::string toText(const Value& value, std::size_t level = 0);
/// The same on one line.
std::string toLine(const Value& value);

/// A part of a document: a member of the outermost object, or an item of such a member.
struct Part {
  std::string name;                       ///< of the member
  std::optional<std::size_t> index = {};  ///< of the item, from 0; none for a member that is no array
  Value value = {};
};

/// Reads a document part by part, so that only one of them is in memory at a time. Members that are arrays are handed
/// over item by item, and one without items as an empty array.
/// @param take  called for each part in the order of the text. What it throws ends the reading.
/// @throws Exceptions::ParseError with line and column, and with the set where it is in one, for a text that is no
/// JSON, whose outermost value is no object, that has a member twice, or that nests deeper than `kMaximumDepth`.
void readParts(std::string_view text, const std::function<void(Part part)>& take);

/// Reads a document as a whole. @throws as above.
Value fromText(std::string_view text);

/// How messages name a set's object: its "set" and "instanceUID", as far as it has them.
std::string nameOfSet(const Value& set);

/// Whether a text looks like a JSON document: its first character is '{' or '[', apart from white space and a byte
/// order mark, and no NUL follows, as in UTF-16.
bool looksLikeJSON(std::string_view text);

}  // namespace Vantor::JSON
