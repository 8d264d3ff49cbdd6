#include "ImportEdit.h"

#include <algorithm>
#include <utility>

#include "DiagnosticText.h"
#include "EarlierEdit.h"
#include "EditReport.h"
#include "ErrorText.h"
#include "ImportedNames.h"
#include "StoppedChange.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kRestLeft = "; nothing is written; --keep-going writes the rest";

}  // namespace

ImportEdit::ImportEdit(Path documentFile, DocumentFormat format, Path file, const Options& options)
    : documentFile_(std::move(documentFile)),
      document_(documentFile_, format),
      file_(std::move(file)),
      options_(options) {
  if (document_.isDescriptionDamaged()) {
    printMessage(documentFile_.u8string() +
                 ": warning: the document's description of itself is damaged, and is ignored");
  }
  const bool isPart = options_.merge.isStructuralOnly || !options_.merge.start.empty();
  if (isPart && format == DocumentFormat::kJSON) {
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
    return std::make_unique<Edit::File>(file_, dictionary, chosen);
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
    const auto edited = document_.readFor(file, options_.merge);
    const auto& diagnostics = edited.import.diagnostics;
    if (!options_.dictionary.usesOwn()) warnOfOwnNames(documentFile_, diagnostics, file.metadata());
    printDiagnostics(documentFile_, diagnostics, !options_.keepsGoing, kRestLeft);
    const auto merged = mergeInto(file, edited, result);
    if (edited.isOfEarlierState && !options_.merge.mergesOtherFile && !result.isThere) {
      printMessage(file_.u8string() +
                   ": warning: the file has changed since the document was exported; the document is compared with "
                   "the file as it is now");
    }
    printRemarks(file_, merged);
    const auto rejected = merged.rejected.size();
    if (rejected != 0 && !options_.keepsGoing) {
      throw OtherFileError(file_.u8string() + ": " + (rejected == 1 ? "an edit is" : "edits are") + " rejected" +
                           kRestLeft);
    }
    result.isWhole = diagnostics.empty() && rejected == 0;
    return result;
  } catch (const Exceptions::InvalidFormat& error) {
    const bool isOfOtherFile = dynamic_cast<const Edit::DocumentOfOtherFile*>(&error) != nullptr;
    throw OtherFileError(documentFile_.u8string() + ": cannot be put into " + file_.u8string() + ": " +
                         error.message() + (isOfOtherFile ? "; --merge-anyway merges it all the same" : ""));
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
