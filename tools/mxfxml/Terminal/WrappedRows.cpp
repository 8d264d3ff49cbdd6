#include "Terminal/WrappedRows.h"

#include <algorithm>
#include <utility>

#include "Terminal/CharacterWidth.h"

namespace Vantor::Tool {

namespace {

constexpr std::size_t kMargin = 2;
constexpr std::size_t kLeastRoom = 16;

std::string cutTo(std::size_t width, std::string text) {
  if (columnsOf(text) <= width) return text;
  while (!text.empty() && columnsOf(text) + 3 > width) {
    while (isContinuation(text.back())) text.pop_back();
    text.pop_back();
  }
  return text + "...";
}

/// The lines of the details.
std::vector<std::string> wrappedDetails(const std::vector<std::string>& details, std::size_t room) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < details.size(); ++i) {
    const auto detail = cutTo(room - 1, details[i]) + (i + 1 < details.size() ? "," : "");
    auto& line = lines.back();
    const bool fits = line.empty() || columnsOf(line) + 1 + columnsOf(detail) <= room;
    if (fits) line += (line.empty() ? "" : " ") + detail;
    if (!fits) lines.push_back(detail);
  }
  return lines;
}

}  // namespace

std::string WrappedRows::text(std::size_t width) const {
  std::size_t column = 0;
  for (const auto& row : rows_) {
    const auto end = kMargin + columnsOf(row.name) + kMargin;
    if (end <= width / 2) column = std::max(column, end);
  }
  column = std::max(column, 2 * kMargin);
  const std::size_t room = width > column + kLeastRoom ? width - column : kLeastRoom;
  std::string text;
  for (const auto& row : rows_) text += linesOf(row, column, room);
  return text;
}

std::string WrappedRows::linesOf(const Row& row, std::size_t column, std::size_t room) {
  std::string text;
  std::string line = std::string(kMargin, ' ') + row.name;
  for (const auto& details : wrappedDetails(row.details, room)) {
    const bool isFull = columnsOf(line) + kMargin > column;
    if (isFull && !details.empty()) text += std::exchange(line, "") + "\n";
    if (!details.empty()) line += std::string(column - columnsOf(line), ' ') + details;
    text += std::exchange(line, "") + "\n";
  }
  return text;
}

}  // namespace Vantor::Tool
