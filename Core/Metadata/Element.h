#pragma once

#include <vector>

#include "Core/MetaMetadata/MetaAttributes.h"
#include "Core/Metadata/Visitors.h"
#include "Core/Platform/Types.h"
#include "Core/Types/SimpleDataType.h"
#include "Core/Types/UUID.h"

namespace Vantor {

/// The attribute of a property: the definition's, which the dictionary owns, or that of a misplaced or unknown
/// property, which the property owns.
class AttributeHandle {
 public:
  /// @param attribute  outlives the property; the partition keeps its dictionary alive.
  explicit AttributeHandle(const MetaMetadata::MetaAttribute& attribute) : attribute_(&attribute) {}
  explicit AttributeHandle(auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute)
      : owned_(std::move(attribute)), attribute_(owned_.get()) {}
  /// Borrows the attribute of another property.
  static AttributeHandle viewOf(const MetaMetadata::AbstractMetaAttribute& attribute) {
    return AttributeHandle(&attribute);
  }

  const MetaMetadata::AbstractMetaAttribute& operator*() const { return *attribute_; }
  const MetaMetadata::AbstractMetaAttribute* operator->() const { return attribute_; }

 private:
  explicit AttributeHandle(const MetaMetadata::AbstractMetaAttribute* attribute) : attribute_(attribute) {}

  auto_ptr<MetaMetadata::AbstractMetaAttribute> owned_;
  const MetaMetadata::AbstractMetaAttribute* attribute_;
};

/// The kinds of references to follow: strong ones, and weak ones on request.
struct ReferenceKinds {
  bool weak = false;
  bool include(Types::Identifiers::Identifier kind) const {
    return kind == Types::Identifiers::kStrongReference || (weak && kind == Types::Identifiers::kWeakReference);
  }
};

/// One property of a metadata set.
///
/// A property is *unset* after `PartitionMetadata::createMetadataSet`: a place for a value that readers and writers
/// skip. It is *present* once it was given a value, was read from a file or was added explicitly; a present property
/// may still have no value (zero octets on the wire).
class Element : public Platform::HeapObject {
 public:
  explicit Element(AttributeHandle attribute) : attribute_(std::move(attribute)) {}
  virtual ~Element() = default;
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  const MetaMetadata::AbstractMetaAttribute& metaAttribute() const { return *attribute_; }

  /// Dispatches to the visitor's operation for this kind. A collection of references is visited as itself, then member
  /// by member as `ReferenceElement`; an empty one as a plain collection. The dispatch does not depend on the two
  /// flags.
  virtual void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
                      bool excludeNonStructural) const = 0;
  virtual void accept(Metadata::Visitors::NonConstElementVisitor& visitor) = 0;

  /// The value whose bytes stand on the wire; null when there is none.
  virtual const Types::SimpleDataType* wireValue() const = 0;

  /// Appends the InstanceUIDs that this property refers to, in order; nothing for one that is no reference.
  virtual void appendTargets(ReferenceKinds /*kinds*/, std::vector<Types::UUID>& /*targets*/) const {}

  bool isPresent() const { return present_; }
  /// Makes the property part of the set even while it has no value.
  void markPresent() { present_ = true; }

  /// The local tag under which the property was read; 0 when none was fixed yet.
  uint16 localTag() const { return localTag_; }
  void setLocalTag(uint16 tag) { localTag_ = tag; }

  /// Octets of the BER length under which the property was read (sets coded 0x13); 0 when unknown.
  uint8 lengthOctets() const { return lengthOctets_; }
  void setLengthOctets(uint8 octets) { lengthOctets_ = octets; }

 private:
  AttributeHandle attribute_;
  uint16 localTag_ = 0;
  uint8 lengthOctets_ = 0;
  bool present_ = false;
};

}  // namespace Vantor
