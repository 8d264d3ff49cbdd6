#pragma once

#include <string>
#include <string_view>

#include "Core/MetaMetadata/ExtensionAttributes.h"
#include "Core/Types/Identifiers.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::MetaMetadata {

class Enumeration;
class MetaMetadataSet;

/// The definition of a property (SMPTE ST 335), whichever sets use it. Belongs to its `Dictionary` and lives as long;
/// never changes, so any thread may read it.
class MetaElement {
 public:
  MetaElement(const Types::UniversalLabel& key, std::string symbol, Types::Identifiers::Identifier dataType,
              ExtensionAttributes extensionAttributes);
  virtual ~MetaElement();
  MetaElement(const MetaElement&) = delete;
  MetaElement& operator=(const MetaElement&) = delete;

  /// As registered, version octet included.
  const Types::UniversalLabel& key() const { return key_; }
  const std::string& symbol() const { return symbol_; }
  /// Whether the symbol or the tag name is this name.
  bool isNamed(std::string_view name) const;
  /// `kArray` or `kBatch` exactly for a `MetaCollectionElement`.
  Types::Identifiers::Identifier dataType() const { return dataType_; }
  /// The set that a reference, or each item of a collection of references, leads to, or that its target inherits from;
  /// null for other types, and where it is not known.
  const MetaMetadataSet* target() const { return target_; }
  /// The names of the value's numbers; null for other types.
  const Enumeration* enumeration() const { return enumeration_; }
  /// Whether documents have it in a namespace that its definition chose, not in that of a vocabulary.
  bool isInChosenNamespace() const;
  /// Empty when there is none of that name.
  const wstring& extensionAttribute(std::u16string_view name) const { return extensionAttributes_.get(name); }

 private:
  friend class DictionaryBuilder;

  Types::UniversalLabel key_;
  std::string symbol_;
  Types::Identifiers::Identifier dataType_;
  ExtensionAttributes extensionAttributes_;
  const MetaMetadataSet* target_ = nullptr;
  const Enumeration* enumeration_ = nullptr;
};

/// The definition of a property whose value is an array or a batch.
class MetaCollectionElement : public MetaElement {
 public:
  /// @param dataType  `kArray` or `kBatch`.
  MetaCollectionElement(const Types::UniversalLabel& key, std::string symbol, Types::Identifiers::Identifier dataType,
                        Types::Identifiers::Identifier dataSubType, ExtensionAttributes extensionAttributes);

  /// The type of the items.
  Types::Identifiers::Identifier dataSubType() const { return dataSubType_; }

 private:
  Types::Identifiers::Identifier dataSubType_;
};

/// The definition as that of a collection; null for any other. Checks the data type, which is cheaper than a cast.
inline const MetaCollectionElement* asCollection(const MetaElement& definition) {
  const bool isCollection =
      definition.dataType() == Types::Identifiers::kArray || definition.dataType() == Types::Identifiers::kBatch;
  return isCollection ? static_cast<const MetaCollectionElement*>(&definition) : nullptr;
}

}  // namespace Vantor::MetaMetadata
