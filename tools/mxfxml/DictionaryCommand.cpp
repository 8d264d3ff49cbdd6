#include "Command.h"
#include "DictionaryOptions.h"
#include "DictionarySearch.h"
#include "DictionaryText.h"
#include "ErrorText.h"
#include "StandardStreams.h"

namespace Vantor::Tool {

namespace {

class DictionaryCommand final : public Command {
 public:
  explicit DictionaryCommand(CLI::App& program)
      : Command(program, "dictionary", "Print the sets of the dictionary, or what it has under one name") {
    app()
        .add_option("NAME", wanted_,
                    "A set, property, enumeration or label by symbol, name in XML\nor common name, by key, or by "
                    "static local tag (four hexadecimal\ndigits); for anything else, all that have it in a name or\n"
                    "begin their key with it. All sets without NAME")
        ->type_name("");
    dictionary_.addDictionary(app());
  }

  ExitCode run() const override {
    const auto definitions = dictionary_.definitions();
    writeStandardOutput(wanted_.empty() ? listOfSets(definitions) : description(definitions));
    return kSuccess;
  }

 private:
  std::string description(const Definitions& definitions) const {
    const std::string text = descriptionOf(definitions, wanted_);
    if (!text.empty()) return text;
    const DictionarySearch search(definitions, wanted_);
    if (search.matches().size() == 1) return descriptionOf(definitions, search.matches()[0].key);
    if (!search.matches().empty()) return listOf(search.matches());
    throw CommandError("the dictionary has nothing of the name, key or tag '" + wanted_ + "'" + search.suggestion());
  }

  std::string wanted_;  // empty for the list of sets
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> dictionaryCommand(CLI::App& program) { return std::make_unique<DictionaryCommand>(program); }

}  // namespace Vantor::Tool
