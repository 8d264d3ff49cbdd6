#include "Core/Dictionary/DictionaryTextWriter.h"

#include <algorithm>

namespace Vantor {

namespace {

Templates::vector<std::size_t> widthsOf(const DictionaryTextWriter::Table& rows) {
  Templates::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.columns.size()), 0);
    for (std::size_t i = 0; i < row.columns.size(); ++i) widths[i] = std::max(widths[i], row.columns[i].size());
  }
  return widths;
}

}  // namespace

DictionaryTextWriter::DictionaryTextWriter(std::string_view comment) {
  row({}, "dictionary 1");
  row({}, "# " + std::string(comment));
}

void DictionaryTextWriter::row(const Origin& origin, std::string_view text) {
  written_.text.append(text).append(1, '\n');
  written_.origins.push_back(origin);
}

void DictionaryTextWriter::table(const Table& rows) {
  const auto widths = widthsOf(rows);
  std::string text;
  for (const auto& one : rows) {
    text.clear();
    std::size_t column = 0;
    for (std::size_t i = 0; i < one.columns.size(); ++i) {
      text.resize(column, ' ');
      text.append("  ").append(one.columns[i]);
      column += 2 + widths[i];
    }
    row(one.origin, text);
  }
}

}  // namespace Vantor
