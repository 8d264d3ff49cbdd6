#include "DictionaryOptions.h"

#include <string>
#include <utility>

#include "CommonOptions.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "ErrorText.h"
#include "Registers/DictionaryFiles.h"
#include "Registers/FileDefinitions.h"

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

void DictionaryOptions::addOwnDictionary(CLI::App& command, bool byDefault) {
  usesOwn_ = byDefault;
  auto* own = command.add_flag_callback(
      "--own-dictionary", [this] { usesOwn_ = true; },
      std::string("Add the definitions that the metadata have of their own, in\na MetaDictionary") +
          (byDefault ? " (default)" : ""));
  if (!byDefault) return;
  command
      .add_flag_callback(
          "--no-own-dictionary", [this] { usesOwn_ = false; }, "Leave out these definitions")
      ->excludes(own);
}

DictionaryOptions::Source DictionaryOptions::partitionOf(const Path& file, const MXF::PartitionChoice& choice,
                                                         std::optional<Vocabulary> vocabulary) {
  return {file, [=](const LoadFor& load) { return MXF::readHeaderMetadata(file, load(vocabulary), choice); }};
}

std::vector<std::unique_ptr<PartitionMetadata>> DictionaryOptions::read(const std::vector<Source>& sources) const {
  const auto readWith = [&](const LoadFor& load) {
    std::vector<std::unique_ptr<PartitionMetadata>> found;
    for (const auto& source : sources) found.push_back(source.read(load));
    return found;
  };
  auto metadata = readWith(loading());
  const auto own = usesOwn_ ? loadingOwn(sources, metadata) : LoadFor();
  if (!own) return metadata;
  try {
    return readWith(own);
  } catch (...) {
    printMessage("warning: the metadata cannot be read with their own definitions, and are read without: " +
                 currentExceptionText());
    return metadata;
  }
}

std::unique_ptr<PartitionMetadata> DictionaryOptions::read(const Source& source) const {
  return std::move(read(std::vector<Source>{source}).front());
}

SharedPtr<const MetaMetadata::Dictionary> DictionaryOptions::loadFor(const Source& source) const {
  if (!usesOwn_) return load();
  return read(source)->partitionDictionary().dictionary();
}

SharedPtr<const MetaMetadata::Dictionary> DictionaryOptions::tryLoadOwn(const Source& source) const {
  try {
    std::vector<std::unique_ptr<PartitionMetadata>> metadata;
    metadata.push_back(source.read(loading()));
    const auto own = loadingOwn({source}, metadata);
    return own ? own(std::nullopt) : nullptr;
  } catch (...) {
    return nullptr;
  }
}

DictionaryOptions::LoadFor DictionaryOptions::loading() const {
  return [this](std::optional<Vocabulary> vocabulary) { return load(vocabulary); };
}

DictionaryOptions::LoadFor DictionaryOptions::loadingOwn(
    const std::vector<Source>& sources, const std::vector<std::unique_ptr<PartitionMetadata>>& metadata) const {
  const auto all = std::make_shared<Definitions>(definitions());
  std::size_t own = 0;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const auto found = Registers::addFileDefinitions(*metadata[i], sources[i].file.u8string(), *all);
    own += found.sets + found.properties + found.extensions;
  }
  if (own == 0) return {};
  return [this, all](std::optional<Vocabulary> vocabulary) {
    return all->makeDictionary(vocabulary.value_or(vocabulary_));
  };
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
