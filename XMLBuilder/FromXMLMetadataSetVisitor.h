#pragma once

#include <optional>
#include <unordered_set>

#include "Core/Metadata/Visitors.h"
#include "XMLBuilder/ImportDocument.h"
#include "XMLBuilder/LosslessCopies.h"
#include "XMLBuilder/LosslessSets.h"
#include "XMLBuilder/SetChildren.h"

namespace Vantor::XML2Partition {

/// Fills one set from its element: each property of the definition from the child that carries its name, the two
/// identifiers from attributes, and misplaced and unknown properties from "groups:ExtensionElements". A property
/// without a child or attribute stays as the set was made with.
class FromXMLMetadataSetVisitor : public Metadata::Visitors::NonConstMetadataSetVisitor {
 public:
  FromXMLMetadataSetVisitor(const xercesc::DOMElement& element, ImportDocument& document)
      : element_(element), document_(document), scope_(element) {
    if (document.isLossless()) children_.emplace(element);
  }

  /// @throws what the values throw; the set keeps what was read before.
  void visit(MetadataSet& set) override;

 private:
  void readProperty(Element& property, MetadataSet& set);
  void readChild(Element& property, const MetaMetadata::MetaElement& definition, const wstring& tag);
  void readIdentifier(Element& property, const MetaMetadata::MetaElement& definition, const wstring& tag,
                      MetadataSet& set);
  void readInstanceUID(Element& property, const wstring& text, const MetadataSet& set);
  const xercesc::DOMElement* findChild(const MetaMetadata::MetaElement& definition, const wstring& tag);
  const xercesc::DOMElement* findExtensionElements();
  void readExtensionElements(MetadataSet& set);
  void readExtension(const xercesc::DOMElement& child, MetadataSet& set);
  void readUnknown(const xercesc::DOMElement& child, MetadataSet& set);
  void readUnknownLosslessly(const xercesc::DOMElement& child, MetadataSet& set);
  void reportSecond(const Element& property, uint16 tag, const xercesc::DOMElement& child, const MetadataSet& set);
  /// The property; null for one that could not be read and is not in the set.
  const Element* readInvalid(auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute, const xercesc::DOMElement& child,
                             MetadataSet& set);
  wstring extensionName(const xercesc::DOMElement& child) const;

  const xercesc::DOMElement& element_;
  ImportDocument& document_;
  XMLUtils::ChildLookup scope_;
  std::optional<SetChildren> children_;  // of a lossless import
  std::size_t unmarked_ = 0;             // unknown properties with neither tag nor label
  std::unordered_set<uint16> unknownTags_;
};

/// Makes a set for an element in the partition and fills it. A lossless import returns the set that it has already,
/// when the document has one a second time. @param onCreated  is given the set before it is filled, but no set that was
/// there.
template <class OnCreated>
MetadataSet* importSet(const xercesc::DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                       ImportDocument& document, OnCreated&& onCreated) {
  if (document.isLossless()) {
    if (MetadataSet* known = LosslessCopies::read(element, definition, document)) return known;
  }
  MetadataSet* set = document.partition().createMetadataSet(definition.key());
  onCreated(set);
  FromXMLMetadataSetVisitor visitor(element, document);
  set->accept(visitor);
  return set;
}

}  // namespace Vantor::XML2Partition
