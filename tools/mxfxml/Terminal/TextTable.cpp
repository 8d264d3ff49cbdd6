#include "Terminal/TextTable.h"

#include <algorithm>

#include "Terminal/CharacterWidth.h"

namespace Vantor::Tool {

std::string TextTable::text() const {
  std::vector<std::size_t> widths(columns_.size());
  for (const Row& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  std::string text;
  for (const Row& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - columnsOf(row[i]), ' ');
      line += "  " + (columns_[i] == Align::kRight ? padding + row[i] : row[i] + padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

}  // namespace Vantor::Tool
