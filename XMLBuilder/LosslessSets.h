#pragma once

#include <optional>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Metadata/Element.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/Reference.h"
#include "XMLBuilder/ImportDocument.h"
#include "XMLBuilder/ImportReport.h"
#include "XMLBuilder/SetChildren.h"

/// How a lossless import treats sets and references to them.
namespace Vantor::XML2Partition::LosslessSets {

/// Two different sets with one InstanceUID: nothing that could be left out.
class Clash : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// Names the set in diagnostics, for as long as the result lives; nothing in an exact import.
class MaybeReading {
 public:
  MaybeReading(ImportDocument& document, MetadataSet& set) {
    if (document.isLossless()) reading_.emplace(document.report(), set);
  }

 private:
  std::optional<ImportReport::Reading> reading_;
};

/// The definition of an element that is a set in its namespace; null, and reported, for any other: an unknown set, or a
/// reference that does not say to which.
const MetaMetadata::MetaMetadataSet* findSet(const xercesc::DOMElement& element, ImportDocument& document);

/// The InstanceUID of a set's element; none when it has none, or something that is none.
std::optional<Types::UUID> instanceUIDOf(const xercesc::DOMElement& element);

/// Notes a set that could have an InstanceUID and whose element has none.
void enterUnnamed(MetadataSet& set, const xercesc::DOMElement& element, ImportDocument& document);

/// Gives the set the identifier that the document has.
void readInstanceUID(Element& property, const xercesc::DOMNode& attribute, MetadataSet& set,
                     const xercesc::DOMElement& element, ImportDocument& document);

/// A reference to the set that an element names. Null for a type that is no reference, and, reported, when the element
/// names none.
auto_ptr<Types::Reference> buildReference(Types::Identifiers::Identifier type, const xercesc::DOMElement& carrier,
                                          ImportDocument& document);

/// Whether an extension element that no property of the dictionary is called after is an unknown property; any other is
/// reported.
bool isUnknownProperty(const xercesc::DOMElement& element, ImportDocument& document);

/// The property of a set that an unknown one stands for, too, by its local tag; null when the document gives the set no
/// such property. @param element  of the set, which has been read.
const MetaMetadata::MetaElement* knownProperty(uint16 tag, const MetadataSet& set, const xercesc::DOMElement& element,
                                               ImportDocument& document);

/// Tells of text in an element that is to hold elements alone: the root, a container or a set.
void reportText(const xercesc::DOMElement& element, ImportDocument& document);
/// Tells of a root that is another element than that of every document.
void reportRoot(ImportDocument& document);
/// Tells of the children of a set's element that nothing was read from. Of two that stand for one property, nobody
/// knows which is meant: it counts as unread.
void reportUnread(const SetChildren& children, const MetaMetadata::MetaMetadataSet& definition,
                  ImportDocument& document);
/// Tells of its attributes but for its identifiers and what belongs to XML itself.
void reportUnreadAttributes(const xercesc::DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                            ImportDocument& document);

}  // namespace Vantor::XML2Partition::LosslessSets
