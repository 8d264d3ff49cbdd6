#include "Core/Dictionary/DictionaryRow.h"

namespace Vantor {

namespace {

constexpr std::size_t kMostQuoted = 100;  // octets

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r'; }

}  // namespace

DictionaryRow::DictionaryRow(std::string_view line) : isIndented_(!line.empty() && isSpace(line.front())), line_(line) {
  while (!line_.empty() && isSpace(line_.back())) line_.remove_suffix(1);
  for (std::size_t at = 0; at < line_.size();) {
    while (isSpace(line_[at])) ++at;
    if (count_ == 0 && line_[at] == '#') return;
    std::size_t end = at;
    while (end < line_.size() && !isSpace(line_[end])) ++end;
    if (count_ < kMaxWords) words_[count_] = line_.substr(at, end - at);
    ++count_;
    at = end;
  }
}

std::string_view DictionaryRow::from(std::size_t place) const {
  const std::string_view word = (*this)[place];
  if (word.empty()) return {};
  return line_.substr(static_cast<std::size_t>(word.data() - line_.data()));
}

std::string quoted(std::string_view word) {
  if (word.size() <= kMostQuoted) return "'" + std::string(word) + "'";
  std::size_t end = kMostQuoted;
  while (end > 0 && (static_cast<unsigned char>(word[end]) & 0xC0) == 0x80) --end;  // not within a character of UTF-8
  return "'" + std::string(word.substr(0, end)) + "...'";
}

}  // namespace Vantor
