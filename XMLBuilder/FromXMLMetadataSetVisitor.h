#pragma once

#include "Core/Metadata/Visitors.h"
#include "XMLBuilder/ReadingRules.h"

namespace Vantor::XML2Partition {

/// Fills one set from its element: each property of the definition from the child that carries its name, the two
/// identifiers from attributes, and misplaced and unknown properties from "groups:ExtensionElements". A property
/// without a child or attribute stays as it was.
class FromXMLMetadataSetVisitor : public Metadata::Visitors::NonConstMetadataSetVisitor {
 public:
  FromXMLMetadataSetVisitor(const xercesc::DOMElement& element, ReadingRules& rules)
      : element_(element), rules_(rules) {}

  /// @throws what the values throw; the set keeps what was read before.
  void visit(MetadataSet& set) override;

 private:
  void readProperty(Element& property, SetSource& source);
  void readIdentifier(Element& property, const MetaMetadata::MetaElement& definition, const wstring& tag,
                      SetSource& source);

  const xercesc::DOMElement& element_;
  ReadingRules& rules_;
};

/// The sets that an import made from children of the root and of the floating container, in document order.
using ImportedSets = std::vector<MetadataSet*>;

/// Makes a set for an element and fills it, or returns the set that was made from another element for the same set.
/// @param imported  receives a new set before it is filled; may be null.
MetadataSet* importSet(const xercesc::DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                       ReadingRules& rules, ImportedSets* imported = nullptr);

/// Makes the sets of the whole document.
ImportedSets importDocument(ReadingRules& rules);

}  // namespace Vantor::XML2Partition
