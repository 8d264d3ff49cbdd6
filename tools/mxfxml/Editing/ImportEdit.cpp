#include "Editing/ImportEdit.h"

#include <algorithm>
#include <utility>

#include "CommandLine/LimitOptions.h"
#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Path.h"
#include "Editing/EarlierEdit.h"
#include "Editing/EditReport.h"
#include "Input/StoppedChange.h"
#include "Report/DiagnosticText.h"
#include "Report/ImportedNames.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kRestLeft = "; nothing is written; --keep-going writes the rest";

/// To be called in a catch clause.
[[noreturn]] void throwDocumentError(const Path& document) {
  throw DocumentError(currentExceptionText(document), currentExceptionLine());
}

template <class Action>
auto namingDocument(const Path& document, Action action) {
  try {
    return action();
  } catch (...) {
    throwDocumentError(document);
  }
}

InputDocument readInput(const Path& file, std::optional<DocumentFormat> format) {
  return namingDocument(file, [&] { return InputDocument(file, format ? *format : requiredFormatOf(file)); });
}

[[noreturn]] void refuseDocument(const Path& document, const Path& file, const Exceptions::InvalidFormat& error) {
  const auto text =
      Platform::pathToUTF8(document) + ": cannot be put into " + Platform::pathToUTF8(file) + ": " + error.message();
  if (dynamic_cast<const Edit::FileHasChanged*>(&error) != nullptr) throw OutdatedDocument(text);
  const bool isOfOtherFile = dynamic_cast<const Edit::DocumentOfOtherFile*>(&error) != nullptr;
  throw DocumentError(text + (isOfOtherFile ? "; --merge-anyway merges it all the same" : ""),
                      Exceptions::documentLineOf(error));
}

}  // namespace

ImportEdit::ImportEdit(Path documentFile, std::optional<DocumentFormat> format, Path file, const Options& options)
    : documentFile_(std::move(documentFile)),
      document_(readInput(documentFile_, format)),
      file_(std::move(file)),
      options_(options) {
  if (document_.isDescriptionDamaged()) {
    printMessage(Platform::pathToUTF8(documentFile_) +
                 ": warning: the document's description of itself is damaged, and is ignored");
  }
  const bool isPart = options_.merge.isStructuralOnly || !options_.merge.start.empty();
  if (isPart && document_.isJSON()) {
    throw UsageError("--structural-only and --start are for XML; JSON describes itself, or has all sets");
  }
  if (document_.partition() && isPart) {
    throw UsageError("--structural-only and --start are for documents that do not describe themselves");
  }
}

std::unique_ptr<Edit::File> ImportEdit::open(bool isInPlace) const {
  auto dictionary = options_.dictionary.load(document_.vocabulary());
  return namingFile(file_, [&] {
    if (isInPlace) {
      undoStoppedChange(file_);
    } else {
      refuseStoppedChange(file_);
    }
    const auto chosen = partition();
    const auto own =
        DictionaryOptions::partitionOf(file_, chosen.value_or(MXF::PartitionChoice()), document_.vocabulary());
    if (options_.dictionary.usesOwn()) dictionary = options_.dictionary.loadFor(own);
    return std::make_unique<Edit::File>(file_, dictionary, chosen, limits());
  });
}

std::optional<MXF::PartitionChoice> ImportEdit::partition() const {
  const auto described = document_.partition();
  if (options_.partition || !described || *described == "header") return options_.partition;
  return MXF::PartitionChoice::parse(*described);
}

ImportEdit::Merged ImportEdit::merge(Edit::File& file) const {
  try {
    Merged result;
    InputProblems problems;
    const auto edited = readFor(file, problems);
    if (!options_.dictionary.usesOwn()) warnOfOwnNames(documentFile_, problems.diagnostics, file.metadata());
    namingDocument(documentFile_, [&] { printDiagnostics(documentFile_, problems, !options_.keepsGoing, kRestLeft); });
    const auto merged = mergeInto(file, edited, result);
    if (edited.isOfEarlierState && !options_.merge.mergesOtherFile && !result.isThere) {
      printMessage(Platform::pathToUTF8(file_) +
                   ": warning: the file has changed since the document was exported; the document is compared with "
                   "the file as it is now");
    }
    printRemarks(file_, merged);
    const auto rejected = merged.rejected.size();
    if (rejected != 0 && !options_.keepsGoing) {
      throw OtherFileError(Platform::pathToUTF8(file_) + ": " + (rejected == 1 ? "an edit is" : "edits are") +
                           " rejected" + kRestLeft);
    }
    result.isWhole = problems.count() == 0 && rejected == 0;
    return result;
  } catch (const Exceptions::InvalidFormat& error) {
    refuseDocument(documentFile_, file_, error);
  }
}

Edit::EditedDocument ImportEdit::readFor(Edit::File& file, InputProblems& problems) const {
  try {
    return document_.readFor(file, options_.merge, problems);
  } catch (const Exceptions::InvalidFormat&) {
    throw;  // it may be about both
  } catch (...) {
    throwDocumentError(documentFile_);
  }
}

/// A file that has the edits already has changed since the export, whatever is expected.
Edit::MergeReport ImportEdit::mergeInto(Edit::File& file, const Edit::EditedDocument& edited, Merged& merged) const {
  if (!options_.resumes || !edited.isOfEarlierState) return file.merge(edited, options_.merge);
  auto later = options_.merge;
  later.expectsUnchanged = false;
  auto report = file.merge(edited, later);
  merged.isThere = hasEdits(file);
  if (!merged.isThere && options_.merge.expectsUnchanged) file.merge(edited, options_.merge);  // which throws
  return report;
}

bool ImportEdit::hasEdits(Edit::File& file) const {
  return isEditThere(file_, partition(), file.metadata(), Pairing::kByPlace);
}

}  // namespace Vantor::Tool
