#include "Command.h"

#include <algorithm>
#include <optional>

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/KLV/LocalSet.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "DiagnosticText.h"
#include "DictionaryOptions.h"
#include "Edit/File.h"
#include "EditOptions.h"
#include "EditReport.h"
#include "ErrorText.h"
#include "InputDocument.h"
#include "Registers/FileDefinitions.h"
#include "StoppedChange.h"
#include "XML2Partition.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kNothingWritten = "; nothing is written";
constexpr const char* kOwnNames =
    ": warning: the document is an export with --own-dictionary; what it names so is left out without that option";
constexpr const char* kOthersNames =
    ": warning: the document has names of a MetaDictionary that is not in it, which are left out; --dictionary reads "
    "them with what mxfxml dictionary --learn makes of the file";
constexpr const char* kRestLeft = "; nothing is written; --keep-going writes the rest";

/// How many items of dark groups have a dynamic tag without a label: only the primer pack of their file had that, and a
/// document does not have it.
std::size_t tagsWithoutLabels(const PartitionMetadata& metadata) {
  std::size_t count = 0;
  for (const MetadataSet* set : metadata.sets()) {
    const auto* group = dynamic_cast<const DarkParsedGroup*>(set);
    if (group == nullptr) continue;
    const Bytes& value = group->value();
    for (const auto& item : KLV::readLocalSet(KLV::localSetCoding(group->key()), value.data(), value.size())) {
      if (!Types::LocalTag(item.tag).isStaticLocalTag() && metadata.partitionDictionary().tryFind(item.tag) == nullptr)
        ++count;
    }
  }
  return count;
}

/// Whether a document has names that an export with --own-dictionary gave it.
bool mentionsOwn(const Diagnostics& diagnostics) {
  return std::any_of(diagnostics.begin(), diagnostics.end(), [](const LosslessXML::Diagnostic& one) {
    const auto& all = one.arguments;
    return std::any_of(all.begin(), all.end(), [](const std::string& argument) {
      return argument == Registers::kOwnSets || argument == Registers::kOwnProperties;
    });
  });
}

/// Warns of names that an export with --own-dictionary gave a document.
/// @param metadata  read from the document, or those of the file that it goes into.
void warnOfOwnNames(const Path& document, const Diagnostics& diagnostics, const PartitionMetadata& metadata) {
  if (!mentionsOwn(diagnostics)) return;
  const auto& sets = metadata.sets();
  const bool isThere = std::any_of(sets.begin(), sets.end(), [](const MetadataSet* set) {
    return set->definition() != nullptr && set->name() == "MetaDictionary";
  });
  printMessage(document.u8string() + (isThere ? kOwnNames : kOthersNames));
}

/// The partition that a document was exported from; none for the header partition.
std::optional<MXF::PartitionChoice> partitionOf(const InputDocument& document) {
  const auto partition = document.partition();
  if (!partition || *partition == "header") return std::nullopt;
  return MXF::PartitionChoice::parse(*partition);
}

class ImportCommand final : public Command {
 public:
  explicit ImportCommand(CLI::App& program)
      : Command(program, "import",
                "Write the header metadata of an XML or JSON document as an MXF file, or\ninto one") {
    addInput("XML or JSON file");
    addTarget();
    addDescription();
    addWayOfReading();
    edit_.add(app(), app().get_option("--into"));
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addExamples({"import in.xml -o header.mxf", "import edited.xml --into in.mxf --dry-run",
                 "import edited.xml --into in.mxf --in-place"});
  }

  ExitCode run() const override {
    const bool isWriting = output_ || inPlace_;
    if (isWriting == edit_.isDryRun()) {
      throw UsageError(isWriting ? "--dry-run writes nothing, neither with -o nor --in-place"
                                 : "-o is required, or --into with --in-place or --dry-run");
    }
    if (output_ && edit_.keepsUndo()) throw UsageError("--keep-undo is for a change in place, not for -o");
    if (into_ && exact_) {
      throw UsageError("--into excludes --exact, which gives sets new InstanceUIDs: edits find their sets by these");
    }
    if (exact_ && format() == DocumentFormat::kJSON) throw UsageError("--exact is for XML");
    if (output_) refuseSameFile(input(), *output_);
    if (into_) return editFile();
    writeHeaderOnly();
    return kSuccess;
  }

 private:
  void addTarget() {
    auto* output = addFile(app(), "-o,--output", output_, "Write to this file")->type_name("OUTPUT.mxf");
    auto* into = addFile(app(), "--into", into_,
                         "Write a copy of this file with the edits of the document;\n"
                         "everything else in it stays as it is")
                     ->type_name("ORIGINAL.mxf");
    app().add_flag("--in-place", inPlace_, "Change the file of --into itself")->needs(into)->excludes(output);
    app()
        .add_flag("--expect-unchanged", options_.expectsUnchanged,
                  "Fail if the file has changed since the export, instead of\nwarning")
        ->needs(into);
    app()
        .add_flag("--merge-anyway", options_.mergesOtherFile,
                  "Merge the document even if it shares no package with the file")
        ->needs(into);
  }

  void addDescription() {
    auto* into = app().get_option("--into");
    app()
        .add_flag("--structural-only", options_.isStructuralOnly,
                  "For a document without description: it is an export of this\nkind; sets that it leaves out are kept")
        ->needs(into);
    app()
        .add_option("--start", options_.start,
                    "For a document without description: it starts from this set;\nother sets are kept")
        ->type_name("ID|NAME")
        ->needs(into);
    addPartition(app(), partition_,
                 "The partition that was exported: header, footer or a number.\n"
                 "Only this one is changed. By default, the one that the document\n"
                 "describes; with the header partition, all that repeat its\nmetadata")
        ->needs(into);
  }

