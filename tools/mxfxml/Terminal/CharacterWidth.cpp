#include "Terminal/CharacterWidth.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "Terminal/CharacterRanges.h"

namespace Vantor::Tool {

namespace {

template <std::size_t Count>
bool isIn(const CharacterRange (&ranges)[Count], uint32 character) {
  const auto next = std::upper_bound(std::begin(ranges), std::end(ranges), character,
                                     [](uint32 value, const CharacterRange& range) { return value < range.first; });
  return next != std::begin(ranges) && character <= std::prev(next)->last;
}

struct Character {
  uint32 code;
  std::size_t octets;
  bool isValid;
};

bool isTrail(char octet) { return (static_cast<uint8>(octet) & 0xc0) == 0x80; }

/// The first character of a text that is not empty.
Character firstOf(std::string_view text) {
  const auto lead = static_cast<uint8>(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t octets = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc2 ? 2 : 1;
  if (octets == 1 || lead > 0xf4 || text.size() < octets) return {0xfffd, 1, false};
  uint32 code = lead & (0x7f >> octets);
  for (std::size_t i = 1; i < octets; ++i) {
    if (!isTrail(text[i])) return {0xfffd, 1, false};
    code = code << 6 | (static_cast<uint8>(text[i]) & 0x3f);
  }
  constexpr uint32 kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isValid = code >= kLowest[octets] && code <= 0x10ffff && (code < 0xd800 || code > 0xdfff);
  return isValid ? Character{code, octets, true} : Character{0xfffd, 1, false};
}

/// Controls, and the embeddings, overrides and isolates of bidirectional text, with which a text could look like
/// another one.
bool isObeyed(uint32 code) {
  return code < 0x20 || (code >= 0x7f && code < 0xa0) || (code >= 0x202a && code <= 0x202e) ||
         (code >= 0x2066 && code <= 0x2069) || code == 0x2028 || code == 0x2029;
}

std::string escaped(uint32 code) {
  char text[8];
  std::snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned>(code));
  return text;
}

bool isLower(char character) {
  return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
}
bool isUpper(char character) { return character >= 'A' && character <= 'Z'; }

bool isMark(char character) { return std::string_view("./,-_:;)]}").find(character) != std::string_view::npos; }

/// Where a line of so many columns ends: at the last break that it has, else at its last character.
std::size_t breakOf(std::string_view text, std::size_t columns) {
  std::size_t at = 0, used = 0, blank = 0, mark = 0, word = 0;
  while (at < text.size()) {
    const auto character = firstOf(text.substr(at));
    used += columnsOf(character.code);
    if (used > columns && at != 0) break;
    at += character.octets;
    if (character.code == ' ') blank = at;
    if (character.octets == 1 && isMark(text[at - 1])) mark = at;
    if (at < text.size() && isLower(text[at - 1]) && isUpper(text[at])) word = at;
  }
  if (at == text.size() || text[at] == ' ') return at;
  for (const auto found : {blank, mark, word}) {
    if (found != 0) return found;
  }
  return at;
}

}  // namespace

std::size_t columnsOf(uint32 character) {
  if (character < 0x300) return 1;
  if (isIn(kZeroWidthCharacters, character)) return 0;
  return isIn(kWideCharacters, character) ? 2 : 1;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto character = firstOf(text.substr(at));
    columns += columnsOf(character.code);
    at += character.octets;
  }
  return columns;
}

std::string printable(std::string_view text) {
  std::string shown;
  for (std::size_t at = 0; at < text.size();) {
    const auto character = firstOf(text.substr(at));
    if (isObeyed(character.code)) {
      shown += escaped(character.code);
    } else {
      shown += character.isValid ? text.substr(at, character.octets) : std::string_view("\xef\xbf\xbd");
    }
    at += character.octets;
  }
  return shown;
}

std::vector<std::string> wrapped(std::string_view text, std::size_t first, std::size_t rest) {
  std::vector<std::string> lines;
  do {
    const auto end = breakOf(text, lines.empty() ? first : rest);
    auto line = text.substr(0, end);
    text.remove_prefix(end);
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && !line.empty() && line.back() == ' ') line.remove_suffix(1);
    lines.emplace_back(line);
  } while (!text.empty());
  return lines;
}

}  // namespace Vantor::Tool
