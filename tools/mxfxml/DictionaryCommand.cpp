#include "Command.h"
#include "DictionaryOptions.h"
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
                    "A set, property, enumeration or label by symbol or name in XML,\nby key, or by "
                    "static local tag (four hexadecimal digits);\nall sets without it")
        ->type_name("");
    dictionary_.addDictionary(app());
  }

  ExitCode run() const override {
    const auto definitions = dictionary_.definitions();
    const std::string text = wanted_.empty() ? listOfSets(definitions) : descriptionOf(definitions, wanted_);
    if (!wanted_.empty() && text.empty()) refuse(definitions);
    writeStandardOutput(text);
    return kSuccess;
  }

 private:
  [[noreturn]] void refuse(const Definitions& definitions) const {
    const std::string similar = similarNames(definitions, wanted_);
    throw CommandError("the dictionary has nothing of the name, key or tag '" + wanted_ + "'" +
                       (similar.empty() ? "" : "; there is " + similar));
  }

  std::string wanted_;  // empty for the list of sets
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> dictionaryCommand(CLI::App& program) { return std::make_unique<DictionaryCommand>(program); }

}  // namespace Vantor::Tool
