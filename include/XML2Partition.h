#pragma once

#include <string>
#include <vector>

#include "Core/Platform/Containers.h"
#include "Export.h"

namespace Vantor {

class Element;
class MetadataSet;
class PartitionMetadata;

/// An XML document of header metadata back to metadata sets.
///
/// Every element child of the root whose local name is the "XMLTagName" of a set in the partition's dictionary becomes
/// a set, with the sets nested in it; the children of `groups:FloatingDarkMetadata` become sets or dark metadata sets.
/// Other elements are skipped. Sets get InstanceUIDs of their own; within one call, every reference and every set of
/// the document that names one InstanceUID is given the same new one.
///
/// The sets belong to the partition. No lock is taken: calls may run at once on different partitions.
///
/// @return the sets made from children of the root and of the floating container, in document order. Sets nested in
///         them and dark sets are not listed.
/// @throws ParseError for anything that the XML parser or an XPath look-up reports, such as a text that is no XML or a
///         document without the prefixes of its values; its message starts with the kind of the failure.
/// @throws InvalidFormat and InvalidLength for values that are not what their property demands. What was made before
///         the failure stays in the partition.
namespace XML2Partition {

/// @param buffer     the document in UTF-8, UTF-16 (recognised without a byte order mark, too), or what its XML
///                   declaration names: US-ASCII, ISO 8859 or a Windows code page from 1250 to 1258. White space
///                   between elements is dropped.
/// @param size       bytes.
/// @param partition  receives the sets; its dictionary names them. Null gives an empty list.
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromBuffer(
    const uint8* buffer, uint32 size, PartitionMetadata* partition);

/// @param text  the document as UTF-16, whatever encoding its XML declaration names.
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromString(
    const wstring& text, PartitionMetadata* partition);

/// Keeps white space between elements, which makes a value that is nothing but white space a value.
/// @param path  NUL-terminated UTF-16.
VANTOR_XMLBUILDER_EXPORT Templates::list<MetadataSet*, Platform::malloc_alloc> getPartitionMetadataFromFile(
    const uint16* path, PartitionMetadata* partition);

/// Something that a document says twice, or that cannot be what it stands for. It was not read, with three exceptions:
/// a reference to a set that the document does not have is kept, a set with an InstanceUID that is none gets a new one,
/// and a root element of another name is read as if it had the right one.
struct ImportDiagnostic {
  enum class Kind {
    kUnknownElement,     ///< an element or attribute that is no set, or no property of its set, in its namespace; text
                         ///< beside sets or properties; a root that is no `MetadataSets`
    kSecondElement,      ///< one more element for a property
    kValue,              ///< a text that is no value of its type: not a number, out of range, no identifier
    kReference,          ///< a reference to a set that the document does not have, or to none at all
    kDifferentCopy,      ///< a set that the document has twice, in two versions
    kUnusableIdentifier  ///< an InstanceUID that is none; the set has a new one
  };

  Kind kind;
  uint64 line;            ///< from 1; 0 when it is not known
  std::string set;        ///< the symbol of the set, with its InstanceUID when it has one; empty outside of sets
  std::string property;   ///< the symbol of the property; empty for the set itself
  std::string message;    ///< what is wrong
  std::string uri = {};   ///< the namespace of an element or attribute that is unknown in it; empty for none
  bool isNewSet = false;  ///< whether an unknown element stands for a set of which the dictionary has not even the name
};

/// A property that the document has, but not in a form that could be read.
struct UnreadProperty {
  MetadataSet* set;
  std::string property;  ///< the symbol
};

/// A set whose element has no InstanceUID. That is no mistake in itself: files have such sets, and where a document
/// nests sets, a set that is new needs none. Nothing else in a document can refer to it.
struct UnnamedSet {
  MetadataSet* set;  ///< with an InstanceUID that was made up
  uint64 line;       ///< from 1; 0 when it is not known
};

/// How a document has the sets that strong references lead to. One form is nearly alone in most documents: it tells
/// whether a document nests sets.
struct ReferenceForms {
  std::size_t nested = 0;    ///< within the property that refers to the set
  std::size_t pointers = 0;  ///< elsewhere in the document; references that say that there is no set do not count
};

/// Something that is right where the file has it so, which is not in the document, and a mistake where it was edited:
/// - a reference that says itself that there is no set, and of which the document has none;
/// - a dark set that has the key of a local set and other octets;
/// - an unknown property that the set has already, under a name or as another unknown one.
struct Unconfirmed {
  ImportDiagnostic diagnostic;  ///< to be told when it is a mistake
  MetadataSet* set = nullptr;   ///< with the unknown property; null for the others
  const Element* property = nullptr;
};

/// What a lossless import made and what it could not.
struct LosslessImport {
  /// As the functions above return them.
  Templates::list<MetadataSet*, Platform::malloc_alloc> sets;
  /// In the order of the document, but for references to sets that it does not have, which come last.
  std::vector<ImportDiagnostic> diagnostics;
  std::vector<UnreadProperty> unread;
  std::vector<UnnamedSet> unnamed;
  ReferenceForms references;
  std::vector<Unconfirmed> unconfirmed;
  /// The InstanceUIDs, in dotted form, of elements that stand for sets that the dictionary does not have.
  std::vector<wstring> unknownSets;
};

/// The way back that gives what was written, where the functions above keep to forms that lose a part of it:
///
/// - Sets keep the InstanceUIDs of the document, and dark groups theirs, so that references stay what they are.
/// - A set that the document has twice is one set.
/// - Two kinds of sets with one InstanceUID are an error, and so are a dark group and anything else with one, and a set
///   of the document and one that the partition had before.
/// - Fractions of a second are scaled back.
/// - JPEG 2000 values are read with and without an element around them.
/// - Children of values are found in either vocabulary.
/// - An empty text is a text, and so is white space, in buffers, too.
/// - Elements and attributes are found by namespace and name, whatever prefix the document gives the namespace.
/// - What is said twice or cannot be is told in the diagnostics: see `ImportDiagnostic`.
///
/// What the local tags in dark sets mean is in no document. None of these tags is given to anything else.
///
/// @param partition  receives the sets; its dictionary has to have the vocabulary of the document. Null gives nothing.
/// @throws ParseError for a document that is not well-formed; InvalidFormat, naming both, for two sets of one
///         InstanceUID. What was made before the failure stays in the partition.
VANTOR_XMLBUILDER_EXPORT LosslessImport importLosslesslyFromBuffer(const uint8* buffer, uint32 size,
                                                                   PartitionMetadata* partition);
/// @param path  NUL-terminated UTF-16.
VANTOR_XMLBUILDER_EXPORT LosslessImport importLosslesslyFromFile(const uint16* path, PartitionMetadata* partition);

}  // namespace XML2Partition

}  // namespace Vantor
