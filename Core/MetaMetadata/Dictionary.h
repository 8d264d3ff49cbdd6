#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Core/KLV/Key.h"
#include "Core/MetaMetadata/CommonNames.h"
#include "Core/MetaMetadata/Enumeration.h"
#include "Core/MetaMetadata/HashIndex.h"
#include "Core/MetaMetadata/LabelIndex.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::MetaMetadata {

/// A universal label that means something by itself (SMPTE ST 400).
struct Label {
  Types::UniversalLabel key;
  std::string symbol;
  std::string name;
};

/// Appends labels to those of a dictionary; their texts live as long as the process. Called by any thread.
using LabelSource = void (*)(LabelIndex::Labels& labels);

/// The definitions of metadata sets and of their properties. Made by a `DictionaryBuilder`, never changed afterwards:
/// any number of threads may share one. Every definition that it hands out belongs to it and lives as long as it does.
class Dictionary {
 public:
  using MetaMetadataSetIterator = Templates::vector<const MetaMetadataSet*>::const_iterator;
  using MetaElementIterator = Templates::vector<const MetaElement*>::const_iterator;

  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;
  ~Dictionary();

  /// The sets in order of definition.
  MetaMetadataSetIterator metaMetadataSetBegin() const { return sets_.begin(); }
  MetaMetadataSetIterator metaMetadataSetEnd() const { return sets_.end(); }
  /// The properties in order of definition, each once however many sets use it.
  MetaElementIterator metaElementBegin() const { return elements_.begin(); }
  MetaElementIterator metaElementEnd() const { return elements_.end(); }

  /// Each of these gives null when there is no such definition, and the one defined first when there are several.
  /// Octets 6 (the KLV coding) and 8 (the version) of the key are ignored.
  const MetaMetadataSet* findSet(const KLV::Key& key) const;
  const MetaMetadataSet* findSetBySymbol(std::string_view symbol) const;
  /// Octet 8 of the label, its version, is ignored.
  const MetaElement* findElement(const Types::UniversalLabel& label) const;
  /// A property that has this static local tag in some set. 0 is no tag.
  const MetaElement* findElementByStaticTag(uint16 tag) const;

  /// A label that was added to the dictionary; octet 8 is ignored. The built-in labels are not among them: see
  /// `builtInLabels()`.
  const Label* findLabel(const Types::UniversalLabel& label) const;
  /// The labels that were added, then those of the source that the builder was given. Made by the first call; any
  /// thread may call.
  const LabelIndex& labels() const;

  const CommonNames& commonNames() const { return commonNames_; }

  /// Every set that has this name (`MetaMetadataSet::isNamed`), in order of definition; without one, the set with this
  /// common name.
  std::vector<const MetaMetadataSet*> findSetsByName(std::string_view name) const;
  /// The property of that name among those of a set, by symbol before tag name before common name; null when the set
  /// lists none.
  /// @param set  of this dictionary.
  const MetaAttribute* findAttributeByName(const MetaMetadataSet& set, std::string_view name) const;

 private:
  friend class DictionaryBuilder;
  template <class T>
  using Pool = std::deque<T, Platform::StdAllocator<T>>;

  Dictionary();
  void indexNames() const;

  Pool<MetaElement> simpleElements_;
  Pool<MetaCollectionElement> collectionElements_;
  Pool<ExtensionAttributes> attributeExtensions_;
  Pool<Enumeration> enumerations_;
  Templates::vector<Label> labels_;
  LabelSource otherLabels_ = nullptr;
  Templates::vector<auto_ptr<MetaMetadataSet>> ownedSets_;
  Templates::vector<const MetaMetadataSet*> sets_;
  Templates::vector<const MetaElement*> elements_;
  HashIndex setsByKey_;
  HashIndex setsBySymbol_;
  HashIndex elementsByLabel_;
  HashIndex elementsByStaticTag_;
  HashIndex labelsByKey_;
  CommonNames commonNames_;
  // Made by the first look-up by name: most processes need none.
  mutable std::once_flag namesIndexed_;
  mutable HashIndex setsByName_;
  mutable HashIndex elementsByName_;
  mutable std::once_flag labelsIndexed_;
  mutable auto_ptr<const LabelIndex> labelIndex_;
};

}  // namespace Vantor::MetaMetadata
