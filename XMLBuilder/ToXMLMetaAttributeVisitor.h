#pragma once

#include "Core/MetaMetadata/MetaAttributes.h"

namespace Vantor::XMLBuilder {

/// Classifies a property of a set for the writers. Lives no longer than the attribute.
class ToXMLMetaAttributeVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  enum class Kind {
    kKnown = 0,      ///< its set defines it
    kMisplaced = 1,  ///< only other sets define it
    kUnknown = 2     ///< only its local tag is known
  };

  explicit ToXMLMetaAttributeVisitor(const MetaMetadata::AbstractMetaAttribute& attribute) { attribute.accept(*this); }
  explicit ToXMLMetaAttributeVisitor(const MetaMetadata::AbstractMetaAttribute&& temporary) = delete;

  void visit(const MetaMetadata::UnknownAttribute& attribute) override;
  void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
  void visit(const MetaMetadata::MetaAttribute& attribute) override;

  Kind kind() const { return kind_; }
  /// The property's definition; null when there is none.
  const MetaMetadata::MetaElement* metaElement() const { return metaElement_; }
  /// How its set lists a known property; null for every other.
  const MetaMetadata::MetaAttribute* listing() const { return listing_; }
  /// The place of a known property in its set, if the definition has one; empty for every other.
  const wstring& schemaIndex() const;
  /// The local tag of an unknown property, dotted; empty for every other.
  wstring localTag() const;
  /// Whether the property must appear in its set: its required status is "required" or "encoder required".
  bool isRequired() const;

 private:
  const MetaMetadata::MetaElement* metaElement_ = nullptr;
  const MetaMetadata::MetaAttribute* listing_ = nullptr;
  const MetaMetadata::UnknownAttribute* unknown_ = nullptr;
  Kind kind_ = Kind::kUnknown;
};

}  // namespace Vantor::XMLBuilder
