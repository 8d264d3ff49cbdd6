#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Core/Dictionary/RegisterText.h"

namespace Vantor {

/// Writes rows of the dictionary format and keeps where each came from.
class DictionaryTextWriter {
 public:
  /// Columns of one indented row.
  struct TableRow {
    Origin origin;
    Templates::vector<std::string> columns;
  };
  using Table = Templates::vector<TableRow>;

  /// Begins the text.
  /// @param comment  one line that says what it was made from.
  explicit DictionaryTextWriter(std::string_view comment);

  void blank() { row({}, ""); }
  /// @param text  without line breaks.
  void row(const Origin& origin, std::string_view text);
  /// Indented rows, columns aligned.
  void table(const Table& rows);

  DictionaryText result() && { return std::move(written_); }

 private:
  DictionaryText written_;
};

}  // namespace Vantor
