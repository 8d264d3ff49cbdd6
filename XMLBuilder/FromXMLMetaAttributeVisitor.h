#pragma once

#include "Core/MetaMetadata/MetaAttributes.h"
#include "Core/MetaMetadata/MetaElement.h"

namespace Vantor::XML2Partition {

/// Finds the definition of a property of a set, and its place in the set.
class FromXMLMetaAttributeVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  explicit FromXMLMetaAttributeVisitor(const MetaMetadata::AbstractMetaAttribute& attribute) {
    attribute.accept(*this);
  }

  void visit(const MetaMetadata::UnknownAttribute& attribute) override;
  void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
  void visit(const MetaMetadata::MetaAttribute& attribute) override;

  /// Null for an unknown property.
  const MetaMetadata::MetaElement* metaElement() const { return metaElement_; }
  /// 0 for a property without a place in the set.
  uint32 schemaIndex() const { return schemaIndex_; }

 private:
  const MetaMetadata::MetaElement* metaElement_ = nullptr;
  uint32 schemaIndex_ = 0;
};

}  // namespace Vantor::XML2Partition
