#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Path.h"
#include "Registers/FileDefinitions.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

/// The options that choose definitions: --dictionary, --own-dictionary and, where a document is written, --vocabulary.
/// Filled during parsing; lives as long as the subcommand.
class DictionaryOptions {
 public:
  void addDictionary(CLI::App& command);
  void addVocabulary(CLI::App& command);
  /// Adds --own-dictionary, and where that holds by default, --no-own-dictionary.
  void addOwnDictionary(CLI::App& command, bool byDefault = false);

  /// How to read metadata with a dictionary. Vocabularies are those of documents.
  using LoadFor = std::function<SharedPtr<const MetaMetadata::Dictionary>(std::optional<MetaMetadata::Vocabulary>)>;
  struct Source {
    Path file;
    std::function<std::unique_ptr<PartitionMetadata>(const LoadFor&)> read;
    Missing* missing = nullptr;  ///< where reading puts what is missing; null where damage is refused
  };
  /// The header metadata of a partition of an MXF file or of standard input, as a source.
  /// @param vocabulary  as in `load`.
  /// @param missing     as in `readPartition`; outlives the source.
  static Source partitionOf(const Path& file, const MXF::PartitionChoice& choice,
                            std::optional<MetaMetadata::Vocabulary> vocabulary = {}, Missing* missing = nullptr);

  /// Reads metadata, and where their own definitions are wanted and there are any, once more: each source with its own
  /// and then those of the others. Warns of sources without definitions, and of definitions that are left out. Metadata
  /// that cannot be read so is read without, with a warning; but not where the user asks for it.
  /// @throws as `load`, and what the sources throw.
  std::vector<std::unique_ptr<PartitionMetadata>> read(const std::vector<Source>& sources) const;
  /// The same for one source.
  /// @param found  receives what became of its own definitions.
  std::unique_ptr<PartitionMetadata> read(const Source& source, Registers::FileDefinitions* found = nullptr) const;
  /// The same without warnings, for a document that the command itself has made.
  std::unique_ptr<PartitionMetadata> readCopy(const Source& source) const;
  /// A dictionary with the definitions that the metadata have of their own, where these are wanted.
  SharedPtr<const MetaMetadata::Dictionary> loadFor(const Source& source) const;
  bool usesOwn() const { return usesOwn_; }
  /// A dictionary with these definitions whether they are wanted or not; null where the metadata have none, or none
  /// that can be read.
  SharedPtr<const MetaMetadata::Dictionary> tryLoadOwn(const Source& source) const;

  /// The built-in dictionary, or one with the definitions of the chosen files beside.
  /// @param vocabulary  that of a document; without one, what --vocabulary chose, or legacy.
  /// @throws OtherFileError naming the file and the row that is wrong.
  SharedPtr<const MetaMetadata::Dictionary> load(std::optional<MetaMetadata::Vocabulary> vocabulary = {}) const;

  /// The definitions themselves, without any that metadata have of their own. @throws as above.
  Definitions definitions() const;

 private:
  using AllMetadata = std::vector<std::unique_ptr<PartitionMetadata>>;
  using AllFound = std::vector<Registers::FileDefinitions>;

  LoadFor loading() const;
  LoadFor loadingOwn(const std::vector<Source>& sources, const AllMetadata& metadata, std::size_t first,
                     Registers::FileDefinitions& found) const;
  AllMetadata readOwn(const std::vector<Source>& sources, const AllMetadata& metadata, AllFound& found) const;
  AllMetadata readAll(const std::vector<Source>& sources, AllFound& found) const;
  void warnOf(const Path& file, const Registers::FileDefinitions& found) const;

  std::vector<Path> files_;
  bool usesOwn_ = false;
  bool usesOwnByDefault_ = false;
  MetaMetadata::Vocabulary vocabulary_ = MetaMetadata::Vocabulary::kLegacy;
};

}  // namespace Vantor::Tool
