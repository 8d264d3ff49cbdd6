#pragma once

#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/Visitors.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/WrittenSets.h"

namespace Vantor::XMLBuilder {

/// How references are written; see `partition2XML`.
struct ReferenceOptions {
  bool nestStrongReferences;
  bool excludeNonStructural;
};

/// Writes one set as a child element of a parent, with its properties and what they refer to, unless the set was
/// written before in this pass. A dark parsed group goes into the document's floating container instead.
class ToXMLMetadataSetVisitor : public Metadata::Visitors::MetadataSetVisitor {
 public:
  ToXMLMetadataSetVisitor(xercesc::DOMNode& parent, PartitionMetadata& partition, ReferenceOptions options,
                          ExportDocument& document, WrittenSets& written)
      : parent_(parent), partition_(partition), options_(options), document_(document), written_(written) {}

  /// @throws NestingTooDeep naming the set.
  void visit(const MetadataSet& set) override;

 private:
  void writeKnownSet(const MetadataSet& set);
  void writeDarkGroup(const DarkParsedGroup& group);
  xercesc::DOMElement& appendSetElement(const MetaMetadata::MetaMetadataSet& definition);
  void writeProperty(const Element& property, xercesc::DOMElement& element);

  xercesc::DOMNode& parent_;
  PartitionMetadata& partition_;
  ReferenceOptions options_;
  ExportDocument& document_;
  WrittenSets& written_;
};

}  // namespace Vantor::XMLBuilder
