#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Core/KLV/Key.h"
#include "Core/MetaMetadata/ExtensionAttributes.h"
#include "Core/MetaMetadata/HashIndex.h"
#include "Core/MetaMetadata/MetaAttributes.h"
#include "Core/Platform/Containers.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::MetaMetadata {

class Dictionary;

/// The definition of a metadata set (SMPTE ST 395).
/// Belongs to its `Dictionary` and lives as long; never changes, so any thread may read it.
class MetaMetadataSet {
 public:
  /// The label and the static tag of the property that identifies an instance of any set (ST 377-1 Instance UID).
  static constexpr KLV::Key kInstanceUID{{0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,  //
                                          0x01, 0x01, 0x15, 0x02, 0x00, 0x00, 0x00, 0x00}};
  static constexpr uint16 kInstanceUIDTag = 0x3c0a;

  MetaMetadataSet(const MetaMetadataSet&) = delete;
  MetaMetadataSet& operator=(const MetaMetadataSet&) = delete;

  /// The dictionary that it belongs to.
  const Dictionary& dictionary() const { return dictionary_; }

  /// The key that files carry: octet 6 is 0x53, a local set with 2-byte tags and 2-byte lengths (ST 336), octet 8 the
  /// version as registered.
  const KLV::Key& key() const { return key_; }
  const std::string& symbol() const { return symbol_; }
  /// Whether the symbol or the tag name is this name.
  bool isNamed(std::string_view name) const;
  /// The name that people use for the set beside its symbol (`CommonNames`); empty when there is none.
  std::string_view commonName() const;
  /// The same for a property of the set.
  std::string_view commonNameOf(const MetaElement& element) const;
  /// Empty when there is none of that name.
  const wstring& extensionAttribute(std::u16string_view name) const { return extensionAttributes_.get(name); }
  /// The set that this one inherits properties from; null for a root.
  const MetaMetadataSet* parent() const { return parent_; }
  /// Whether this is the other set or inherits from it. @param other  of the same dictionary.
  bool isOrInherits(const MetaMetadataSet& other) const;
  /// Whether files may hold sets of this very definition.
  bool isConcrete() const { return concrete_; }

  /// Every property that the set may have: inherited ones first, the root's foremost, then its own in order of
  /// definition. "SchemaIndex" counts them from 1 unless the definition gave another text. A property that an ancestor
  /// lists already stays as the ancestor has it.
  const Templates::vector<MetaAttribute>& attributes() const { return attributes_; }
  /// Null when the set does not list the property. Octet 8 of the label, its version, is ignored.
  const MetaAttribute* findAttribute(const Types::UniversalLabel& label) const;
  /// The property with that symbol, or else that tag name, or else that common name; null when the set lists none.
  const MetaAttribute* findAttribute(std::string_view name) const;
  /// Null when no property of this set has that static tag; the first one when several have. 0 is no tag.
  const MetaAttribute* findAttributeByStaticTag(uint16 tag) const;
  /// Null when the set has no InstanceUID.
  const MetaAttribute* instanceUIDAttribute() const;

 private:
  friend class DictionaryBuilder;
  MetaMetadataSet(const Dictionary& dictionary, const KLV::Key& key, std::string symbol, bool concrete,
                  ExtensionAttributes extensionAttributes);

  const MetaAttribute* findByLabel(const uint8* label) const;
  /// Copies the parent's attributes, which are complete. Called before any `append`.
  void inherit(const MetaMetadataSet& parent, std::size_t ownAttributes);
  /// Returns false, and changes nothing, when there is an attribute with that label already.
  bool append(const MetaAttribute& attribute);

  const Dictionary& dictionary_;
  KLV::Key key_;
  std::string symbol_;
  bool concrete_;
  ExtensionAttributes extensionAttributes_;
  const MetaMetadataSet* parent_ = nullptr;
  Templates::vector<MetaAttribute> attributes_;
  HashIndex attributesByLabel_;
  HashIndex attributesByStaticTag_;
};

}  // namespace Vantor::MetaMetadata
