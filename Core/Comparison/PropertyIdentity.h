#pragma once

#include <string>

#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Metadata/Element.h"
#include "Core/Metadata/PartitionDictionary.h"

namespace Vantor {

/// Identifies a property across partitions, whatever local tags they give it.
struct PropertyIdentity {
  enum class Kind {
    kValid,
    kMisplaced,
    kUnknownLabel,  ///< unknown, with a label of the primer that the tag alone does not imply
    kUnknownTag,    ///< unknown, with a static tag
    kUnlisted       ///< unknown, with a dynamic tag that the primer does not list
  };

  /// @param tags  of the property's partition.
  PropertyIdentity(const Element& property, const PartitionDictionary& tags);

  friend bool operator==(const PropertyIdentity& left, const PropertyIdentity& right) {
    return left.kind == right.kind && left.label == right.label && left.tag == right.tag;
  }

  Kind kind = Kind::kValid;
  MetaMetadata::LabelIdentity label{0, 0};  ///< all zero for the last two kinds
  uint16 tag = 0;                           ///< 0 but for `kUnknownTag`
};

struct PropertyIdentityHash {
  std::size_t operator()(const PropertyIdentity& identity) const noexcept;
};

/// The name for messages: the symbol, "SYMBOL as octets" for one that did not decode, or the tag of an unknown property
/// and its label in the primer.
std::string propertyName(const Element& property, const PartitionDictionary& tags);

/// The label of an unknown property in the primer; null for none, and for other properties.
const Types::UniversalLabel* unknownLabelOf(const Element& property, const PartitionDictionary& tags);

/// The local tag of a property in its partition: as read, or else the one that a writer would choose; 0 when a writer
/// would generate one.
uint16 localTagOf(const Element& property, const PartitionDictionary& tags);

}  // namespace Vantor
