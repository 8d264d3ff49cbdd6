#include "XMLBuilder/FromXMLMetaAttributeVisitor.h"

#include "Core/Platform/Numbers.h"

namespace Vantor::XML2Partition {

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute&) {
  metaElement_ = nullptr;
  schemaIndex_ = 0;
}

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
  metaElement_ = attribute.metaElement();
  schemaIndex_ = 0;
}

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
  metaElement_ = attribute.metaElement();
  schemaIndex_ = Platform::readDecimal<uint32>(attribute.extensionAttribute(MetaMetadata::kSchemaIndex));
}

}  // namespace Vantor::XML2Partition
