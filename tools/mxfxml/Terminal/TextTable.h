#pragma once

#include <string>
#include <vector>

namespace Vantor::Tool {

/// Text in columns, for people. Cells are UTF-8 without control characters; a column is as wide as its widest cell.
class TextTable {
 public:
  enum class Align { kLeft, kRight };
  using Row = std::vector<std::string>;

  /// One column per entry.
  explicit TextTable(std::vector<Align> columns) : columns_(std::move(columns)) {}
  explicit TextTable(std::size_t columns) : columns_(columns, Align::kLeft) {}

  /// @param cells  as many as there are columns, or fewer.
  void addRow(Row cells) { rows_.push_back(std::move(cells)); }

  /// Every row on a line of its own: two spaces before each column, none behind the last.
  std::string text() const;

 private:
  std::vector<Align> columns_;
  std::vector<Row> rows_;
};

}  // namespace Vantor::Tool
