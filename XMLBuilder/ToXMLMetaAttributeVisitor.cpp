#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"

namespace Vantor::XMLBuilder {

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute& attribute) {
  unknown_ = &attribute;
  kind_ = Kind::kUnknown;
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
  metaElement_ = attribute.metaElement();
  kind_ = Kind::kMisplaced;
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
  metaElement_ = attribute.metaElement();
  listing_ = &attribute;
  kind_ = Kind::kKnown;
}

const wstring& ToXMLMetaAttributeVisitor::schemaIndex() const {
  static const wstring kNone;
  return listing_ == nullptr ? kNone : listing_->extensionAttribute(MetaMetadata::kSchemaIndex);
}

wstring ToXMLMetaAttributeVisitor::localTag() const {
  return unknown_ == nullptr ? wstring() : unknown_->localTag().toString(kDottedForm);
}

bool ToXMLMetaAttributeVisitor::isRequired() const {
  constexpr uint32 kEncoderRequired = 1;
  return listing_ != nullptr && listing_->requiredStatus() <= kEncoderRequired;
}

}  // namespace Vantor::XMLBuilder
