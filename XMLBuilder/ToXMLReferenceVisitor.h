#pragma once

#include "Core/Types/Visitors.h"
#include "XMLBuilder/ExportPass.h"

namespace Vantor::XMLBuilder {

/// Writes the target of a reference where references nest: the target of a strong reference as a set inside the
/// property, a pointer to the target of a weak one. Under lossless rules, a strong reference whose target is not inside
/// the property gets a pointer, too.
class ToXMLReferenceVisitor : public Types::Visitors::NullVisitor {
 public:
  /// @param targets  the sets that carry the InstanceUID, at least one; the first is meant.
  ToXMLReferenceVisitor(const PartitionMetadata::Sets& targets, xercesc::DOMElement& property, const ExportPass& pass)
      : targets_(targets), property_(property), pass_(pass) {}

  using NullVisitor::visit;
  void visit(const Types::StrongReference& reference) override;
  void visit(const Types::WeakReference& reference) override;

 private:
  const PartitionMetadata::Sets& targets_;
  xercesc::DOMElement& property_;
  const ExportPass& pass_;
};

}  // namespace Vantor::XMLBuilder
