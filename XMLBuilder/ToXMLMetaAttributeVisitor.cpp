#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"

namespace Vantor::XMLBuilder {

namespace {

constexpr uint32 kEncoderRequired = 1;

}  // namespace

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute& attribute) {
  localTag_ = attribute.localTag().toString(kDottedForm);
  kind_ = Kind::kUnknown;
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
  metaElement_ = attribute.metaElement();
  kind_ = Kind::kMisplaced;
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
  metaElement_ = attribute.metaElement();
  schemaIndex_ = attribute.extensionAttribute(MetaMetadata::kSchemaIndex);
  isRequired_ = attribute.requiredStatus() <= kEncoderRequired;
  kind_ = Kind::kKnown;
}

}  // namespace Vantor::XMLBuilder
