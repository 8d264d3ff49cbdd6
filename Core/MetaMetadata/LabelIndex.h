#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Core/MetaMetadata/HashIndex.h"
#include "Core/Platform/Containers.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::MetaMetadata {

/// A universal label with its names (SMPTE ST 400), which belong to someone else.
struct LabelNames {
  Types::UniversalLabel key;
  std::string_view symbol;
  std::string_view name;
};

/// Finds labels by key, by symbol, by name and by a part of either. Never changes; any thread may look up.
class LabelIndex {
 public:
  using Labels = Templates::vector<LabelNames>;
  /// Whether a label may be meant.
  using Filter = std::function<bool(const Types::UniversalLabel& label)>;

  /// @param labels  of two with one key or one symbol, the first is found. Their texts outlive the index.
  explicit LabelIndex(const Labels& labels);

  /// By all 16 octets; null when there is none.
  const LabelNames* find(const Types::UniversalLabel& key) const;
  const LabelNames* findSymbol(std::string_view symbol) const;

  /// The labels that a text may mean: those whose symbol it is, or else whose name it is, or else in whose symbol or
  /// name it is one whole word or several. A run of digits is a word, and so is a run of letters up to a capital behind
  /// a small one; a part has three letters or digits at least. Case, white space and punctuation do not count. In the
  /// order of the index; takes time in proportion to what is found.
  std::vector<const LabelNames*> findNamed(std::string_view text, const Filter& mayBe) const;
  /// The labels that have a text anywhere in their symbol or name, to suggest them. Compares all names.
  std::vector<const LabelNames*> findContaining(std::string_view text, const Filter& mayBe) const;

 private:
  /// A symbol or a name from one of its words on.
  struct Part {
    uint32 start;  // in `folded_`
    uint32 label;
  };
  using Places = std::vector<uint32>;

  void indexParts() const;
  void addParts(std::string_view name, uint32 label) const;
  /// The text from a part to the end of its symbol or name.
  std::string_view textAt(uint32 start) const;
  Places placesOfWords(const std::string& folded) const;
  std::vector<const LabelNames*> labelsAt(Places places, const Filter& mayBe) const;

  Labels labels_;
  HashIndex byKey_;
  HashIndex bySymbol_;
  // Made by the first look-up by name.
  mutable std::once_flag partsIndexed_;
  mutable std::string folded_;              // all symbols and names, with line feeds behind them
  mutable std::vector<bool> wordBegins_;    // at these; a line feed ends a word
  mutable Templates::vector<Part> parts_;   // in the order of their texts
  mutable Templates::vector<Part> wholes_;  // symbols and names, in the order of the labels
};

}  // namespace Vantor::MetaMetadata
