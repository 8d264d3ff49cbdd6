#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Path.h"
#include "Definitions/DefinitionsText.h"
#include "Definitions/DictionaryJSON.h"
#include "Definitions/DictionarySearch.h"
#include "Definitions/DictionaryText.h"
#include "Input/BetterPartition.h"
#include "Input/StoppedChange.h"
#include "Registers/FileDefinitions.h"
#include "Report/JSONOutput.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

class DictionaryCommand final : public Command {
 public:
  explicit DictionaryCommand(CLI::App& program)
      : Command(program, "dictionary", "Print the sets of the dictionary, or what it has under one name") {
    auto* wanted =
        app()
            .add_option(
                "NAME", wanted_,
                "A set, property, enumeration or label by symbol, name in XML\nor common name, by key, or by "
                "static local tag (four hexadecimal\ndigits); for anything else, all that have it in a name or\n"
                "begin their key with it. All sets without NAME")
            ->type_name("");
    hint(wanted, {CompletionHint::Kind::kDefinition});
    auto* json = addJSON(app(), isJSON_);
    dictionary_.addDictionary(app());
    auto* learned = addFile(app(), "--learn", learned_,
                            "Write the definitions that this MXF file has of its own, in a\nMetaDictionary, as a "
                            "dictionary file for --dictionary")
                        ->type_name("FILE.mxf")
                        ->excludes("NAME")
                        ->excludes(json);
    addFile(app(), "-o,--output", output_, "Write that to this file instead of standard output, which is -",
            Dash::kOutput)
        ->type_name("FILE")
        ->needs(learned);
    addPartition(app(), partition_)->needs(learned);
    addLimits(app());
    addExamples({"dictionary AspectRatio", "dictionary 3c0a", "dictionary --learn in.mxf -o maker.dictionary"});
  }

  ExitCode run() const override {
    if (!learned_.empty()) return learn();
    const auto definitions = dictionary_.definitions();
    if (isJSON_) {
      printJSON(wanted_.empty() ? jsonOfSets(definitions) : jsonOf(definitions));
    } else {
      writeStandardOutput(wanted_.empty() ? listOfSets(definitions) : description(definitions));
    }
    return kSuccess;
  }

 private:
  /// What was asked for, or else what is found, as the caller shows it.
  template <class OfEntries, class OfMatches>
  auto found(const Definitions& definitions, OfEntries&& ofEntries, OfMatches&& ofMatches) const {
    const auto entries = entriesOf(definitions, wanted_);
    if (!entries.empty()) return ofEntries(entries);
    const DictionarySearch search(definitions, wanted_);
    if (search.matches().size() == 1) return ofEntries(entriesOf(definitions, search.matches()[0].key));
    if (!search.matches().empty()) return ofMatches(search.matches());
    throw CommandError("the dictionary has nothing of the name, key or tag '" + wanted_ + "'" + search.suggestion());
  }

  std::string description(const Definitions& definitions) const {
    return found(
        definitions, [&](const auto& entries) { return descriptionOf(definitions, entries); }, listOf);
  }

  JSON::Value jsonOf(const Definitions& definitions) const {
    return found(
        definitions, [&](const auto& entries) { return jsonOfEntries(definitions, entries); }, jsonOfMatches);
  }

  ExitCode learn() const {
    if (output_) refuseSameFile(learned_, *output_);
    refuseStoppedChange(learned_);
    writeOutput(output_, namingFile(learned_, [&] { return learnedText(); }));
    return kSuccess;
  }

  std::string learnedText() const {
    const auto partition = partitionIn(learned_, partition_);
    const auto metadata = MXF::readHeaderMetadata(learned_, dictionary_.load(), partition, limits());
    noteBetterPartition(learned_, app().count("--partition") != 0);
    auto definitions = dictionary_.definitions();
    const auto found = Registers::addFileDefinitions(*metadata, Platform::pathToUTF8(learned_), definitions);
    for (const auto& problem : found.problems)
      printMessage(oneLine(Platform::pathToUTF8(learned_) + ": " + describe(problem)));
    if (!found.isNew()) {
      throw CommandError("the metadata define nothing that the dictionary lacks");
    }
    return textOf(definitions, "Learned from " + oneLine(Platform::pathToUTF8(learned_.filename())) + ".",
                  found.source);
  }

  std::string wanted_;  // empty for the list of sets
  bool isJSON_ = false;
  Path learned_;
  std::optional<Path> output_;
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> dictionaryCommand(CLI::App& program) { return std::make_unique<DictionaryCommand>(program); }

}  // namespace Vantor::Tool
