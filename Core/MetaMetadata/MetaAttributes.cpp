#include "Core/MetaMetadata/MetaAttributes.h"

namespace Vantor::MetaMetadata {

AbstractMetaAttributeVisitor::~AbstractMetaAttributeVisitor() = default;

AbstractMetaAttribute::~AbstractMetaAttribute() = default;

MetaAttribute::MetaAttribute(const MetaElement* element, uint32 requiredStatus, uint16 staticLocalTag,
                             const ExtensionAttributes* extensionAttributes)
    : element_(element),
      extensionAttributes_(extensionAttributes),
      requiredStatus_(requiredStatus),
      staticLocalTag_(staticLocalTag) {}

}  // namespace Vantor::MetaMetadata
