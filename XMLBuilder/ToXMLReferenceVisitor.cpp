#include "XMLBuilder/ToXMLReferenceVisitor.h"

#include "Core/Types/StrongReference.h"
#include "Core/Types/WeakReference.h"
#include "XMLBuilder/ReferencePointers.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

namespace Vantor::XMLBuilder {

void ToXMLReferenceVisitor::visit(const Types::StrongReference& reference) {
  const MetadataSet& target = *targets_.front();
  const bool isElsewhere = target.definition() == nullptr || pass_.written.count(&target) != 0;
  auto inside = pass_;
  ++inside.depth;
  ToXMLMetadataSetVisitor writer(property_, inside);
  target.accept(writer);
  if (isElsewhere && pass_.rules.isLossless) {
    appendPointer(pass_.document, property_, reference, &target, targets_.size());
  }
}

void ToXMLReferenceVisitor::visit(const Types::WeakReference& reference) {
  const MetadataSet& target = *targets_.front();
  if (target.definition() == nullptr && !pass_.rules.isLossless) return;
  appendPointer(pass_.document, property_, reference, &target);
}

}  // namespace Vantor::XMLBuilder
