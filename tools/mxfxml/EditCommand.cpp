#include <memory>
#include <optional>

#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/EditOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/DataIO/Memory.h"
#include "Core/Platform/Path.h"
#include "Editing/EditReport.h"
#include "Editing/EditedText.h"
#include "Editing/ImportEdit.h"
#include "Input/BetterPartition.h"
#include "Input/ExportForm.h"
#include "Input/InputDocument.h"
#include "Input/StoppedChange.h"
#include "Terminal/ErrorText.h"
#include "Terminal/Question.h"

namespace Vantor::Tool {

namespace {

class EditCommand final : public Command {
 public:
  explicit EditCommand(CLI::App& program)
      : Command(program, "edit", "Open the header metadata of a file in an editor, and put the edits back") {
    addInput("MXF file");
    addFile(app(), "-o,--output", output_, "Write a copy to this file instead of changing the file")
        ->type_name("OUTPUT.mxf");
    addFormat(app(), form_.format);
    addStart(app(), form_.start);
    addPartition(
        app(), partition_,
        "header, footer, best or a number: edit this partition only. By\ndefault, the header partition and all "
        "that repeat its metadata\nare changed");
    app().add_flag("-y,--yes", isAnswered_, "Write the changes without a question");
    options_.add(app());
    dictionary_.addVocabulary(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    app().footer(
        "The editor is that of VISUAL in the environment, or else of EDITOR. A document that cannot be\nput back can "
        "be edited again, at the line of the mistake where that and the editor are known.");
    addLimits(app());
    addExamples({"edit in.mxf", "edit in.mxf --start MaterialPackage -o out.mxf"});
  }

  ExitCode run() const override {
    requireSensible();
    const auto editor = Editor::ofUser();
    const PostponedSignals signals;
    EditedText text(documentName(), exported(), editor);
    for (;;) {
      text.open();
      if (!text.hasChanged()) return sayNothingChanged();
      if (const auto code = putBackOrKeep(text)) return *code;
    }
  }

 private:
  /// How the program ends; none where the user edits again.
  using End = std::optional<ExitCode>;

  void requireSensible() const {
    if (output_ && options_.isDryRun()) throw UsageError("--dry-run writes no output");
    options_.requireFor(output_.has_value());
    if (!isAnswered_ && !options_.isDryRun() && !canAsk()) {
      throw UsageError("without a terminal, nobody can be asked; --yes writes the changes");
    }
    if (output_) refuseSameFile(input(), *output_);
    if (changesInput()) return undoStoppedChange(input());
    refuseStoppedChange(input());
  }

  bool changesInput() const { return !output_ && !options_.isDryRun(); }

  Path documentName() const { return input().stem() += form_.format == DocumentFormat::kJSON ? ".json" : ".xml"; }

  std::string exported() const {
    auto form = form_;
    form.partition = partitionIn(input(), partition_.value_or(MXF::PartitionChoice()));
    const auto metadata = dictionary_.read(DictionaryOptions::partitionOf(input(), form.partition));
    DataIO::Memory::MemoryDataSink sink;
    writeDocument(*metadata, form, startOf(*metadata, form, dictionary_, input()), sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
  }

  ExitCode sayNothingChanged() const {
    printMessage(Platform::pathToUTF8(input()) + ": nothing changed");
    return kSuccess;
  }

  End putBackOrKeep(EditedText& text) const {
    try {
      return putBack(text);
    } catch (...) {
      text.keep();
      throw;
    }
  }

  /// Shows what the edits are, and saves them where the user wants that.
  End putBack(EditedText& text) const {
    std::unique_ptr<Edit::File> file;
    ExitCode code = kSuccess;
    try {
      const ImportEdit edit(text.path(), form_.format, input(),
                            {dictionary_, unchangedOnly_, partition_, options_.keepsGoing()});
      file = edit.open(changesInput());
      if (!edit.merge(*file).isWhole) code = kFailure;
      if (isUnedited(*file)) return sayNothingChanged();
      previewEdits(*file, input(), options_);
    } catch (const OutdatedDocument& error) {
      throw OtherFileError(error.what() + std::string("; ") + mergingCommand(text) + " merges it all the same");
    } catch (...) {
      return afterMistake(text, file.get());
    }
    return options_.isDryRun() ? code : saveIfWanted(*file, code);
  }

  /// For the document that is kept.
  std::string mergingCommand(const EditedText& text) const {
    const auto end = output_ ? " -o " + Platform::pathToUTF8(*output_) : std::string(" --in-place");
    return std::string(kProgramName) + " import " + Platform::pathToUTF8(text.path()) + " --into " +
           Platform::pathToUTF8(input()) + end;
  }

  bool isUnedited(Edit::File& file) const { return file.preview(options_.saving()).changes.isNone(); }

  End saveIfWanted(Edit::File& file, ExitCode code) const {
    PostponedSignals::throwIfAny();  // while the editor ran
    const char answer = isAnswered_ ? 'y' : ask("Write these changes? [y]es, [e]dit again, [n]o", "yen");
    if (answer == 'e') return std::nullopt;
    if (answer == 'y') {
      saveEdits(file, input(), output_, options_);
    } else {
      printMessage(Platform::pathToUTF8(input()) + ": nothing is written");
    }
    return code;
  }

  /// To be called in a catch clause. @param file  null where the document could not be read.
  End afterMistake(EditedText& text, Edit::File* file) const {
    PostponedSignals::throwIfAny();
    text.setLine(lineOfMistake(text, file));
    if (!canAsk()) throw;
    printMessage(currentExceptionText(text.path()));
    if (ask("Edit it again? [e]dit again, [n]o", "en") == 'e') return std::nullopt;
    throw CommandError("nothing is written");
  }

  /// 0 where it is not known.
  uint64 lineOfMistake(const EditedText& text, Edit::File* file) const {
    if (const auto line = currentExceptionLine(); line != 0 || file == nullptr) return line;
    try {
      const InputDocument document(text.path(), form_.format);
      InputProblems problems;
      document.readFor(*file, unchangedOnly_, problems);
      if (!problems.diagnostics.empty()) return problems.diagnostics.listed.front().place.line;
      if (!problems.jsonDiagnostics.empty()) return problems.jsonDiagnostics.front().place.line;
      const auto refused = Edit::refusedFindings(file->preview(options_.saving()), options_.saving());
      return refused.empty() ? 0 : text.lineOf(refused.front());
    } catch (const Exceptions::BaseException&) {
      return currentExceptionLine();
    }
  }

  static Edit::MergeOptions unchangedOnly() {
    Edit::MergeOptions options;
    options.expectsUnchanged = true;
    return options;
  }

  const Edit::MergeOptions unchangedOnly_ = unchangedOnly();
  std::optional<Path> output_;
  ExportForm form_;
  std::optional<MXF::PartitionChoice> partition_;
  bool isAnswered_ = false;
  EditOptions options_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> editCommand(CLI::App& program) { return std::make_unique<EditCommand>(program); }

}  // namespace Vantor::Tool
