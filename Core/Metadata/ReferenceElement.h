#pragma once

#include "Core/Metadata/Element.h"
#include "Core/Types/References.h"

namespace Vantor {

/// A property that refers to one set by its InstanceUID, strongly (the target belongs to the referring set) or weakly.
class ReferenceElement : public Element {
 public:
  explicit ReferenceElement(AttributeHandle attribute) : Element(std::move(attribute)) {}
  /// One member of a collection of references, seen as a property of its own. Both arguments outlive the view.
  ReferenceElement(const MetaMetadata::AbstractMetaAttribute& attribute, const Types::Reference& member)
      : Element(AttributeHandle::viewOf(attribute)), reference_(&member) {
    markPresent();
  }

  /// The reference; null when the property has none.
  const Types::Reference* value() const { return reference_; }
  /// Whether writers skip the property: only when it has no reference. A reference to nothing, all zero included, is
  /// written.
  bool isSkipped() const { return reference_ == nullptr; }

  /// Refers to a set by the InstanceUID that it has now, in the kind of reference that the definition asks for.
  /// @throws InvalidFormat when there is no set (null), or it has no InstanceUID.
  void set(const MetadataSet* target);
  /// Refers to an InstanceUID, whether or not a set carries it.
  void setUnverifiedReference(auto_ptr<Types::Reference> reference);

  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override;
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override;
  const Types::SimpleDataType* wireValue() const override { return reference_; }
  void appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const override;

 private:
  auto_ptr<Types::Reference> owned_;
  const Types::Reference* reference_ = nullptr;
};

/// A reference of the given kind to the InstanceUID of a set.
/// @param kind  kStrongReference or kWeakReference.
/// @throws InvalidFormat when there is no set (null), it has no InstanceUID, or the kind is neither.
auto_ptr<Types::Reference> makeReference(Types::Identifiers::Identifier kind, const MetadataSet* target);

}  // namespace Vantor
