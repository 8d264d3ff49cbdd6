#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "CommandLine/PropertyPaths.h"
#include "Core/Platform/Path.h"
#include "Input/BetterPartition.h"
#include "Input/InputDocument.h"
#include "Input/MetadataInput.h"
#include "Input/Salvage.h"
#include "Look/PropertyValues.h"
#include "Report/JSONOutput.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

/// What one file has of the properties.
struct Answers {
  std::unique_ptr<PartitionMetadata> metadata;
  std::vector<PropertyValues> byPath;  // in the order of the paths
  std::vector<std::exception_ptr> troubles;
  MXF::PartitionChoice partition = {};  // of an MXF file
  Missing missing = {};                 // of its metadata
};

class GetCommand final : public Command {
 public:
  explicit GetCommand(CLI::App& program)
      : Command(program, "get", "Print values of properties alone, as mxfxml set takes them") {
    app()
        .add_option("INPUT", input_, "MXF, XML or JSON file, or - for standard input")
        ->required()
        ->type_name("")
        ->check(whyNoFileOrDash);
    hint(app()
             .add_option(
                 "Set.Property", rest_,
                 "The properties to print, with sets as mxfxml set takes them.\nOf several sets, the value of those "
                 "that have one, if it is the same;\nSet[*] prints each. After -p, these are more files")
             ->type_name(""),
         {CompletionHint::Kind::kPropertyPath});
    auto* property =
        app()
            .add_option("-p,--property", properties_, "A property to print of all files; may be given several times")
            ->type_name("Set.Property")
            ->allow_extra_args(false);
    hint(property, {CompletionHint::Kind::kPropertyPath});
    auto* names = app().add_flag("--with-names", withNames_, "Print Set.Property before each value");
    auto* bare = app().add_flag("--no-names", noNames_,
                                "Print values alone where there are several files, without the\nname of the file");
    auto* json = addJSON(app(), isJSON_);
    auto* table = app().add_flag("--table", isTable_,
                                 "Print a line for each file, with its name and a column for each\nproperty, between "
                                 "tabs; a cell is empty where the file has none");
    json->excludes(names)->excludes(bare)->excludes(table);
    table->excludes(names)->excludes(bare);
    names->excludes(bare);
    addPartition(
        app(), partition_,
        "Of MXF files: header (default), footer, best for the one with\nthe best metadata, or a number in file "
        "order from 0, which is\nthe header partition");
    salvage_.add(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
    app().footer(
        "Exit codes: 0 found, 1 a file does not have a property, 2 trouble: a file that cannot\nbe read, a name that "
        "the dictionary lacks, sets with different values.");
    addLimits(app());
    addExamples({"get in.mxf MaterialPackage.Name", "get -p MaterialPackage/Timecode.StartTimecode a.mxf b.mxf",
                 "get in.mxf 'MCALabelSubDescriptor[*].RFC5646SpokenLanguage'",
                 "get --table -p MaterialPackage.Name -p Timecode.StartTimecode *.mxf",
                 "get --json a.mxf 'TimelineTrack[*].TrackName' | mxfxml set b.mxf --from -"});
  }

  ExitCode run() const override {
    const auto paths = pathsToGet();
    const auto files = filesToRead();
    ExitCode code = kSuccess;
    auto list = JSON::Value::array();
    if (isTable_) writeStandardOutput(tableHead(paths));
    for (const auto& file : files) code = std::max(code, get(file, paths, files.size() > 1, list));
    if (isJSON_) printJSON(formatted("get").add("files", std::move(list)));
    return code;
  }
  ExitCode failure() const override { return kTrouble; }

 private:
  using Paths = std::vector<PropertyPath>;

  Paths pathsToGet() const {
    if (properties_.empty()) refuseFiles(rest_);
    Paths paths;
    for (const auto& text : properties_.empty() ? rest_ : properties_) paths.push_back(parsePropertyPath(text, false));
    if (paths.empty()) throw UsageError("Set.Property is required");
    return paths;
  }

  /// The name of a file has the shape of a property.
  static void refuseFiles(const std::vector<std::string>& texts) {
    for (const auto& text : texts) {
      std::error_code error;
      const bool isFile = std::filesystem::is_regular_file(Platform::pathFromUTF8(text), error);
      if (isFile)
        throw UsageError("'" + oneLine(text) + "' is a file; of several files, write -p Set.Property FILE...");
    }
  }

  std::vector<Path> filesToRead() const {
    std::vector<Path> files = {inputPath(input_)};
    if (properties_.empty()) return files;
    for (const auto& name : rest_) {
      if (name.empty()) throw UsageError("INPUT: " + whyNoFileOrDash(name));
      files.push_back(inputPath(name));
    }
    requireOneStandardInput(files);
    return files;
  }

  /// A file with trouble does not keep the command from the others; nothing is printed of it.
  /// @param list  with --json, gets an object for the file.
  ExitCode get(const Path& file, const Paths& paths, bool areSeveral, JSON::Value& list) const {
    auto json = JSON::Value::object().add("file", Platform::pathToUTF8(file));
    Answers answers = answersOf(file, paths);
    if (!answers.troubles.empty()) {
      list.append(json.add("problem", report(file, answers.troubles)));
      return kTrouble;
    }
    if (isJSON_) {
      list.append(describe(file, answers, std::move(json)));
    } else if (isTable_) {
      writeStandardOutput(tableRow(file, answers));
    } else {
      print(answers, paths, areSeveral ? oneLine(Platform::pathToUTF8(file)) + ": " : "");
    }
    if (!isTable_) printUnfound(file, answers);  // an empty cell shows it
    return std::max(codeOf(answers), reportMissing(file, *answers.metadata, answers.missing));
  }

  Answers answersOf(const Path& file, const Paths& paths) const {
    Answers answers;
    const auto attempt = [&answers](const auto& action) {
      try {
        action();
      } catch (...) {
        answers.troubles.push_back(std::current_exception());
      }
    };
    attempt([&] { answers.metadata = read(file, answers); });
    if (answers.metadata == nullptr) return answers;
    for (const auto& path : paths) attempt([&] { answers.byPath.push_back(valuesOf(*answers.metadata, path)); });
    return answers;
  }

  std::unique_ptr<PartitionMetadata> read(const Path& file, Answers& answers) const {
    if (partition_ && documentFormatOf(file)) throw CommandError("--partition is for MXF files");
    InputProblems problems;
    answers.partition = partitionIn(file, partition_.value_or(MXF::PartitionChoice()));
    auto metadata =
        dictionary_.read(metadataSource(file, answers.partition, problems, salvage_.placeFor(answers.missing)));
    requireSomething(*metadata, answers.missing);
    printProblems(file, problems, false);
    if (!documentFormatOf(file)) noteBetterPartition(file, partition_.has_value());
    return metadata;
  }

  /// @return the messages.
  static std::string report(const Path& file, const std::vector<std::exception_ptr>& troubles) {
    std::string all;
    for (const auto& trouble : troubles) {
      try {
        std::rethrow_exception(trouble);
      } catch (...) {
        const auto message = oneLine(currentExceptionText(file));
        printMessage(message);
        all += (all.empty() ? "" : "; ") + message;
      }
    }
    return all;
  }

  static ExitCode codeOf(const Answers& answers) {
    const auto isMissing = [](const PropertyValues& found) { return found.values.empty(); };
    return std::any_of(answers.byPath.begin(), answers.byPath.end(), isMissing) ? kFailure : kSuccess;
  }

  static void printUnfound(const Path& file, const Answers& answers) {
    for (const auto& found : answers.byPath) {
      if (found.values.empty()) printMessage(Platform::pathToUTF8(file) + ": " + found.whyNone);
    }
  }

  static std::string tableHead(const Paths& paths) {
    std::string line = "file";
    for (const auto& path : paths) line += "\t" + oneLine(path.choice);
    return line + "\n";
  }

  /// No value has a tab or a line feed: both are escaped.
  static std::string tableRow(const Path& file, const Answers& answers) {
    std::string line = oneLine(Platform::pathToUTF8(file));
    for (const auto& found : answers.byPath) line += "\t" + cellOf(found);
    return line + "\n";
  }

  static std::string cellOf(const PropertyValues& found) {
    std::string cell;
    for (const auto& value : found.values) {
      cell += (&value == &found.values.front() ? "" : "; ") + value.text;
      if (found.isOne) break;
    }
    return cell;
  }

  JSON::Value describe(const Path& file, const Answers& answers, JSON::Value json) const {
    if (!documentFormatOf(file)) json.add("partition", answers.partition.text());
    const ExactPaths exact(*answers.metadata);
    auto values = JSON::Value::array();
    for (const auto& found : answers.byPath) {
      for (const auto& value : found.values) values.append(jsonOf(value, exact));
    }
    json.add("values", std::move(values));
    addMissing(answers.missing, json);
    return json;
  }

  void print(const Answers& answers, const Paths& paths, const std::string& fileName) const {
    const ExactPaths exact(*answers.metadata);
    const std::string before = noNames_ ? "" : fileName;
    std::string text;
    for (std::size_t i = 0; i < paths.size(); ++i) text += linesOf(answers.byPath[i], paths[i], exact, before);
    writeStandardOutput(text);
  }

  std::string linesOf(const PropertyValues& found, const PropertyPath& path, const ExactPaths& exact,
                      const std::string& before) const {
    std::string lines;
    for (const auto& value : found.values) {
      const auto set = found.isOne ? path.set : exact.pathOf(*value.set);
      lines += before + (withNames_ ? set + "." + path.property + ": " : "") + value.text + "\n";
      if (found.isOne) break;
    }
    return lines;
  }

  std::string input_;
  std::vector<std::string> rest_;  // properties, or with -p more files
  std::vector<std::string> properties_;
  bool withNames_ = false;
  bool noNames_ = false;
  bool isJSON_ = false;
  bool isTable_ = false;
  std::optional<MXF::PartitionChoice> partition_;
  SalvageOption salvage_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> getCommand(CLI::App& program) { return std::make_unique<GetCommand>(program); }

}  // namespace Vantor::Tool
