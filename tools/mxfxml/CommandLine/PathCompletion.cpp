#include "CommandLine/PathCompletion.h"

#include <map>
#include <memory>

#include "CommandLine/LimitOptions.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MetaMetadata/LabelIndex.h"
#include "Core/Metadata/LabelKinds.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::Tool {

namespace {

using HintKind = CompletionHint::Kind;
using Words = std::vector<std::string>;
using MetaMetadata::MetaAttribute;
using MetaMetadata::MetaMetadataSet;

constexpr std::size_t kMostNumbers = 20;  // of sets of one kind, by their numbers

bool begins(const std::string& word, const std::string& beginning) {
  return word.compare(0, beginning.size(), beginning) == 0;
}

/// A path that is being written: up to the name or the value that is not whole yet.
struct BegunPath {
  explicit BegunPath(const std::string& word) {
    int depth = 0;
    for (std::size_t i = 0; i < word.size() && !equals; ++i) {
      const char character = word[i];
      depth += character == '[' ? 1 : character == ']' ? -1 : 0;
      if (depth != 0) continue;
      if (character == '/') {
        step = i + 1;
        point.reset();
      }
      if (character == '.') point = i;
      if (character == '=') equals = i;
    }
  }

  std::size_t step = 0;               // where the name of the last set begins
  std::optional<std::size_t> point;   // before the property
  std::optional<std::size_t> equals;  // before the value
};

class PathCompleter {
 public:
  PathCompleter(HintKind kind, const std::string& word, const std::optional<Path>& file)
      : kind_(kind), word_(word), begun_(word), dictionary_(builtInDictionary()) {
    if (file) read(*file);
  }

  Words completions() {
    if (kind_ == HintKind::kDefinition) {
      addDefinitions();
    } else if (begun_.equals) {
      if (kind_ == HintKind::kAssignment) addValues();
    } else if (begun_.point && kind_ != HintKind::kSetPath) {
      addProperties();
    } else {
      addSets();
    }
    return std::move(found_);
  }

 private:
  void read(const Path& file) {
    try {
      metadata_ = MXF::readHeaderMetadata(file, dictionary_, MXF::PartitionChoice::header(), limits());
    } catch (const Exceptions::BaseException&) {
      metadata_ = nullptr;  // the command itself reports what is wrong with the file
    }
  }

  void add(const std::string& before, std::string name, const std::string& behind) {
    std::string word = before + std::move(name) + behind;
    if (begins(word, word_)) found_.push_back(std::move(word));
  }

  /// The names of the sets of the file, numbered where there are several of a kind; else all of the dictionary.
  void addSets() {
    const std::string before = word_.substr(0, begun_.step), behind = kind_ == HintKind::kSetPath ? "" : ".";
    for (const auto& [definition, count] : kinds()) {
      addSet(before, definition->symbol(), count, behind);
      const std::string common(definition->commonName());
      if (!common.empty()) addSet(before, common, count, behind);
    }
  }

  void addSet(const std::string& before, const std::string& name, std::size_t count, const std::string& behind) {
    if (count <= 1) return add(before, name, behind);
    add(before, name + "[*]", behind);
    for (std::size_t i = 1; i <= std::min(count, kMostNumbers); ++i) {
      add(before, name + "[" + std::to_string(i) + "]", behind);
    }
  }

  /// The kinds of sets that may be meant, with how many sets of each the file has.
  std::map<const MetaMetadataSet*, std::size_t> kinds() const {
    std::map<const MetaMetadataSet*, std::size_t> kinds;
    if (metadata_ != nullptr) {
      for (const MetadataSet* set : std::as_const(*metadata_).sets()) {
        if (set->definition() != nullptr) ++kinds[set->definition()];
      }
    } else {
      for (auto at = dictionary_->metaMetadataSetBegin(); at != dictionary_->metaMetadataSetEnd(); ++at) {
        if ((*at)->isConcrete()) kinds[*at] = 0;
      }
    }
    return kinds;
  }

  std::vector<const MetaMetadataSet*> definitions() const {
    const auto end = word_.find_first_of("[.", begun_.step);
    return dictionary_->findSetsByName(word_.substr(begun_.step, end - begun_.step));
  }

  void addProperties() {
    const std::string before = word_.substr(0, *begun_.point + 1), behind = kind_ == HintKind::kAssignment ? "=" : "";
    for (const auto* definition : definitions()) {
      for (const auto& attribute : definition->attributes()) {
        const auto& element = *attribute.metaElement();
        add(before, element.symbol(), behind);
        const std::string common(definition->commonNameOf(element));
        if (!common.empty()) add(before, common, behind);
      }
    }
  }

  /// The symbols of a property's enumeration or of the labels that it takes, or the values of a Boolean.
  void addValues() {
    const std::string before = word_.substr(0, *begun_.equals + 1);
    const auto property = word_.substr(*begun_.point + 1, *begun_.equals - *begun_.point - 1);
    for (const auto* definition : definitions()) {
      const auto* attribute = dictionary_->findAttributeByName(*definition, property);
      if (attribute != nullptr) addValuesOf(before, *attribute->metaElement());
    }
  }

  void addValuesOf(const std::string& before, const MetaMetadata::MetaElement& element) {
    if (const auto* enumeration = element.enumeration()) {
      for (const auto name : enumeration->firstNames(enumeration->size())) add(before, std::string(name), "");
    } else if (const auto* kind = labelKindOf(element.symbol())) {
      for (const auto& label : builtInLabels().labels()) {
        if (isOfKind(kind, label.key)) add(before, std::string(label.symbol), "");
      }
    } else if (element.dataType() == Types::Identifiers::kBoolean) {
      for (const char* value : {"true", "false"}) add(before, value, "");
    }
  }

  void addDefinitions() {
    for (auto at = dictionary_->metaMetadataSetBegin(); at != dictionary_->metaMetadataSetEnd(); ++at) {
      add("", (*at)->symbol(), "");
    }
    for (auto at = dictionary_->metaElementBegin(); at != dictionary_->metaElementEnd(); ++at) {
      add("", (*at)->symbol(), "");
    }
    for (const auto& entry : dictionary_->commonNames().entries()) add("", entry.name, "");
    for (const auto& label : builtInLabels().labels()) add("", std::string(label.symbol), "");
  }

  HintKind kind_;
  const std::string& word_;
  BegunPath begun_;
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  SharedPtr<const PartitionMetadata> metadata_;
  Words found_;
};

}  // namespace

Words pathCompletions(HintKind kind, const std::string& word, const std::optional<Path>& file) {
  return PathCompleter(kind, word, file).completions();
}

}  // namespace Vantor::Tool
