#pragma once

#include <memory>
#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Types.h"
#include "Export.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor {

class MetadataSet;
class PartitionMetadata;
struct Limits;

namespace XMLUtils {
class UnicodeString;
}

/// The header metadata of one MXF partition as an XML document.
///
/// The root `s377m:MetadataSets` holds the element of the start set with everything that it refers to strongly, then
/// one `groups:FloatingDarkMetadata` element for dark sets and for sets that the Preface does not lead to, if there are
/// any. Elements are named by the dictionary's extension attributes.
///
/// Any number of threads may call at once. Documents are built one at a time (one lock for the process) and turned into
/// text in parallel. The partition is only read, and must not be changed meanwhile.
///
/// Functions without `Limits` use its defaults. A document that takes more memory than `limits.memory` while it is
/// built, and a text of more bytes than `limits.outputSize`, is refused with LimitExceeded: many sets that the Preface
/// does not lead to may share sets, each of which is written with each of them.
namespace XMLBuilder {

VANTOR_AUTO_PTR_BEGIN

/// Builds the document from the partition's Preface, the first one if there are several. `LosslessXML` writes documents
/// that hide nothing.
/// @param partition             may be null.
/// @param nestStrongReferences  true writes the target of a strong reference inside the property that refers to it,
///                              false writes it behind the referring set, and a pointer in the property.
/// @param excludeNonStructural  leaves out, wherever a reference leads to it, what is not structural metadata (ST
///                              377-1), such as descriptive metadata.
/// @return the document, owned by the caller; destroying the node destroys all of it. Empty when the partition is null
///         or has no Preface.
/// @throws NestingTooDeep when nested references lead more than 1,000 sets deep, naming the set; LimitExceeded; other
///         exceptions of the core library, the XML utility library and Xerces; std::bad_alloc. Nothing is left behind.
VANTOR_XMLBUILDER_EXPORT std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition,
                                                                       bool nestStrongReferences,
                                                                       bool excludeNonStructural);

/// The same from any set of the partition.
/// @return empty when the partition or the start set is null.
VANTOR_XMLBUILDER_EXPORT std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition,
                                                                       const MetadataSet* start,
                                                                       bool nestStrongReferences,
                                                                       bool excludeNonStructural);

/// The same within limits.
VANTOR_XMLBUILDER_EXPORT std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition,
                                                                       const MetadataSet* start,
                                                                       bool nestStrongReferences,
                                                                       bool excludeNonStructural, const Limits& limits);

VANTOR_AUTO_PTR_END

/// Writes the document as text.
/// @param encoding  what the XML declaration names, and whether the text is indented; `out` is UTF-16 in any case.
/// @param out       receives the text; left as it is when there is nothing to write.
VANTOR_XMLBUILDER_EXPORT void partition2XML(PartitionMetadata* partition, bool nestStrongReferences,
                                            bool excludeNonStructural, XMLUtils::EncodingType encoding, wstring& out);

/// The same from any set of the partition.
VANTOR_XMLBUILDER_EXPORT void partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                                            bool nestStrongReferences, bool excludeNonStructural,
                                            XMLUtils::EncodingType encoding, wstring& out);

/// The same within limits.
VANTOR_XMLBUILDER_EXPORT void partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                                            bool nestStrongReferences, bool excludeNonStructural,
                                            XMLUtils::EncodingType encoding, wstring& out, const Limits& limits);

/// The namespace of the document's root, "urn:SMPTE:S377M".
VANTOR_XMLBUILDER_EXPORT const XMLUtils::UnicodeString& getNamespaceURI();
/// The prefix of the document's root, "s377m".
VANTOR_XMLBUILDER_EXPORT const XMLUtils::UnicodeString& getPrefix();

}  // namespace XMLBuilder

}  // namespace Vantor
