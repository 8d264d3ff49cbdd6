#pragma once

#include "Core/MetaMetadata/MetaAttributes.h"
#include "Core/Platform/Numbers.h"

namespace Vantor::XML2Partition {

/// Finds the definition of a property of a set, and its place in the set. Lives no longer than the attribute.
class FromXMLMetaAttributeVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  explicit FromXMLMetaAttributeVisitor(const MetaMetadata::AbstractMetaAttribute& attribute) {
    attribute.accept(*this);
  }

  void visit(const MetaMetadata::UnknownAttribute&) override {}
  void visit(const MetaMetadata::MisplacedAttribute& attribute) override { metaElement_ = attribute.metaElement(); }
  void visit(const MetaMetadata::MetaAttribute& attribute) override {
    metaElement_ = attribute.metaElement();
    listing_ = &attribute;
  }

  /// Null for an unknown property.
  const MetaMetadata::MetaElement* metaElement() const { return metaElement_; }
  /// 0 for a property without a place in the set.
  uint32 schemaIndex() const {
    if (listing_ == nullptr) return 0;
    return Platform::readDecimal<uint32>(listing_->extensionAttribute(MetaMetadata::kSchemaIndex));
  }

 private:
  const MetaMetadata::MetaElement* metaElement_ = nullptr;
  const MetaMetadata::MetaAttribute* listing_ = nullptr;
};

}  // namespace Vantor::XML2Partition
