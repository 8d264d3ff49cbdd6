#pragma once

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

namespace Vantor::XMLBuilder {

/// Writes one property of a set into the set's element. Serves one property: the members of a collection of references,
/// which arrive one by one, share the one element that is made for it.
class ToXMLElementVisitor : public Metadata::Visitors::ElementVisitor {
 public:
  ToXMLElementVisitor(PartitionMetadata& partition, xercesc::DOMElement& setElement, ReferenceOptions options,
                      ExportDocument& document, WrittenSets& written)
      : partition_(partition), setElement_(setElement), options_(options), document_(document), written_(written) {}

  /// The collection itself writes nothing; its members do.
  void visit(const ReferenceBatchElement&) override {}
  void visit(const ReferenceArrayElement&) override {}
  void visit(const ReferenceElement& element) override;
  void visit(const BatchElement& element) override;
  void visit(const ArrayElement& element) override;
  void visit(const SimpleElement& element) override;

 private:
  xercesc::DOMElement& createPropertyElement(const Element& element);
  void writeCollection(const CollectionElement& element);
  void writeItem(const Types::SimpleDataType& item, const wstring& name, const wstring& uri,
                 xercesc::DOMElement& property);
  void writeAttribute(const SimpleElement& element, const wstring& name, const wstring& uri);

  bool writeReference(const Types::Reference& reference, xercesc::DOMElement& property);
  void writeBeside(const Types::Reference& reference, const PartitionMetadata::Sets& targets, bool isStructural,
                   xercesc::DOMElement& property);

  void writeDark(const MetadataSet& set);

  PartitionMetadata& partition_;
  xercesc::DOMElement& setElement_;
  ReferenceOptions options_;
  ExportDocument& document_;
  WrittenSets& written_;
  xercesc::DOMElement* referenceProperty_ = nullptr;
};

}  // namespace Vantor::XMLBuilder
