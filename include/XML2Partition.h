#pragma once

#include "Core/Platform/Containers.h"
#include "Export.h"

namespace Vantor {

class MetadataSet;
class PartitionMetadata;
struct Limits;

/// Reads metadata sets from an XML document of header metadata.
///
/// These functions read the exact form, which loses a part of what an export writes; `LosslessXML` reads without loss.
///
/// Every element child of the root whose local name is the "XMLTagName" of a set in the partition's dictionary becomes
/// a set, with the sets nested in it; the children of `groups:FloatingDarkMetadata` become sets or dark metadata sets.
/// Other elements are skipped. Sets get new InstanceUIDs; within one call, all sets and references of the document with
/// the same InstanceUID get the same new one.
///
/// The sets belong to the partition. No lock is taken: calls may run at once on different partitions.
///
/// Functions without `Limits` use its defaults: documents that are larger, nest deeper, have more different names or
/// more sets, or take more memory are refused with LimitExceeded, a ParseError that names the limit.
///
/// @return the sets made from children of the root and of the floating container, in document order. Sets nested in
///         them and dark sets are not listed.
/// @throws ParseError for anything that the XML parser or an XPath look-up reports, such as text that is not XML, or a
///         document without the prefixes of its values; its message starts with the kind of the failure.
/// @throws InvalidFormat and InvalidLength for values that are not what their property demands. Sets made before the
///         failure stay in the partition.
namespace XML2Partition {

/// @param buffer     the document in UTF-8, UTF-16 (recognised without a byte order mark, too), or what its XML
///                   declaration names: US-ASCII, ISO 8859 or a Windows code page from 1250 to 1258. White space
///                   between elements is dropped.
/// @param size       bytes.
/// @param partition  receives the sets; its dictionary names them. Null gives an empty list.
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromBuffer(
    const uint8* buffer, uint32 size, PartitionMetadata* partition);
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromBuffer(
    const uint8* buffer, uint32 size, PartitionMetadata* partition, const Limits& limits);

/// @param text  the document as UTF-16, whatever encoding its XML declaration names.
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromString(
    const wstring& text, PartitionMetadata* partition);
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromString(
    const wstring& text, PartitionMetadata* partition, const Limits& limits);

/// Keeps white space between elements, which makes a value that is nothing but white space a value.
/// @param path  NUL-terminated UTF-16.
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromFile(
    const uint16* path, PartitionMetadata* partition);
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromFile(
    const uint16* path, PartitionMetadata* partition, const Limits& limits);

}  // namespace XML2Partition

}  // namespace Vantor
