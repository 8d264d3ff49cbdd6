#pragma once

#include "Core/Types/Visitors.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

namespace Vantor::XMLBuilder {

/// Writes the target of a reference where nesting is asked for: the target of a strong reference as a set inside the
/// property, a pointer to the target of a weak one.
class ToXMLReferenceVisitor : public Types::Visitors::NullVisitor {
 public:
  ToXMLReferenceVisitor(PartitionMetadata& partition, const MetadataSet& target, xercesc::DOMElement& property,
                        bool excludeNonStructural, ExportDocument& document, WrittenSets& written)
      : partition_(partition),
        target_(target),
        property_(property),
        excludeNonStructural_(excludeNonStructural),
        document_(document),
        written_(written) {}

  using NullVisitor::visit;
  void visit(const Types::StrongReference& reference) override;
  void visit(const Types::WeakReference& reference) override;

 private:
  PartitionMetadata& partition_;
  const MetadataSet& target_;
  xercesc::DOMElement& property_;
  bool excludeNonStructural_;
  ExportDocument& document_;
  WrittenSets& written_;
};

}  // namespace Vantor::XMLBuilder
