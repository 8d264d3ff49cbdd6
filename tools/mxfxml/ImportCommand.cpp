#include "CommandLine/Command.h"

#include <limits>
#include <optional>

#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/EditOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/KLV/LocalSet.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Platform/Path.h"
#include "Editing/EditReport.h"
#include "Editing/ImportEdit.h"
#include "Input/InputDocument.h"
#include "Input/StoppedChange.h"
#include "Plan/ImportPlan.h"
#include "Plan/PlanRun.h"
#include "Plan/PlanTable.h"
#include "Report/DiagnosticText.h"
#include "Report/ImportedNames.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"
#include "Terminal/StandardStreams.h"
#include "Terminal/Terminal.h"
#include "XML2Partition.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kNothingWritten = "; nothing is written";

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

class ImportCommand final : public Command {
 public:
  explicit ImportCommand(CLI::App& program)
      : Command(program, "import",
                "Write the header metadata of an XML or JSON document as an MXF file, or\ninto one") {
    addInput("XML or JSON file, or - for standard input", Dash::kInput);
    addTarget();
    addDescription();
    addWayOfReading();
    plan_.add(app(), "file,document", {"INPUT", "--into", "--exact", "--strict"});
    app().get_option("INPUT")->required(false);
    edit_.add(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addLimits(app());
    addExamples({"import in.xml -o header.mxf", "import edited.xml --into in.mxf --dry-run",
                 "import edited.xml --into in.mxf --in-place", "import --plan documents.csv --dry-run"});
  }

  ExitCode run() const override {
    if (plan_.isGiven()) return editFiles();
    if (input().empty()) throw UsageError("INPUT is required");
    if (!into_) refuseEditOptions();
    const bool isWriting = output_ || inPlace_;
    if (isWriting == edit_.isDryRun()) {
      throw UsageError(isWriting ? "--dry-run writes nothing, neither with -o nor --in-place"
                                 : "-o is required, or --into with --in-place or --dry-run");
    }
    if (output_ && isStandardOutput(*output_)) requireStreamable();
    edit_.requireFor(output_.has_value());
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
    auto* output =
        addFile(app(), "-o,--output", output_, "Write to this file, or with - to standard output", Dash::kOutput)
            ->type_name("OUTPUT.mxf");
    addFile(app(), "--into", into_,
            "Write a copy of this file with the edits of the document;\n"
            "everything else in it stays as it is")
        ->type_name("ORIGINAL.mxf");
    app().add_flag("--in-place", inPlace_, "Change the file of --into itself")->excludes(output);
    app().add_flag("--expect-unchanged", options_.expectsUnchanged,
                   "Fail if the file has changed since the export, instead of\nwarning");
    app().add_flag("--merge-anyway", options_.mergesOtherFile,
                   "Merge the document even if it shares no package with the file");
  }

  void addDescription() {
    app().add_flag(
        "--structural-only", options_.isStructuralOnly,
        "For a document without description: it is an export of this\nkind; sets that it leaves out are kept");
    app()
        .add_option("--start", options_.start,
                    "For a document without description: it starts from this set;\nother sets are kept")
        ->type_name("ID|NAME");
    addPartition(app(), partition_,
                 "The partition that was exported: header, footer, best or a number.\n"
                 "Only this one is changed. By default, the one that the document\n"
                 "describes; with the header partition, all that repeat its\nmetadata");
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

  /// @throws UsageError.
  void requireStreamable() const {
    if (into_) throw UsageError("--into needs the name of a file behind -o; - is for header metadata alone");
    if (isTerminal()) throw UsageError("an MXF file is not for a terminal; redirect standard output, or name a file");
  }

  DocumentFormat format() const { return format_ ? *format_ : requiredFormatOf(input()); }

  /// @param problems  receives those of the last time that the document is read.
  std::unique_ptr<PartitionMetadata> readDocument(const DictionaryOptions::LoadFor& load,
                                                  InputProblems& problems) const {
    const InputDocument document(input(), format());
    auto metadata = std::make_unique<PartitionMetadata>(load(document.vocabulary()));
    if (exact_ && isStandardInput(input())) {
      const auto bytes = StandardInput::instance().all();
      constexpr uint64 kMost = std::numeric_limits<uint32>::max();  // that the exact form takes
      if (bytes.size() > kMost) throw CommandError("in the exact form, a document has at most 4 GiB");
      XML2Partition::getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(bytes.data()),
                                                    static_cast<uint32>(bytes.size()), metadata.get(), limits());
    } else if (exact_) {
      const XMLUtils::UnicodeString path(Platform::pathToWstring(input()));
      XML2Partition::getPartitionMetadataFromFile(path.utf16(), metadata.get(), limits());
    } else {
      document.import(*metadata, problems);
    }
    return metadata;
  }

  void writeHeaderOnly() const {
    refuseStoppedChange(*output_);
    InputProblems problems;
    const auto read = [&](const DictionaryOptions::LoadFor& load) { return readDocument(load, problems); };
    const auto found = dictionary_.read({input(), read});
    refuseUnknown(input(), problems.unknown);
    auto& metadata = *found;
    if (!dictionary_.usesOwn()) warnOfOwnNames(input(), problems.diagnostics, metadata);
    printDiagnostics(input(), problems, strict_, kNothingWritten);
    const auto lost = tagsWithoutLabels(metadata);
    if (lost != 0) {
      printMessage(Platform::pathToUTF8(input()) + ": warning: documents do not hold what " + std::to_string(lost) +
                   " local tags in dark sets stand for; importing --into the original file keeps it");
    }
    printRemarks(input(), Edit::longValuesOf(metadata));
    writeOutput(output_, [&metadata](DataIO::DataSink& sink) {
      MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kSerialization, sink);
    });
  }

  /// Options that mean nothing without a file that edits go into.
  void refuseEditOptions() const {
    for (const char* name :
         {"--in-place", "--expect-unchanged", "--merge-anyway", "--structural-only", "--start", "--partition", "--only",
          "--ignore", "--sign", "--keep-undo", "--force", "--dry-run", "--keep-going"}) {
      if (app().count(name) != 0) throw UsageError(std::string(name) + " requires --into");
    }
  }

  ExitCode editFiles() const {
    if (output_ && edit_.isDryRun()) throw UsageError("--dry-run writes no output");
    edit_.requireFor(output_.has_value());
    if (output_ && isStandardOutput(*output_)) throw UsageError("-o is a folder for the copies of a plan");
    auto files = readImportPlan(plan_.table());
    if (output_) writeCopies(files, *output_);
    const ImportPlan plan(plan_.table(), format_, {dictionary_, options_, partition_});
    return runPlan(plan_, files, plan, edit_);
  }

  ExitCode editFile() const {
    const ImportEdit edit(input(), format(), *into_, {dictionary_, options_, partition_, edit_.keepsGoing()});
    const auto file = edit.open(inPlace_);
    const bool isWhole = edit.merge(*file).isWhole;
    namingFile(*into_, [&] {
      if (edit_.isDryRun()) return previewEdits(*file, *into_, edit_);
      saveEdits(*file, *into_, output_, edit_);
    });
    return isWhole ? kSuccess : kFailure;
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
  PlanOptions plan_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> importCommand(CLI::App& program) { return std::make_unique<ImportCommand>(program); }

}  // namespace Vantor::Tool
