#pragma once

#include <CLI/CLI.hpp>
#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// The options that choose definitions: --dictionary and, where a document is written, --vocabulary.
/// Filled during parsing; lives as long as the subcommand.
class DictionaryOptions {
 public:
  void addDictionary(CLI::App& command);
  void addVocabulary(CLI::App& command);

  /// What --vocabulary chose, legacy without it.
  MetaMetadata::Vocabulary vocabulary() const { return vocabulary_; }

  /// The built-in dictionary, or one with the definitions of the chosen files beside.
  /// @throws OtherFileError naming the file and the row that is wrong.
  SharedPtr<const MetaMetadata::Dictionary> load() const { return load(vocabulary_); }
  SharedPtr<const MetaMetadata::Dictionary> load(MetaMetadata::Vocabulary vocabulary) const;

  /// The definitions themselves. @throws as above.
  Definitions definitions() const;

 private:
  std::vector<Path> files_;
  MetaMetadata::Vocabulary vocabulary_ = MetaMetadata::Vocabulary::kLegacy;
};

}  // namespace Vantor::Tool
