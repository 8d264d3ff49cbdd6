#include "DictionaryOptions.h"

#include <map>
#include <string>

#include "CommonOptions.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "ErrorText.h"
#include "Registers/DictionaryFiles.h"

namespace Vantor::Tool {

namespace {

using MetaMetadata::Vocabulary;

const std::map<std::string, Vocabulary>& vocabularies() {
  static const std::map<std::string, Vocabulary> named = {{"legacy", Vocabulary::kLegacy},
                                                          {"st434-2014", Vocabulary::kST434_2014}};
  return named;
}

std::string whyNoVocabulary(const std::string& name) {
  return vocabularies().count(name) != 0 ? "" : "'" + name + "' is no vocabulary: expected 'legacy' or 'st434-2014'";
}

}  // namespace

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
  const auto take = [this](const std::string& name) { vocabulary_ = vocabularies().at(name); };
  command
      .add_option_function<std::string>("--vocabulary", take,
                                        "legacy (default), or st434-2014 for the namespaces of\nSMPTE ST 434:2014")
      ->type_name("NAME")
      ->check(whyNoVocabulary);
}

SharedPtr<const MetaMetadata::Dictionary> DictionaryOptions::load(Vocabulary vocabulary) const {
  return files_.empty() ? builtInDictionary(vocabulary) : definitions().makeDictionary(vocabulary);
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
