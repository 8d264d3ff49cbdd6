#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Core/Metadata/SetPath.h"
#include "Core/Platform/Path.h"
#include "Terminal/CSV.h"

/// Edits of many files, from a table.
namespace Vantor::Tool {

/// A row of the table: one edit of one file.
struct PlanRow {
  CSVCell file;                        ///< as it stands in the table
  CSVCell what;                        ///< the property, or the document
  std::optional<PropertyPath> change;  ///< of a property; none for a document
};

/// A file with all edits that the table has for it, which are one.
struct PlannedFile {
  Path file;
  std::optional<Path> copy = {};   ///< what is written in its place; none for the file itself
  std::vector<PlanRow> rows = {};  ///< in the order of the table
};

/// Files in the order of the table.
using Plan = std::vector<PlannedFile>;

/// Reads a table with the columns "file", "path", "value" and, if wanted, "action", in any order: what `mxfxml set`
/// changes. Relative names of files count from the folder of the table.
/// @throws CommandError when the table has mistakes, which are printed with their lines and columns; OtherFileError
/// naming the table when it cannot be read.
Plan readSetPlan(const Path& table);

/// The same with the columns "file" and "document": what `mxfxml import` puts into files.
Plan readImportPlan(const Path& table);

/// The path of the document of a row.
Path documentOf(const Path& table, const PlanRow& row);

/// Lets copies of the files in a folder be written instead.
/// @throws UsageError when two copies would have one name, or one would replace a file of the plan, or the folder is
/// a file.
void writeCopies(Plan& plan, const Path& folder);

}  // namespace Vantor::Tool
