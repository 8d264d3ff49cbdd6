#include "XMLBuilder/ReferencePointers.h"

#include <xercesc/dom/DOMAttr.hpp>

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

void appendPointer(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference,
                   const MetadataSet* target, std::size_t targets) {
  wstring name(Vocabulary::kDangling);
  wstring uri = document.namespaces().uriOf(Vocabulary::kRootPrefix);
  if (const auto* definition = target == nullptr ? nullptr : target->definition()) {
    name = targets == 1 ? qualify(definition->extensionAttribute(MetaMetadata::kDefaultPrefix),
                                  definition->extensionAttribute(MetaMetadata::kTagName))
                        : wstring(Vocabulary::kMultipleTargets);
    name += Vocabulary::kReferenceSuffix;
    uri = definition->extensionAttribute(MetaMetadata::kNamespaceURI);
  }
  document.namespaces().insertIfUnbound(Vocabulary::kTypesURI, Vocabulary::kTypesPrefix);
  auto* pointer = document.document().createElementNS(uri.c_str(), name.c_str());
  property.appendChild(pointer);
  auto* attribute =
      document.document().createAttributeNS(Vocabulary::kTypesURI.data(), Vocabulary::kTargetInstance.data());
  pointer->setAttributeNodeNS(attribute);
  ToXMLBaseTypeVisitor writer(*attribute);
  reference.accept(writer);
}

}  // namespace Vantor::XMLBuilder
