#include "CommandLine/DictionaryOptions.h"

#include <algorithm>
#include <string>
#include <utility>

#include "CommandLine/CommonOptions.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Platform/Path.h"
#include "Registers/DictionaryFiles.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

using MetaMetadata::Vocabulary;

void DictionaryOptions::addDictionary(CLI::App& command) {
  const auto take = [this](const std::vector<std::string>& names) {
    for (const auto& name : names) files_.push_back(Platform::pathFromUTF8(name));
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
  usesOwn_ = usesOwnByDefault_ = byDefault;
  auto* own = command.add_flag_callback(
      "--own-dictionary",
      [this] {
        usesOwn_ = true;
        usesOwnByDefault_ = false;
      },
      std::string("Add the definitions that the metadata have of their own, in\na MetaDictionary") +
          (byDefault ? " (default)" : ""));
  if (!byDefault) return;
  command
      .add_flag_callback(
          "--no-own-dictionary", [this] { usesOwn_ = false; }, "Leave out these definitions")
      ->excludes(own);
}

DictionaryOptions::Source DictionaryOptions::partitionOf(const Path& file, const MXF::PartitionChoice& choice,
                                                         std::optional<Vocabulary> vocabulary, Missing* missing) {
  return {file, [=](const LoadFor& load) { return readPartition(file, load(vocabulary), choice, missing); }, missing};
}

DictionaryOptions::AllMetadata DictionaryOptions::read(const std::vector<Source>& sources) const {
  AllFound found;
  auto metadata = readAll(sources, found);
  for (std::size_t i = 0; i < found.size(); ++i) warnOf(sources[i].file, found[i]);
  return metadata;
}

std::unique_ptr<PartitionMetadata> DictionaryOptions::read(const Source& source,
                                                           Registers::FileDefinitions* found) const {
  AllFound all;
  auto metadata = std::move(readAll({source}, all).front());
  for (const auto& one : all) warnOf(source.file, one);
  if (found != nullptr && !all.empty()) *found = std::move(all.front());
  return metadata;
}

std::unique_ptr<PartitionMetadata> DictionaryOptions::readCopy(const Source& source) const {
  AllFound found;
  return std::move(readAll({source}, found).front());
}

namespace {

Missing missingIn(const DictionaryOptions::Source& source) {
  return source.missing == nullptr ? Missing() : *source.missing;
}

}  // namespace

/// @param found  receives nothing where their own definitions are not wanted, or cannot be used.
DictionaryOptions::AllMetadata DictionaryOptions::readAll(const std::vector<Source>& sources, AllFound& found) const {
  AllMetadata metadata;
  for (const auto& source : sources) metadata.push_back(source.read(loading()));
  if (!usesOwn_) return metadata;
  if (!usesOwnByDefault_) return readOwn(sources, metadata, found);
  std::vector<Missing> missing;
  for (const auto& source : sources) missing.push_back(missingIn(source));
  try {
    auto own = readOwn(sources, metadata, found);
    for (std::size_t i = 0; i < sources.size(); ++i) {
      if (missingIn(sources[i]).size() > missing[i].size()) throw CommandError(describe(sources[i].missing->back()));
    }
    return own;
  } catch (...) {
    found.clear();
    for (std::size_t i = 0; i < sources.size(); ++i) {
      if (sources[i].missing != nullptr) *sources[i].missing = missing[i];
    }
    printMessage("warning: the metadata cannot be read with their own definitions, and are read without: " +
                 currentExceptionText());
    return metadata;
  }
}

// Names depend on the definitions that are there before, and documents have those of their own definitions.
DictionaryOptions::AllMetadata DictionaryOptions::readOwn(const std::vector<Source>& sources,
                                                          const AllMetadata& metadata, AllFound& found) const {
  AllMetadata own;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const auto load = loadingOwn(sources, metadata, i, found.emplace_back());
    own.push_back(sources[i].read(load));
  }
  return own;
}

void DictionaryOptions::warnOf(const Path& file, const Registers::FileDefinitions& found) const {
  if (usesOwnByDefault_) return;
  const auto name = oneLine(Platform::pathToUTF8(file)) + ": warning: ";
  if (!found.isNew()) printMessage(name + "the metadata define nothing that the dictionary lacks");
  const auto left = std::count_if(found.problems.begin(), found.problems.end(), Registers::isLeftOut);
  if (left == 0) return;
  const auto first = std::find_if(found.problems.begin(), found.problems.end(), Registers::isLeftOut);
  printMessage(name + "definitions left out: " + std::to_string(left) + ", such as " + oneLine(describe(*first)) +
               "; mxfxml dictionary --learn lists them");
}

SharedPtr<const MetaMetadata::Dictionary> DictionaryOptions::loadFor(const Source& source) const {
  if (!usesOwn_) return load();
  return read(source)->partitionDictionary().dictionary();
}

SharedPtr<const MetaMetadata::Dictionary> DictionaryOptions::tryLoadOwn(const Source& source) const {
  try {
    AllMetadata metadata;
    metadata.push_back(source.read(loading()));
    Registers::FileDefinitions found;
    const auto own = loadingOwn({source}, metadata, 0, found);
    return found.isNew() ? own(std::nullopt) : nullptr;
  } catch (...) {
    return nullptr;
  }
}

DictionaryOptions::LoadFor DictionaryOptions::loading() const {
  return [this](std::optional<Vocabulary> vocabulary) { return load(vocabulary); };
}

/// Those of the first source come first.
DictionaryOptions::LoadFor DictionaryOptions::loadingOwn(const std::vector<Source>& sources,
                                                         const AllMetadata& metadata, std::size_t first,
                                                         Registers::FileDefinitions& found) const {
  const auto all = std::make_shared<Definitions>(definitions());
  const auto add = [&](std::size_t i) {
    return Registers::addFileDefinitions(*metadata[i], Platform::pathToUTF8(sources[i].file), *all);
  };
  found = add(first);
  bool isNew = found.isNew();
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (i != first) isNew = add(i).isNew() || isNew;
  }
  if (!isNew) return loading();
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
