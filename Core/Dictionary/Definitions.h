#pragma once

#include <set>
#include <string>
#include <string_view>

#include "Core/Dictionary/Definition.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/HashIndex.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

/// Definitions of sets, properties, enumerations and labels, collected from any number of sources, to make dictionaries
/// from. For one thread at a time; the dictionaries that it makes do not depend on it.
///
///     Definitions definitions = builtInDefinitions();
///     definitions.readFile("acme.dictionary");
///     const auto dictionary = definitions.makeDictionary();
///
/// Definitions may refer to others of any source, read before or after; `check`, which `makeDictionary` calls, verifies
/// these references. Reading and checking throw `Exceptions::InvalidFormat` "FILE:LINE: what; what to do". After an
/// exception from reading, the object can only be destroyed.
class Definitions {
 public:
  /// What happens to a definition that an earlier source has already.
  enum class Overlay : uint8 {
    kRefuse,   ///< an error
    kReplace,  ///< the new one takes its place: a newer register over an older one
  };

  /// Reads a file of the dictionary format (docs/dictionary-format.md).
  /// @throws Exceptions::IOError when it cannot be read; Exceptions::InvalidFormat for the first row that is wrong, or
  ///         when it is larger than any dictionary.
  void readFile(const Path& path);

  /// Reads a text of the dictionary format.
  /// @param name  stands for the file in messages.
  void readText(std::string text, std::string name, Overlay overlay = Overlay::kRefuse);

  /// Reads a text that lives as long as the process and is known to be right: the built-in data. It is not checked
  /// again unless something else is read, too.
  /// @param givesWay  whether a definition of a later source may take the place of one of these, whatever the overlay:
  ///                  they may be defined elsewhere.
  void readTrusted(std::string_view text, std::string name, bool givesWay = false);

  /// Enters the name of a published register, whose entries `DefinitionAdder` adds. Users do not edit registers, so
  /// messages about one advise another edition.
  /// @return its place in `sources()`.
  uint32 addRegister(std::string name);

  /// Keeps a text for as long as this object lives.
  std::string_view keep(std::string text);

  /// @throws Exceptions::InvalidFormat for unknown parents, types and targets, for sets that inherit from themselves or
  /// from too many, for clashing export names and static local tags, and for more than fits into memory.
  void check();

  /// A dictionary of these definitions, in order of definition. May be called again, for another vocabulary.
  SharedPtr<const MetaMetadata::Dictionary> makeDictionary(
      MetaMetadata::Vocabulary vocabulary = MetaMetadata::Vocabulary::kLegacy);

  const Templates::vector<SetDefinition>& sets() const { return sets_; }
  const Templates::vector<PropertyDefinition>& properties() const { return properties_; }
  const Templates::vector<EnumerationDefinition>& enumerations() const { return enumerations_; }
  const Templates::vector<LabelDefinition>& labels() const { return labels_; }
  const Templates::vector<CommonNameDefinition>& commonNames() const { return commonNames_; }
  const Templates::vector<ChosenNamespace>& namespaces() const { return namespaces_; }
  const Templates::vector<std::string>& sources() const { return sources_; }

  /// Each of these gives null when there is none. Octet 8 of a key is ignored, and octet 6 of a set's.
  const SetDefinition* findSet(const KLV::Key& key) const;
  const SetDefinition* findSet(std::string_view symbol) const;
  const PropertyDefinition* findProperty(const Types::UniversalLabel& key) const;
  const EnumerationDefinition* findEnumeration(std::string_view name) const;
  const LabelDefinition* findLabel(const Types::UniversalLabel& key) const;
  const LabelDefinition* findLabel(std::string_view symbol) const;

 private:
  friend class DefinitionAdder;
  friend class DefinitionReader;
  friend class DefinitionCheck;

  static constexpr uint32 kNotFound = MetaMetadata::HashIndex::kNotFound;

  // Places in the lists; `kNotFound` when there is none.
  uint32 placeOfSet(const KLV::Key& key) const;
  uint32 placeOfSet(std::string_view symbol) const;
  uint32 placeOfProperty(const Types::UniversalLabel& key) const;
  uint32 placeOfEnumeration(std::string_view name) const;
  uint32 placeOfLabel(const Types::UniversalLabel& key) const;
  uint32 placeOfLabel(std::string_view symbol) const;

  // Enter the definition at a place, by everything that it is found by. Entries are never removed: an old one may lead
  // to a definition that has changed since, so every look-up compares. Entering a definition twice does no harm.
  void enterSet(uint32 place);
  void enterProperty(uint32 place);
  void enterEnumeration(uint32 place);
  void enterLabel(uint32 place);

  /// Gives the properties of a dictionary their enumerations and targets, and adds labels and common names.
  void addMeanings(MetaMetadata::DictionaryBuilder& builder) const;
  /// Makes room for what a text of this size may hold.
  void reserve(std::size_t textSize);
  uint32 addSource(std::string name);
  std::string sourceOf(const Origin& origin) const;
  /// "FILE:LINE".
  std::string where(const Origin& origin) const;
  /// What a message advises for a definition of this origin.
  std::string adviceFor(const Origin& origin, const char* advice) const;
  /// Throws Exceptions::InvalidFormat "FILE:LINE: what; advice".
  /// @param advice     null when it is part of `what`.
  /// @param arguments  fill the fields of both formats, in order.
  template <class... Arguments>
  [[noreturn]] void refuse(const Origin& origin, const Exceptions::Format& what, const char* advice,
                           const Arguments&... arguments) const {
    const auto text = std::string("{}:{}: ") + what.text() + adviceFor(origin, advice);
    Exceptions::raise<Exceptions::InvalidFormat>({text.c_str(), {what.file().c_str(), what.line()}}, sourceOf(origin),
                                                 origin.line, arguments...);
  }

  Templates::vector<auto_ptr<const std::string>> texts_;
  Templates::vector<std::string> sources_;
  Templates::vector<bool> registerSources_;  // beside the sources
  std::set<uint32> yieldingSources_;         // whose definitions give way to later ones
  Templates::vector<ChosenNamespace> namespaces_ = Templates::vector<ChosenNamespace>(1);
  Templates::vector<SetDefinition> sets_;
  Templates::vector<PropertyDefinition> properties_;
  Templates::vector<EnumerationDefinition> enumerations_;
  Templates::vector<LabelDefinition> labels_;
  Templates::vector<CommonNameDefinition> commonNames_;
  MetaMetadata::HashIndex setsByKey_;
  MetaMetadata::HashIndex setsBySymbol_;
  MetaMetadata::HashIndex propertiesByKey_;
  MetaMetadata::HashIndex enumerationsByName_;
  MetaMetadata::HashIndex labelsByKey_;
  MetaMetadata::HashIndex labelsBySymbol_;
  bool isChecked_ = true;
};

}  // namespace Vantor
