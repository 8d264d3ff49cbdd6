#pragma once

#include <string>

#include "Core/Platform/Types.h"
#include "Edit/Check.h"
#include "Editing/Editor.h"
#include "Editing/PrivateFile.h"

namespace Vantor::Tool {

/// A document in the user's editor.
class EditedText {
 public:
  /// @param name  of its file. @throws as `PrivateFile`.
  EditedText(const Path& name, std::string exported, Editor editor)
      : file_(name, exported), exported_(std::move(exported)), editor_(std::move(editor)) {}

  const Path& path() const { return file_.path(); }
  /// Opens it at the line that was set last and waits for the editor. Keeps a changed file when that fails, and prints
  /// its name. @throws as `Editor::edit`.
  void open();
  /// Whether its bytes are others than at first.
  bool hasChanged() const { return file_.bytes() != exported_; }
  /// Where to open it next; 0 for no line.
  void setLine(uint64 line) { line_ = line; }
  /// Does not remove it at the end, and prints its name.
  void keep();

  /// The line of what a rule forbids, as far as the text shows it; else 0.
  uint64 lineOf(const Edit::Finding& finding) const;

 private:
  PrivateFile file_;
  std::string exported_;
  Editor editor_;
  uint64 line_ = 0;
};

}  // namespace Vantor::Tool
