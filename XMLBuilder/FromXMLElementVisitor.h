#pragma once

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "XMLBuilder/ReadingRules.h"

namespace Vantor::XML2Partition {

/// Gives one property the value that stands in a node of the document.
class FromXMLElementVisitor : public Metadata::Visitors::NonConstElementVisitor {
 public:
  /// @param node        the property's element or attribute.
  /// @param definition  null for an unknown property, whose text is its octets in hexadecimal.
  FromXMLElementVisitor(const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition, ReadingRules& rules);

  void visit(ReferenceBatchElement& element) override { readReferences(element); }
  void visit(ReferenceArrayElement& element) override { readReferences(element); }
  void visit(ReferenceElement& element) override;
  void visit(BatchElement& element) override;
  void visit(ArrayElement& element) override;
  void visit(SimpleElement& element) override;

 private:
  template <class References>
  void readReferences(References& element);
  auto_ptr<Types::Reference> buildReference(Types::Identifiers::Identifier type, const xercesc::DOMElement& pointer);
  const MetadataSet* buildNestedSet(const xercesc::DOMElement& element);

  const xercesc::DOMNode& node_;
  Types::Identifiers::Identifier dataType_;
  Types::Identifiers::Identifier dataSubType_ = Types::Identifiers::kNone;
  ReadingRules& rules_;
};

}  // namespace Vantor::XML2Partition
