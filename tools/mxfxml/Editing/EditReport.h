#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CommandLine/EditOptions.h"
#include "Core/Platform/Path.h"
#include "Edit/File.h"

namespace Vantor::Tool {

/// Prints on standard error, a line each, what a merge kept or rejected.
void printRemarks(const Path& file, const Edit::MergeReport& report);
/// The same for values that many readers do not support.
void printRemarks(const Path& file, const std::vector<Edit::LongValue>& values);

/// Saves the edits into a copy, or without one into the file itself, and prints the progress, remarks, and in a line on
/// standard output what was edited. A summary goes to standard error if what was written is not a regular file, which
/// may be standard output. A summary that cannot be written, or a file that a power failure may undo, is a warning and
/// no failure. For interrupts meanwhile see `CopyProgress`.
/// @throws CommandError when the edits would break rules, which are printed; nothing is written then.
void saveEdits(Edit::File& edited, const Path& file, const std::optional<Path>& copy, const EditOptions& options);

/// What saving would change.
struct EditPreview {
  std::string text;  ///< lines: the differences, the findings that they would bring, a summary
  Edit::SaveReport report;
  std::vector<Edit::Finding> refused;  ///< those for which saving is refused
};
/// @param isCopy  a copy is to be written, so that the file itself may be read-only.
/// @throws what `Edit::File::rehearse` throws.
EditPreview previewOf(Edit::File& edited, const EditOptions& options, bool isCopy = false);
/// Prints on standard error, a line each, remarks and hints on what saving would write, or wrote.
void printRemarks(const Path& file, const Edit::SaveReport& report);
/// Why edits with these findings are refused, with the number of rules.
std::string refusalOf(const std::vector<Edit::Finding>& findings);

/// Warns of a file that is written, and that a power failure may undo.
void warnOfDurability(const Path& file, DataIO::File::Durability durability);

/// Prints on standard output what saving would change, and the findings that it would bring.
/// @throws CommandError, after printing, where `saveEdits` does.
void previewEdits(Edit::File& edited, const Path& file, const EditOptions& options);

}  // namespace Vantor::Tool
