#include "ImportCommand.h"

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/KLV/LocalSet.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Platform/Path.h"
#include "DiagnosticText.h"
#include "ErrorText.h"
#include "LongValues.h"
#include "MetadataEdit.h"
#include "ProgressBar.h"
#include "StoppedChange.h"
#include "Summary.h"
#include "XML2Partition.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

/// How many items of dark groups have a tag that each file explains in its primer pack, which is not in the document.
std::size_t tagsWithoutLabels(const PartitionMetadata& metadata) {
  constexpr uint16 kFirstDynamicTag = 0x8000;  // ST 377-1
  std::size_t count = 0;
  for (const MetadataSet* set : metadata.sets()) {
    const auto* group = dynamic_cast<const DarkParsedGroup*>(set);
    if (group == nullptr) continue;
    const Bytes& value = group->value();
    for (const auto& item : KLV::readLocalSet(KLV::localSetCoding(group->key()), value.data(), value.size())) {
      if (item.tag >= kFirstDynamicTag && metadata.partitionDictionary().tryFind(item.tag) == nullptr) ++count;
    }
  }
  return count;
}

MetaMetadata::Vocabulary vocabularyOf(const LosslessXML::Document& document) {
  return document.vocabulary().value_or(MetaMetadata::Vocabulary::kLegacy);
}

/// What goes wrong with a file that is not the command's input is told with its name.
template <class Action>
void namingFile(const Path& file, Action&& action) {
  try {
    action();
  } catch (...) {
    throw OtherFileError(currentExceptionText(file));
  }
}

}  // namespace

ImportCommand::ImportCommand(CLI::App& program)
    : Command(program, "import", "Write the header metadata of an XML document as an MXF file, or into one") {
  addInput(app(), input(), "XML file");
  addTarget();
  addWayOfReading();
  dictionary_.addDictionary(app());
}

void ImportCommand::addTarget() {
  auto* output = addFile(app(), "-o,--output", output_, "Write to this file")->type_name("OUTPUT.mxf");
  auto* into = addFile(app(), "--into", into_,
                       "Write a copy of this file with what was edited since it was\n"
                       "exported; all else in it stays as it is")
                   ->type_name("ORIGINAL.mxf");
  app().add_flag("--in-place", inPlace_, "Change the file of --into itself")->needs(into)->excludes(output);
  auto* whole = app()
                    .add_flag("--whole", isWhole_,
                              "The document is an export of all sets: what it lacks was taken\nout. Without this, the "
                              "document itself tells")
                    ->needs(into);
  app()
      .add_flag("--structural-only", isStructuralOnly_,
                "The document was exported so: sets that it leaves out are kept")
      ->needs(into)
      ->excludes(whole);
  addPartition(app(), partition_,
               "The partition that was exported: header, footer or a number;\n"
               "only it is changed. Without it, the header partition and all\n"
               "that repeat its metadata are")
      ->needs(into);
}

void ImportCommand::addWayOfReading() {
  auto* exact = app().add_flag("--exact", exact_, "Read the XML to the letter of its exact form, with what that loses");
  app()
      .add_flag("--strict", strict_,
                "Fail where the document says something twice or that cannot be,\nwhich is a warning otherwise")
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
    tell(document.import(metadata).diagnostics);
  }
  const auto lost = tagsWithoutLabels(metadata);
  if (lost != 0) {
    printMessage(input().u8string() + ": warning: documents do not hold what " + std::to_string(lost) +
                 " local tags in dark sets stand for; importing --into the original file keeps it");
  }
  for (const auto& warning : warningsOfLongValues(metadata)) printMessage(input().u8string() + ": " + warning);
  DataIO::File::AtomicFile file(*output_);
  MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kSerialization, file);
  file.commit();
}

void ImportCommand::editFile() const {
  const auto document = LosslessXML::Document::fromFile(input());
  const auto chosen = vocabularyOf(document);
  const auto definitions = dictionary_.load(chosen);
  PartitionMetadata edited(definitions);
  LosslessXML::Import import;
  std::optional<MetadataEdit> edit;
  namingFile(*into_, [&] {
    undoStoppedChange(*into_);
    edit.emplace(*into_, definitions, dictionary_.plain(chosen), partition_);
    const auto& primer = edit->metadata().partitionDictionary();
    for (const auto& entry : primer.primerEntries()) edited.partitionDictionary().addPrimerEntry(entry);
    import = document.import(edited, &edit->metadata());
    edit->takeForm(edited, import, scope());
  });
  tell(import.diagnostics);
  namingFile(*into_, [&] {
    apply(*edit, edited, import);
    write(*edit);
  });
}

void ImportCommand::apply(MetadataEdit& edit, const PartitionMetadata& edited,
                          const LosslessXML::Import& import) const {
  try {
    edit.apply(edited, import, MetadataEdit::Origin::kGuessed);
  } catch (const CommandError& error) {
    throw OtherFileError(input().u8string() + ": cannot be put into " + into_->u8string() + ": " + error.what());
  }
}

void ImportCommand::write(const MetadataEdit& edit) const {
  for (const auto& remark : edit.remarks()) printMessage(into_->u8string() + ": " + remark);
  const auto durability = inPlace_ ? edit.writeInPlace(progressBar()) : edit.writeCopy(*output_, progressBar());
  tellDone(edit.summary(), inPlace_ ? *into_ : *output_, durability);
}

DocumentForms::Scope ImportCommand::scope() const {
  if (isWhole_) return DocumentForms::Scope::kAll;
  return isStructuralOnly_ ? DocumentForms::Scope::kStructural : DocumentForms::Scope::kGuessed;
}

void ImportCommand::tell(const Diagnostics& diagnostics) const {
  printDiagnostics(input(), diagnostics, strict_);
  if (strict_ && !diagnostics.empty()) throw CommandError(countOf(diagnostics) + "; nothing is written");
}

}  // namespace Vantor::Tool
