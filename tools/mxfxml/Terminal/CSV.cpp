#include "Terminal/CSV.h"

#include <algorithm>
#include <optional>

#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Terminal/CharacterWidth.h"

namespace Vantor::Tool {

namespace {

using Exceptions::ParseError;
using Exceptions::raise;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view withoutMark(std::string_view text) {
  const bool hasMark = text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
  return hasMark ? text.substr(kByteOrderMark.size()) : text;
}

constexpr std::string_view kSeparators = ",;\t";
/// A first line with a separator behind it is for the program that opens the table. Spreadsheets write it.
constexpr std::string_view kSeparatorIs = "sep=";

/// Nothing where the text does not begin with such a line.
std::optional<char> separatorGivenIn(std::string_view text) {
  const auto end = text.find_first_of("\r\n");
  const auto line = text.substr(0, end);
  const bool isGiven = line.size() == kSeparatorIs.size() + 1 && line.substr(0, kSeparatorIs.size()) == kSeparatorIs;
  if (!isGiven || kSeparators.find(line.back()) == std::string_view::npos) return std::nullopt;
  return line.back();
}

/// Walks over the characters of a table.
class CSVReader {
 public:
  CSVReader(std::string_view text, char separator) : text_(text), separator_(separator) {}

  std::vector<CSVRecord> run() {
    std::vector<CSVRecord> records;
    if (separatorGivenIn(text_)) skipLine();
    while (!isAtEnd()) {
      auto record = readRecord();
      const bool isEmpty =
          std::all_of(record.begin(), record.end(), [](const CSVCell& cell) { return cell.text.empty(); });
      if (!isEmpty) records.push_back(std::move(record));
    }
    return records;
  }

 private:
  CSVRecord readRecord() {
    CSVRecord record;
    do {
      CSVCell cell{"", line_, column_};
      cell.text = !isAtEnd() && text_[at_] == '"' ? readQuoted() : readPlain();
      requireUTF8(cell);
      record.push_back(std::move(cell));
    } while (takeSeparator());
    if (!isAtEnd()) skipLineEnd();
    return record;
  }

  std::string readPlain() {
    std::string text;
    while (!isAtEnd() && !isCellEnd()) {
      if (text_[at_] == '"') raise<ParseError>("{}: a quote within a cell that does not begin with one", place());
      text += take();
    }
    return text;
  }

  std::string readQuoted() {
    const auto opened = place();
    std::string text;
    take();
    while (true) {
      if (isAtEnd()) raise<ParseError>("{}: the quote is not closed", opened);
      const char character = take();
      if (character != '"') {
        text += character;
      } else if (!isAtEnd() && text_[at_] == '"') {
        text += take();
      } else {
        break;
      }
    }
    if (!isAtEnd() && !isCellEnd()) raise<ParseError>("{}: text behind the quote that closes a cell", place());
    return text;
  }

  static void requireUTF8(const CSVCell& cell) {
    if (Utils::wstringToString(Utils::stringToWstring(cell.text)) == cell.text) return;
    raise<ParseError>("{}: the cell is not text in UTF-8", placeOf(cell));
  }

  bool takeSeparator() {
    if (isAtEnd() || text_[at_] != separator_) return false;
    take();
    return true;
  }

  void skipLine() {
    while (!isAtEnd() && !isCellEnd()) take();
    while (takeSeparator()) continue;
    if (!isAtEnd()) skipLineEnd();
  }

  void skipLineEnd() {
    if (text_[at_] == '\r') take();
    if (!isAtEnd()) take();
  }

  char take() {
    const char character = text_[at_++];
    if (character == '\n') {
      ++line_;
      column_ = 1;
    } else if (!isContinuation(character)) {
      ++column_;
    }
    return character;
  }

  bool isAtEnd() const { return at_ == text_.size(); }
  bool isCellEnd() const {
    const auto next = text_.substr(at_, 2);
    return next[0] == separator_ || next[0] == '\n' || next == "\r\n" || next == "\r";
  }
  std::string place() const { return placeOf({"", line_, column_}); }

  std::string_view text_;
  char separator_;
  std::size_t at_ = 0, line_ = 1, column_ = 1;
};

bool needsQuotes(const std::string& cell) {
  const bool hasBlankEnds = !cell.empty() && (cell.front() == ' ' || cell.back() == ' ');
  return hasBlankEnds || cell.find_first_of(",;\t\"\r\n") != std::string::npos;
}

}  // namespace

std::vector<CSVRecord> readCSV(std::string_view text, char separator) {
  return CSVReader(withoutMark(text), separator).run();
}

char separatorOf(std::string_view text) {
  text = withoutMark(text);
  if (const auto given = separatorGivenIn(text)) return *given;
  std::size_t counts[kSeparators.size()] = {};
  bool isQuoted = false;
  for (const char character : text.substr(0, text.find('\n'))) {
    if (character == '"') isQuoted = !isQuoted;
    const auto at = kSeparators.find(character);
    if (!isQuoted && at != std::string_view::npos) ++counts[at];
  }
  return kSeparators[static_cast<std::size_t>(std::max_element(std::begin(counts), std::end(counts)) - counts)];
}

std::string csvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (const auto& cell : cells) {
    if (&cell != &cells.front()) line += ',';
    if (!needsQuotes(cell)) {
      line += cell;
      continue;
    }
    line += '"';
    for (const char character : cell) line += character == '"' ? std::string("\"\"") : std::string(1, character);
    line += '"';
  }
  return line + "\r\n";
}

std::string placeOf(const CSVCell& cell) {
  return "line " + std::to_string(cell.line) + ", column " + std::to_string(cell.column);
}

}  // namespace Vantor::Tool
