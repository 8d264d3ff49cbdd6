#pragma once

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "XMLBuilder/ExportPass.h"
#include "XMLBuilder/Names.h"

namespace Vantor::XMLBuilder {

/// Writes one property of a set into the set's element: among its children, or into "groups:ExtensionElements" when
/// the set does not define it. Serves one property: the members of a collection of references, which arrive one by one,
/// share the one element that is made for it.
class ToXMLElementVisitor : public Metadata::Visitors::ElementVisitor {
 public:
  /// @param targets  receives the sets that are to be written behind the set; only where references do not nest.
  ToXMLElementVisitor(xercesc::DOMElement& setElement, const ExportPass& pass, std::vector<const MetadataSet*>& targets)
      : setElement_(setElement), pass_(pass), targets_(targets) {}

  /// The collection itself writes nothing; its members do.
  void visit(const ReferenceBatchElement&) override {}
  void visit(const ReferenceArrayElement&) override {}
  void visit(const ReferenceElement& element) override;
  void visit(const BatchElement& element) override { writeCollection(element); }
  void visit(const ArrayElement& element) override { writeCollection(element); }
  void visit(const SimpleElement& element) override;

 private:
  Name nameOf(const MetaMetadata::MetaElement* definition);
  xercesc::DOMElement& createElement(const Name& name);
  void appendPropertyElement(xercesc::DOMElement& property, const Element& element);
  void writeValue(xercesc::DOMElement& target, const Types::SimpleDataType& value);
  void writeAttribute(const SimpleElement& element, const Name& name);
  void writeCollection(const CollectionElement& element);
  bool needsBytes(const Element& element) const;
  void writeBytes(const Element& element);

  bool writeReference(const Types::Reference& reference, xercesc::DOMElement& property);
  void writeBeside(const Types::Reference& reference, const PartitionMetadata::Sets& targets,
                   xercesc::DOMElement& property);

  xercesc::DOMElement& setElement_;
  const ExportPass& pass_;
  std::vector<const MetadataSet*>& targets_;
  xercesc::DOMElement* referenceProperty_ = nullptr;
};

}  // namespace Vantor::XMLBuilder
