#include "DictionaryOptions.h"

#include <string>

#include "CommonOptions.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "ErrorText.h"
#include "Registers/DictionaryFiles.h"

namespace Vantor::Tool {

using MetaMetadata::Vocabulary;

void DictionaryOptions::addDictionary(CLI::App& command) {
  const auto take = [this](const std::vector<std::string>& names) {
    for (const auto& name : names) files_.push_back(std::filesystem::u8path(name));
  };
  command
      .add_option_function<std::vector<std::string>>(
          "--dictionary", take,
          "Add the definitions of this file: a dictionary file, or\nSMPTE's registers in XML, one file each or their "
          "folder;\nmay be given several times")
      ->type_name("FILE")
      ->allow_extra_args(false)
      ->check(whyNoFileName);
}

void DictionaryOptions::addVocabulary(CLI::App& command) {
  addChoice(command, "--vocabulary", vocabulary_, "vocabulary",
            {{"legacy", Vocabulary::kLegacy}, {"st434-2014", Vocabulary::kST434_2014}},
            "legacy (default), or st434-2014 for the namespaces of\nSMPTE ST 434:2014");
}

SharedPtr<const MetaMetadata::Dictionary> DictionaryOptions::load(std::optional<Vocabulary> vocabulary) const {
  const auto chosen = vocabulary.value_or(vocabulary_);
  return files_.empty() ? builtInDictionary(chosen) : definitions().makeDictionary(chosen);
}

Definitions DictionaryOptions::definitions() const {
  try {
    auto definitions = builtInDefinitions();
    Registers::readDictionaryFiles(files_, definitions);
    definitions.check();
    return definitions;
  } catch (...) {
    throw OtherFileError(currentExceptionText());
  }
}

}  // namespace Vantor::Tool
