#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace Vantor {

/// One row of the dictionary format: words between white space. An indented row belongs to the heading above it.
class DictionaryRow {
 public:
  /// No kind of row has more; one that does keeps its first words.
  static constexpr std::size_t kMaxWords = 8;

  /// @param line  without its line feed; a carriage return at its end is ignored.
  explicit DictionaryRow(std::string_view line);

  /// Whether there is nothing in the row but white space or a comment.
  bool isBlank() const { return count_ == 0; }
  bool isIndented() const { return isIndented_; }
  /// How many words there are, those beyond `kMaxWords` counted.
  std::size_t size() const { return count_; }
  /// An empty text beyond the last word.
  std::string_view operator[](std::size_t place) const {
    return place < kMaxWords ? words_[place] : std::string_view();
  }
  /// Everything from a word on, as it stands in the row, without white space at the end.
  std::string_view from(std::size_t place) const;

 private:
  std::array<std::string_view, kMaxWords> words_{};
  std::size_t count_ = 0;
  bool isIndented_ = false;
  std::string_view line_;
};

/// A word between single quotes, for messages; cut after 100 octets.
std::string quotedWord(std::string_view word);

}  // namespace Vantor
