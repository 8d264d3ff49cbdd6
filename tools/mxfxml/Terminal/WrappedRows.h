#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Vantor::Tool {

/// Names with details, for people: the names in a column, the details beside them with commas between, wrapped to a
/// width under one another. A detail is only cut, with "...", where it is wider than the room beside the names.
class WrappedRows {
 public:
  void add(std::string name, std::vector<std::string> details) {
    rows_.push_back({std::move(name), std::move(details)});
  }
  /// @param width  of a line, in characters; names that do not leave half of it stand on lines of their own.
  std::string text(std::size_t width) const;

 private:
  struct Row {
    std::string name;
    std::vector<std::string> details;
  };

  static std::string linesOf(const Row& row, std::size_t column, std::size_t room);

  std::vector<Row> rows_;
};

}  // namespace Vantor::Tool
