#pragma once

#include <memory>
#include <optional>

#include "CommandLine/DictionaryOptions.h"
#include "Core/Platform/DocumentLine.h"
#include "Edit/File.h"
#include "Input/InputDocument.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

/// A document cannot be read, or not be put into a file. The text names it.
class DocumentError : public OtherFileError, public Exceptions::DocumentLine {
 public:
  explicit DocumentError(const std::string& text, uint64 line = 0) : OtherFileError(text), DocumentLine(line) {}
};
/// The file has changed since the document was exported, and the options refuse that.
class OutdatedDocument final : public DocumentError {
 public:
  using DocumentError::DocumentError;
};

/// Puts the edits of a document into an MXF file. The options outlive this object.
class ImportEdit {
 public:
  struct Options {
    const DictionaryOptions& dictionary;
    const Edit::MergeOptions& merge;
    const std::optional<MXF::PartitionChoice>& partition;  ///< none for the one that the document describes
    bool keepsGoing = false;  ///< merge the rest when a part of the document cannot be merged
    bool resumes = false;     ///< a document whose edits the file has already is fine
  };
  struct Merged {
    bool isWhole = true;   ///< all of the document was merged
    bool isThere = false;  ///< the file has the edits already: it was changed since the export, by this document
  };

  /// Reads the document. Warns of a description that is damaged.
  /// @param format  none for what the first character shows.
  /// @throws DocumentError when that fails; UsageError for options that do not fit the document.
  ImportEdit(Path documentFile, std::optional<DocumentFormat> format, Path file, const Options& options);

  /// The partition to edit; none for the header partition and all that repeat it.
  std::optional<MXF::PartitionChoice> partition() const;
  /// Opens the MXF file.
  /// @param isInPlace  the file itself will change: a change of it that was stopped is undone first, with a message.
  /// @throws OtherFileError naming the file.
  std::unique_ptr<Edit::File> open(bool isInPlace) const;
  /// Merges the document into the metadata in memory. Prints what could not be read or merged.
  /// @throws DocumentError when nothing is to be saved, or OtherFileError naming the file for rejected edits.
  Merged merge(Edit::File& file) const;

 private:
  Edit::EditedDocument readFor(Edit::File& file, InputProblems& problems) const;
  Edit::MergeReport mergeInto(Edit::File& file, const Edit::EditedDocument& edited, Merged& merged) const;
  bool hasEdits(Edit::File& file) const;

  Path documentFile_;
  InputDocument document_;
  Path file_;
  Options options_;
};

}  // namespace Vantor::Tool
