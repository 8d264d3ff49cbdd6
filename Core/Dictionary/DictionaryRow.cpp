#include "Core/Dictionary/DictionaryRow.h"

#include "Core/Dictionary/CharacterClass.h"

namespace Vantor {

namespace {

constexpr std::size_t kMostQuoted = 100;  // octets

bool isSpace(char c) { return CharacterClass::is(c, CharacterClass::kSpace); }

}  // namespace

DictionaryRow::DictionaryRow(std::string_view line) : isIndented_(!line.empty() && isSpace(line.front())), line_(line) {
  while (!line_.empty() && isSpace(line_.back())) line_.remove_suffix(1);
  const char* at = line_.data();
  const char* const end = at + line_.size();
  while (at != end) {
    while (isSpace(*at)) ++at;  // the last character is none
    if (count_ == 0 && *at == '#') return;
    const char* const word = at;
    while (at != end && !isSpace(*at)) ++at;
    if (count_ < kMaxWords) words_[count_] = std::string_view(word, static_cast<std::size_t>(at - word));
    ++count_;
  }
}

std::string_view DictionaryRow::from(std::size_t place) const {
  const std::string_view word = (*this)[place];
  if (word.empty()) return {};
  return line_.substr(static_cast<std::size_t>(word.data() - line_.data()));
}

std::string quotedWord(std::string_view word) {
  if (word.size() <= kMostQuoted) return "'" + std::string(word) + "'";
  std::size_t end = kMostQuoted;
  while (end > 0 && (static_cast<unsigned char>(word[end]) & 0xC0) == 0x80) --end;  // not within a character of UTF-8
  return "'" + std::string(word.substr(0, end)) + "...'";
}

}  // namespace Vantor
