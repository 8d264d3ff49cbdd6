#pragma once

#include "Core/MetaMetadata/MetaAttributes.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLBuilder {

/// Classifies a property of a set for the writers.
class ToXMLMetaAttributeVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  enum class Kind {
    kKnown = 0,      ///< its set defines it
    kMisplaced = 1,  ///< only other sets define it
    kUnknown = 2     ///< only its local tag is known
  };

  explicit ToXMLMetaAttributeVisitor(const MetaMetadata::AbstractMetaAttribute& attribute) { attribute.accept(*this); }

  void visit(const MetaMetadata::UnknownAttribute& attribute) override;
  void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
  void visit(const MetaMetadata::MetaAttribute& attribute) override;

  Kind kind() const { return kind_; }
  /// The property's definition; null when there is none.
  const MetaMetadata::MetaElement* metaElement() const { return metaElement_; }
  /// The place of a known property in its set, if the definition has one; empty for every other.
  const wstring& schemaIndex() const { return schemaIndex_; }
  /// The local tag of an unknown property, dotted; empty for every other.
  const wstring& localTag() const { return localTag_; }
  /// Whether the property must appear in its set: its required status is "required" or "encoder required".
  bool isRequired() const { return isRequired_; }

 private:
  const MetaMetadata::MetaElement* metaElement_ = nullptr;
  wstring schemaIndex_;
  wstring localTag_;
  Kind kind_ = Kind::kUnknown;
  bool isRequired_ = false;
};

}  // namespace Vantor::XMLBuilder
