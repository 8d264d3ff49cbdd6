#pragma once

#include <string>
#include <string_view>

#include "Core/MetaMetadata/HashIndex.h"
#include "Core/Platform/Containers.h"

namespace Vantor::MetaMetadata {

class MetaAttribute;
class MetaElement;
class MetaMetadataSet;

/// The names that people use for sets and properties beside symbols and tag names, such as those of ST 377-1. A name of
/// a property counts in one set and in all that inherit from it. Belongs to a `Dictionary`; each look-up is one by
/// hash.
class CommonNames {
 public:
  struct Entry {
    const MetaMetadataSet* set;
    const MetaElement* element;  ///< null: the name is that of the set itself
    std::string name;
  };

  void add(Entry entry);
  const Templates::vector<Entry>& entries() const { return entries_; }

  /// Null when no set has this common name.
  const MetaMetadataSet* findSet(std::string_view name) const;
  /// The property of a set; null when none of its properties has this common name.
  const MetaAttribute* findAttribute(const MetaMetadataSet& set, std::string_view name) const;

  /// The common name of a set; empty when it has none.
  std::string_view nameOf(const MetaMetadataSet& set) const;
  /// The common name of a property in a set; empty when it has none.
  std::string_view nameOf(const MetaMetadataSet& set, const MetaElement& element) const;

 private:
  Templates::vector<Entry> entries_;
  HashIndex byName_;
  HashIndex byDefinition_;  // by the element, or by the set of a name of its own
};

/// The common name where there is one that is neither the symbol nor the tag name; else empty.
std::string_view otherNameOf(const MetaMetadataSet& set);
std::string_view otherNameOf(const MetaMetadataSet& set, const MetaElement& element);

/// The symbol, followed by the common name where there is one that is neither the symbol nor the tag name:
/// "ApplicationSupplierName (CompanyName)".
std::string namesOf(const MetaMetadataSet& set);
std::string namesOf(const MetaMetadataSet& set, const MetaElement& element);
/// The same for a name that was asked for: it stays as it is where it is a symbol or a tag name.
std::string namesOf(const MetaMetadataSet& set, const MetaElement& element, std::string_view asked);

}  // namespace Vantor::MetaMetadata
