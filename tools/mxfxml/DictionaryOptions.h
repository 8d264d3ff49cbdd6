#pragma once

#include <CLI/CLI.hpp>
#include <optional>
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

  /// The built-in dictionary, or one with the definitions of the chosen files beside.
  /// @param vocabulary  that of a document; without one, what --vocabulary chose, or legacy.
  /// @throws OtherFileError naming the file and the row that is wrong.
  SharedPtr<const MetaMetadata::Dictionary> load(std::optional<MetaMetadata::Vocabulary> vocabulary = {}) const;

  /// The definitions themselves. @throws as above.
  Definitions definitions() const;

 private:
  std::vector<Path> files_;
  MetaMetadata::Vocabulary vocabulary_ = MetaMetadata::Vocabulary::kLegacy;
};

}  // namespace Vantor::Tool
