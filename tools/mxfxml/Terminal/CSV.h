#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Tables as comma-separated values (RFC 4180).
namespace Vantor::Tool {

struct CSVCell {
  std::string text;    ///< without the quotes around it, and with "" as one quote
  std::size_t line;    ///< where the cell begins, from 1
  std::size_t column;  ///< in characters of this line, from 1
};
using CSVRecord = std::vector<CSVCell>;

/// The records of a table in UTF-8, with or without a byte order mark, its lines ended by CRLF or LF. A first
/// line that only gives the separator, such as "sep=;", is none of them. Lines without any
/// text in their cells are left out, as spreadsheets write them below a table.
/// @param separator  of cells: a comma, a semicolon or a tab.
/// @throws Exceptions::ParseError with line and column for text that is not UTF-8, and for a quote that is not closed
/// or stands where none may be.
std::vector<CSVRecord> readCSV(std::string_view text, char separator);

/// The separator that a first line such as "sep=;" gives, or else that stands in the first line most often outside of
/// quotes: a comma, a semicolon or a tab.
char separatorOf(std::string_view text);

/// The cells as a line that ends with CRLF; quoted where need be.
std::string csvLine(const std::vector<std::string>& cells);

/// "line 3, column 5".
std::string placeOf(const CSVCell& cell);

}  // namespace Vantor::Tool
