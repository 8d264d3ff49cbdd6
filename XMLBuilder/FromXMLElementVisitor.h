#pragma once

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "XMLBuilder/ImportDocument.h"

namespace Vantor::XML2Partition {

/// Gives one property the value that stands in a node of the document.
class FromXMLElementVisitor : public Metadata::Visitors::NonConstElementVisitor {
 public:
  /// @param node        the property's element or attribute.
  /// @param definition  null for an unknown property, whose text is its bytes in hexadecimal.
  FromXMLElementVisitor(const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition,
                        ImportDocument& document);

  void visit(ReferenceBatchElement& element) override { readReferences(element); }
  void visit(ReferenceArrayElement& element) override { readReferences(element); }
  void visit(ReferenceElement& element) override;
  void visit(BatchElement& element) override;
  void visit(ArrayElement& element) override;
  void visit(SimpleElement& element) override;

 private:
  template <class References>
  void readReferences(References& element);
  template <class References>
  void readMember(References& element, const xercesc::DOMElement& item);
  template <class References>
  void makeEmpty(References& element);
  void refuseText() const;
  int itemSize() const;
  uint32 measuredItemSize() const;
  template <class Collection>
  void readCollection(CollectionElement& element);
  void readItems(Types::Collection& collection);

  /// Whether an element of the property only names a set that is written elsewhere. @param name  the exact reader's
  /// clue.
  bool standsForSet(const xercesc::DOMElement& element, const XMLCh* name) const;
  void reportLostReference() const;
  void reportFurtherReferences(const xercesc::DOMElement& first) const;
  auto_ptr<Types::Reference> buildReference(Types::Identifiers::Identifier type, const xercesc::DOMElement& carrier);
  const MetadataSet* buildNestedSet(const xercesc::DOMElement& element);

  const xercesc::DOMNode& node_;
  Types::Identifiers::Identifier dataType_;
  Types::Identifiers::Identifier dataSubType_ = Types::Identifiers::kNone;
  ImportDocument& document_;
};

/// Gives a property the value that a node holds. A lossless import reports what it cannot read, and goes on.
/// @param definition  null for an unknown property.
void readValue(Element& property, const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition,
               ImportDocument& document);

}  // namespace Vantor::XML2Partition
