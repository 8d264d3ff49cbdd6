#pragma once

#include "Core/Dictionary/Definitions.h"
#include "Core/MetaMetadata/HashIndex.h"
#include "Core/MetaMetadata/LabelHash.h"

namespace Vantor {

/// Finds the places of definitions. Entries are never removed: an old one may lead to a definition that has changed
/// since, so every look-up compares. Entering a definition twice does no harm.
class Definitions::Index {
 public:
  static constexpr uint32 kNotFound = MetaMetadata::HashIndex::kNotFound;

  void reserve(std::size_t properties, std::size_t sets) {
    properties_.reserve(properties);
    setsByKey_.reserve(sets);
    setsBySymbol_.reserve(sets);
  }

  uint32 findSet(const Definitions& in, const KLV::Key& key) const {
    const auto wanted = MetaMetadata::groupIdentity(key.rawBuffer());
    return setsByKey_.find(wanted.hash(), [&](uint32 place) {
      return MetaMetadata::groupIdentity(in.sets_[place].key.rawBuffer()) == wanted;
    });
  }
  uint32 findSet(const Definitions& in, std::string_view symbol) const {
    return findNamed(setsBySymbol_, in.sets_, symbol, &SetDefinition::symbol);
  }
  uint32 findProperty(const Definitions& in, const Types::UniversalLabel& key) const {
    return findKeyed(properties_, in.properties_, key);
  }
  uint32 findEnumeration(const Definitions& in, std::string_view name) const {
    return findNamed(enumerations_, in.enumerations_, name, &EnumerationDefinition::name);
  }
  uint32 findNamespace(const Definitions& in, std::string_view text, std::string_view ChosenNamespace::*field) const {
    return findNamed(namespaces_, in.namespaces_, text, field);
  }
  uint32 findLabel(const Definitions& in, const Types::UniversalLabel& key) const {
    return findKeyed(labels_, in.labels_, key);
  }
  uint32 findLabel(const Definitions& in, std::string_view symbol) const {
    return findNamed(labelsBySymbol_, in.labels_, symbol, &LabelDefinition::symbol);
  }

  /// Enters the definition at `place`, by everything that it is found by.
  void enterSet(const Definitions& in, uint32 place) {
    const auto& set = in.sets_[place];
    setsByKey_.insert(MetaMetadata::groupIdentity(set.key.rawBuffer()).hash(), place);
    setsBySymbol_.insert(MetaMetadata::hashOfText(set.symbol), place);
  }
  void enterProperty(const Definitions& in, uint32 place) {
    const auto& key = in.properties_[place].key;
    properties_.insert(MetaMetadata::elementIdentity(key.rawBuffer()).hash(), place);
  }
  void enterEnumeration(const Definitions& in, uint32 place) {
    enumerations_.insert(MetaMetadata::hashOfText(in.enumerations_[place].name), place);
  }
  /// By prefix and by URI.
  void enterNamespace(const Definitions& in, uint32 place) {
    const auto& chosen = in.namespaces_[place];
    namespaces_.insert(MetaMetadata::hashOfText(chosen.prefix), place);
    namespaces_.insert(MetaMetadata::hashOfText(chosen.uri), place);
  }
  void enterLabel(const Definitions& in, uint32 place) {
    const auto& label = in.labels_[place];
    labels_.insert(MetaMetadata::elementIdentity(label.key.rawBuffer()).hash(), place);
    labelsBySymbol_.insert(MetaMetadata::hashOfText(label.symbol), place);
  }

 private:
  template <class Definition>
  static uint32 findKeyed(const MetaMetadata::HashIndex& index, const Templates::vector<Definition>& list,
                          const Types::UniversalLabel& key) {
    const auto wanted = MetaMetadata::elementIdentity(key.rawBuffer());
    return index.find(wanted.hash(), [&](uint32 place) {
      return MetaMetadata::elementIdentity(list[place].key.rawBuffer()) == wanted;
    });
  }
  template <class Definition>
  static uint32 findNamed(const MetaMetadata::HashIndex& index, const Templates::vector<Definition>& list,
                          std::string_view name, std::string_view Definition::*field) {
    return index.find(MetaMetadata::hashOfText(name), [&](uint32 place) { return list[place].*field == name; });
  }

  MetaMetadata::HashIndex setsByKey_;
  MetaMetadata::HashIndex setsBySymbol_;
  MetaMetadata::HashIndex properties_;
  MetaMetadata::HashIndex enumerations_;
  MetaMetadata::HashIndex namespaces_;
  MetaMetadata::HashIndex labels_;
  MetaMetadata::HashIndex labelsBySymbol_;
};

}  // namespace Vantor
