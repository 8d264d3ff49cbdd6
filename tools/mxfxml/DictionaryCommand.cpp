#include "DictionaryCommand.h"

#include "DictionaryText.h"
#include "ErrorText.h"
#include "StandardStreams.h"

namespace Vantor::Tool {

DictionaryCommand::DictionaryCommand(CLI::App& program)
    : Command(program, "dictionary", "Print the sets of the dictionary, or what it has under one name") {
  app()
      .add_option("NAME", wanted_,
                  "A set, property, enumeration or label by symbol or name in XML,\nby key, or by "
                  "static local tag (four hexadecimal digits);\nall sets without it")
      ->type_name("");
  dictionary_.addDictionary(app());
}

void DictionaryCommand::run() const {
  const auto definitions = dictionary_.definitions();
  if (wanted_.empty()) return writeStandardOutput(listOfSets(definitions));
  const std::string text = descriptionOf(definitions, wanted_);
  if (text.empty()) {
    const std::string similar = similarNames(definitions, wanted_);
    throw CommandError("the dictionary has nothing of the name, key or tag '" + wanted_ + "'" +
                       (similar.empty() ? "" : "; there is " + similar));
  }
  writeStandardOutput(text);
}

}  // namespace Vantor::Tool
