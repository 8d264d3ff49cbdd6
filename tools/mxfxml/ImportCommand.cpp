#include "ImportCommand.h"

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/KLV/LocalSet.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "DiagnosticText.h"
#include "Edit/File.h"
#include "EditText.h"
#include "ErrorText.h"
#include "Interruption.h"
#include "ProgressBar.h"
#include "StoppedChange.h"
#include "Summary.h"
#include "XML2Partition.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

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

/// Names the file in the errors of an action on it, where it is not the input.
template <class Action>
void namingFile(const Path& file, Action&& action) {
  try {
    action();
  } catch (...) {
    throw OtherFileError(currentExceptionText(file));
  }
}

MetaMetadata::Vocabulary vocabularyOf(const LosslessXML::Document& document) {
  return document.vocabulary().value_or(MetaMetadata::Vocabulary::kLegacy);
}

/// The partition that a document was exported from; none for the header partition.
std::optional<MXF::PartitionChoice> partitionOf(const LosslessXML::Document& document) {
  const auto& description = document.description();
  if (!description || description->partition == "header") return std::nullopt;
  return MXF::PartitionChoice::parse(description->partition);
}

}  // namespace

ImportCommand::ImportCommand(CLI::App& program)
    : Command(program, "import", "Write the header metadata of an XML document as an MXF file, or into one") {
  addInput(app(), input(), "XML file");
  addTarget();
  addDescription();
  addWayOfReading();
  dictionary_.addDictionary(app());
}

void ImportCommand::addTarget() {
  auto* output = addFile(app(), "-o,--output", output_, "Write to this file")->type_name("OUTPUT.mxf");
  auto* into = addFile(app(), "--into", into_,
                       "Write a copy of this file with the edits of the document;\n"
                       "everything else in it stays as it is")
                   ->type_name("ORIGINAL.mxf");
  app().add_flag("--in-place", inPlace_, "Change the file of --into itself")->needs(into)->excludes(output);
  app()
      .add_flag("--expect-unchanged", expectsUnchanged_,
                "Fail if the file has changed since the export, instead of\nwarning")
      ->needs(into);
  app()
      .add_flag("--merge-anyway", mergesAnyway_, "Merge the document even if it shares no package with the file")
      ->needs(into);
}

void ImportCommand::addDescription() {
  auto* into = app().get_option("--into");
  app()
      .add_flag("--structural-only", isStructuralOnly_,
                "For a document without description: it is an export of this\nkind; sets that it leaves out are kept")
      ->needs(into);
  app()
      .add_option("--start", start_,
                  "For a document without description: it starts from this set;\nother sets are kept")
      ->type_name("ID|NAME")
      ->needs(into);
  addPartition(app(), partition_,
               "The partition that was exported: header, footer or a number.\n"
               "Only this one is changed. By default, the one that the document\n"
               "describes; with the header partition, all that repeat its\nmetadata")
      ->needs(into);
}

void ImportCommand::addWayOfReading() {
  auto* exact = app().add_flag("--exact", exact_, "Read the exact form, which loses some metadata");
  app()
      .add_flag("--strict", strict_,
                "Fail on content of the document that occurs twice or means\nnothing, instead of warning")
      ->excludes(exact);
}

void ImportCommand::run() const {
  if (!output_ && !inPlace_) throw UsageError("-o is required, or --into with --in-place");
  if (into_ && exact_) {
    throw UsageError("--into excludes --exact, which gives sets new InstanceUIDs: edits find their sets by these");
  }
  if (output_) refuseSameFile(input(), *output_);
  if (into_) {
    editFile();
  } else {
    writeHeaderOnly();
  }
}

void ImportCommand::writeHeaderOnly() const {
  refuseStoppedChange(*output_);
  const auto document = LosslessXML::Document::fromFile(input());
  PartitionMetadata metadata(dictionary_.load(vocabularyOf(document)));
  if (exact_) {
    const XMLUtils::UnicodeString path(Platform::pathToWstring(input()));
    XML2Partition::getPartitionMetadataFromFile(path.utf16(), &metadata);
  } else {
    report(document.import(metadata).diagnostics);
  }
  const auto lost = tagsWithoutLabels(metadata);
  if (lost != 0) {
    printMessage(input().u8string() + ": warning: documents do not hold what " + std::to_string(lost) +
                 " local tags in dark sets stand for; importing --into the original file keeps it");
  }
  Edit::SaveReport longValues;
  longValues.longValues = Edit::longValuesOf(metadata);
  printRemarks(input(), longValues);
  DataIO::File::AtomicFile file(*output_);
  MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kSerialization, file);
  file.commit();
}

void ImportCommand::editFile() const {
  const auto document = LosslessXML::Document::fromFile(input());
  if (document.isDescriptionDamaged()) {
    printMessage(input().u8string() + ": warning: the document's description of itself is damaged, and is ignored");
  }
  if (document.description() && (isStructuralOnly_ || !start_.empty())) {
    throw UsageError("--structural-only and --start are for documents that do not describe themselves");
  }
  const auto definitions = dictionary_.load(vocabularyOf(document));
  std::unique_ptr<Edit::File> file;
  namingFile(*into_, [&] {
    undoStoppedChange(*into_);
    file = std::make_unique<Edit::File>(*into_, definitions, partition_ ? partition_ : partitionOf(document));
  });
  merge(document, *file);
  namingFile(*into_, [&] { save(*file); });
}

void ImportCommand::merge(const LosslessXML::Document& document, Edit::File& file) const {
  try {
    const Edit::MergeOptions options{isStructuralOnly_, start_, mergesAnyway_, expectsUnchanged_};
    const auto edited = file.read(document, options);
    report(edited.import.diagnostics);
    const auto merged = file.merge(edited, options);
    if (edited.isOfEarlierState && !mergesAnyway_) {
      printMessage(into_->u8string() +
                   ": warning: the file has changed since the document was exported; the document is compared with "
                   "the file as it is now");
    }
    printRemarks(*into_, merged);
  } catch (const Edit::DocumentOfOtherFile& error) {
    throw OtherFileError(input().u8string() + ": cannot be put into " + into_->u8string() + ": " + error.message() +
                         "; --merge-anyway merges it all the same");
  } catch (const Exceptions::InvalidFormat& error) {
    throw OtherFileError(input().u8string() + ": cannot be put into " + into_->u8string() + ": " + error.message());
  }
}

void ImportCommand::save(Edit::File& file) const {
  Interruption interruption;
  const auto progress = interruption.stopping(progressBar());
  const auto report = inPlace_ ? file.save(progress) : file.saveCopy(*output_, progress);
  printRemarks(*into_, report);
  tellDone(summaryOf(report), inPlace_ ? *into_ : *output_, report.durability);
}

void ImportCommand::report(const std::vector<LosslessXML::Diagnostic>& diagnostics) const {
  printDiagnostics(input(), diagnostics, strict_);
  if (strict_ && !diagnostics.empty()) throw CommandError(countOf(diagnostics) + "; nothing is written");
}

}  // namespace Vantor::Tool