  void addWayOfReading() {
    addChoice(app(), "--format", format_, "format",
              {{"xml", std::optional(DocumentFormat::kXML)}, {"json", std::optional(DocumentFormat::kJSON)}},
              "xml or json; by default what the first character shows");
    auto* exact = app().add_flag("--exact", exact_, "Read the exact form, which loses some metadata");
    app()
        .add_flag("--strict", strict_,
                  "Fail on content of the document that occurs twice or means\nnothing, instead of warning; as --into "
                  "does, unless it keeps going")
        ->excludes(exact);
  }

  DocumentFormat format() const {
    return format_ ? *format_ : documentFormatOf(input()).value_or(DocumentFormat::kXML);
  }

  /// @param diagnostics  receives those of the last time that the document is read.
  std::unique_ptr<PartitionMetadata> readDocument(const DictionaryOptions::LoadFor& load, Diagnostics& diagnostics,
                                                  std::vector<std::string>& unknown) const {
    const InputDocument document(input(), format());
    auto metadata = std::make_unique<PartitionMetadata>(load(document.vocabulary()));
    if (exact_) {
      const XMLUtils::UnicodeString path(Platform::pathToWstring(input()));
      XML2Partition::getPartitionMetadataFromFile(path.utf16(), metadata.get());
    } else {
      diagnostics = document.import(*metadata, unknown);
    }
    return metadata;
  }

  void writeHeaderOnly() const {
    refuseStoppedChange(*output_);
    Diagnostics diagnostics;
    std::vector<std::string> unknown;
    const auto read = [&](const DictionaryOptions::LoadFor& load) { return readDocument(load, diagnostics, unknown); };
    const auto found = dictionary_.read({input(), read});
    refuseUnknown(input(), unknown);
    auto& metadata = *found;
    if (!dictionary_.usesOwn()) warnOfOwnNames(input(), diagnostics, metadata);
    printDiagnostics(input(), diagnostics, strict_, kNothingWritten);
    const auto lost = tagsWithoutLabels(metadata);
    if (lost != 0) {
      printMessage(input().u8string() + ": warning: documents do not hold what " + std::to_string(lost) +
                   " local tags in dark sets stand for; importing --into the original file keeps it");
    }
    printRemarks(input(), Edit::longValuesOf(metadata));
    DataIO::File::AtomicFile file(*output_);
    MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kSerialization, file);
    file.commit();
  }

  ExitCode editFile() const {
    const InputDocument document(input(), format());
    if (document.isDescriptionDamaged()) {
      printMessage(input().u8string() + ": warning: the document's description of itself is damaged, and is ignored");
    }
    const bool isPart = options_.isStructuralOnly || !options_.start.empty();
    if (isPart && format() == DocumentFormat::kJSON) {
      throw UsageError("--structural-only and --start are for XML; JSON has all sets");
    }
    if (document.partition() && isPart) {
      throw UsageError("--structural-only and --start are for documents that do not describe themselves");
    }
    auto dictionary = dictionary_.load(document.vocabulary());
    const auto partition = partition_ ? partition_ : partitionOf(document);
    std::unique_ptr<Edit::File> file;
    namingFile(*into_, [&] {
      if (inPlace_) {
        undoStoppedChange(*into_);
      } else {
        refuseStoppedChange(*into_);
      }
      const auto own =
          DictionaryOptions::partitionOf(*into_, partition.value_or(MXF::PartitionChoice()), document.vocabulary());
      if (dictionary_.usesOwn()) dictionary = dictionary_.loadFor(own);
      file = std::make_unique<Edit::File>(*into_, dictionary, partition);
    });
    const bool isWhole = merge(document, *file);
    namingFile(*into_, [&] {
      if (edit_.isDryRun()) return previewEdits(*file, *into_, edit_);
      saveEdits(*file, *into_, output_, edit_);
    });
    return isWhole ? kSuccess : kFailure;
  }

  /// @return whether all of the edit was taken.
  bool merge(const InputDocument& document, Edit::File& file) const {
    try {
      const auto edited = document.readFor(file, options_);
      const auto& diagnostics = edited.import.diagnostics;
      if (!dictionary_.usesOwn()) warnOfOwnNames(input(), diagnostics, file.metadata());
      printDiagnostics(input(), diagnostics, !edit_.keepsGoing(), kRestLeft);
      const auto merged = file.merge(edited, options_);
      if (edited.isOfEarlierState && !options_.mergesOtherFile) {
        printMessage(into_->u8string() +
                     ": warning: the file has changed since the document was exported; the document is compared with "
                     "the file as it is now");
      }
      printRemarks(*into_, merged);
      const auto rejected = merged.rejected.size();
      if (rejected != 0 && !edit_.keepsGoing()) {
        throw OtherFileError(into_->u8string() + ": " + (rejected == 1 ? "an edit is" : "edits are") + " rejected" +
                             kRestLeft);
      }
      return diagnostics.empty() && rejected == 0;
    } catch (const Exceptions::InvalidFormat& error) {
      const bool isOfOtherFile = dynamic_cast<const Edit::DocumentOfOtherFile*>(&error) != nullptr;
      throw OtherFileError(input().u8string() + ": cannot be put into " + into_->u8string() + ": " + error.message() +
                           (isOfOtherFile ? "; --merge-anyway merges it all the same" : ""));
    }
  }

  std::optional<Path> output_;
  std::optional<Path> into_;
  bool inPlace_ = false;
  Edit::MergeOptions options_;
  std::optional<MXF::PartitionChoice> partition_;
  std::optional<DocumentFormat> format_;
  bool exact_ = false;
  bool strict_ = false;
  EditOptions edit_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> importCommand(CLI::App& program) { return std::make_unique<ImportCommand>(program); }

}  // namespace Vantor::Tool
