#include "XMLBuilder/ToXMLReferenceVisitor.h"

#include "Core/Types/StrongReference.h"
#include "Core/Types/WeakReference.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ReferencePointers.h"

namespace Vantor::XMLBuilder {

void ToXMLReferenceVisitor::visit(const Types::StrongReference&) {
  ToXMLMetadataSetVisitor writer(property_, partition_, {true, excludeNonStructural_}, document_, written_);
  target_.accept(writer);
}

void ToXMLReferenceVisitor::visit(const Types::WeakReference& reference) {
  if (target_.definition() == nullptr) return;
  const QualifiedName name{referenceName(target_, 1),
                           target_.definition()->extensionAttribute(MetaMetadata::kXMLNamespaceURI)};
  appendPointer(document_, property_, name, reference);
}

}  // namespace Vantor::XMLBuilder
