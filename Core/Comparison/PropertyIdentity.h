#pragma once

#include <string>

#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Metadata/Element.h"
#include "Core/Metadata/PartitionDictionary.h"

namespace Vantor {

/// What makes properties of two partitions the same property, whatever local tags the partitions give them.
struct PropertyIdentity {
  enum class Kind {
    kValid,
    kMisplaced,
    kUnknownLabel,  ///< unknown under a label of the primer, where the tag alone does not tell it
    kUnknownTag,    ///< unknown under a static tag
    kUnlisted       ///< unknown under a dynamic tag that the primer does not list, which means nothing
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

/// What messages call a property: its symbol, or for an unknown one its tag and what label the primer gives that.
std::string propertyName(const Element& property, const PartitionDictionary& tags);

/// The label that the primer gives for the tag of an unknown property; null for none, and for other properties.
const Types::UniversalLabel* unknownLabelOf(const Element& property, const PartitionDictionary& tags);

/// The local tag that a property has in its partition: as read, or else the one that a writer would choose; 0 when only
/// writing would fix one.
uint16 localTagOf(const Element& property, const PartitionDictionary& tags);

}  // namespace Vantor
