#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Path.h"
#include "Core/Types/UUID.h"
#include "Export.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor {

class MetadataSet;
class PartitionMetadata;

/// The XML of header metadata that loses nothing on its way there and back, and that names what it is an export of.
///
/// Documents have the form of `XMLBuilder::partition2XML`, except for what that form hides: see `exportDocument`. The
/// reader takes documents of either kind.
namespace LosslessXML {

/// What a document is an export of, in a processing instruction before its root:
/// `<?mxfxml form="nested" sets="all" partition="header" vocabulary="legacy" metadata="0123456789ABCDEF"?>`.
struct Description {
  bool isNested = true;           ///< form="nested" or form="flat"
  bool isStructuralOnly = false;  ///< sets="all" or sets="structural"
  /// start="urn:uuid:...": the InstanceUID of the set that the document starts from; none for the Preface.
  std::optional<Types::UUID> start = {};
  std::string partition = "header";  ///< which partition of the file: "header", "footer" or its number
  MetaMetadata::Vocabulary vocabulary = MetaMetadata::Vocabulary::kLegacy;
  uint64 digest = 0;  ///< `digestOf` the whole partition, including what the document leaves out
};

struct ExportOptions {
  bool nestStrongReferences = true;
  bool excludeNonStructural = false;
  const MetadataSet* start = nullptr;  ///< null for the Preface
  /// Which partition of a file this is: "header", "footer" or a number. Stated in the description, and not used.
  std::string partition = "header";
};

/// Builds the document that `XMLBuilder::partition2XML` builds, with these differences:
/// - A processing instruction `mxfxml` before the root describes the document; one that starts from a set other than
///   the Preface and without InstanceUID has none.
/// - Where references nest, a reference whose target is a dark parsed group or stands elsewhere in the document has the
///   pointer that it has where they do not. References to what `excludeNonStructural` leaves out are left out.
/// - A value whose text would read back as other octets is written as its bytes, as an unknown property is: in
///   "groups:ExtensionElements", marked with its tag or label. Final NULs of a text do not count.
/// - A collection without items is an empty element, whether it is required or not.
///
/// @return the document, owned by the caller: destroying the node destroys all of it. Empty when there is no set to
///         start from.
/// @throws as `partition2XML`; InvalidFormat when `options.partition` names no partition, and what `digestOf` throws.
VANTOR_XMLBUILDER_EXPORT std::unique_ptr<xercesc::DOMNode> exportDocument(PartitionMetadata& partition,
                                                                          const ExportOptions& options);

/// The same as bytes in an encoding; empty when there is no set to start from.
VANTOR_XMLBUILDER_EXPORT std::string exportBytes(PartitionMetadata& partition, const ExportOptions& options,
                                                 XMLUtils::EncodingType encoding);

/// Where in a document something is.
struct Place {
  uint64 line = 0;            ///< from 1; 0 when it is not known
  std::string set = {};       ///< the symbol of the set, with its InstanceUID when it has one; empty outside of sets
  std::string property = {};  ///< the symbol of the property; empty for the set itself
};

/// Content that was not read, or not as it stands. `describe` has the English.
struct Diagnostic {
  /// One kind for each sentence. Behind each, its arguments; a namespace is its URI, empty for none.
  enum class Kind {
    // Names that the dictionary or the document's form lacks. What has them was not read, but for the root.
    kUnknownRoot,          ///< name, namespace
    kUnknownSet,           ///< name, namespace, InstanceUID in dotted form or nothing; no set has the name
    kSetOfOtherNamespace,  ///< the same; the dictionary has a set of the name
    kUnknownProperty,      ///< name, namespace: of a child of a set
    kUnknownExtension,     ///< name, namespace: of a child of groups:ExtensionElements
    kUnknownAttribute,     ///< name, namespace: of an attribute of a set
    kStrayAttribute,       ///< element, name, namespace: of an attribute of any other element
    kStrayText,            ///< the text, quoted: where only elements are expected
    // Repetitions. The first counts.
    kSecondElement,          ///< name: of a child of a set
    kSecondProperty,         ///< symbol: an extension element for a property that the set has
    kSecondUnknownProperty,  ///< no argument: an unknown property with the tag of another one
    kSecondReference,        ///< no argument: in a property that refers to one set
    kSecondPreface,          ///< no argument; it was read
    kDifferentCopy,          ///< line of the first copy, nothing when both have the same: the set stands there twice
    // Values.
    kInvalidValue,         ///< reason
    kInvalidDarkSet,       ///< reason
    kInvalidDarkLength,    ///< reason; the set was read
    kDarkSetIsNoLocalSet,  ///< key; the set was read
    // References.
    kMissingTarget,         ///< InstanceUID; the reference was read
    kEmptyReference,        ///< no argument
    kPointerWithoutTarget,  ///< name
    kContentInPointer,      ///< name; the pointer was read
    kTargetOfSet,           ///< name: a set within a reference has types:TargetInstance; it was read as a pointer
    // Identifiers. Edits of a file with one of these are ambiguous: the set may be one of the file or a new one.
    kInvalidInstanceUID,  ///< text; the set has a new one
    kMissingInstanceUID   ///< no argument; the base has no such set without one
  };
  Kind kind;
  Place place;
  std::vector<std::string> arguments = {};
};

/// One line in English, with the place in front.
VANTOR_XMLBUILDER_EXPORT std::string describe(const Diagnostic& diagnostic);

/// A property that the document has, but not in a form that could be read.
struct UnreadProperty {
  MetadataSet* set;
  std::string property;  ///< the symbol
};

/// What an import made, and what it could not.
struct Import {
  std::vector<MetadataSet*> sets;  ///< of children of the root and of the floating container, in document order
  /// In the order of the document, but for missing targets, which come last.
  std::vector<Diagnostic> diagnostics;
  std::vector<UnreadProperty> unread;
};

/// A document that was loaded, and not yet read. Reading it does not change it. One thread at a time may use it.
class Document {
 public:
  /// @param bytes  copied where need be; encodings as in `XML2Partition`.
  /// @throws ParseError with line and column for what is not well-formed XML.
  VANTOR_XMLBUILDER_EXPORT static Document fromBytes(const void* bytes, std::size_t size);
  /// @throws IOError naming the file; ParseError as above.
  VANTOR_XMLBUILDER_EXPORT static Document fromFile(const Path& file);
  VANTOR_XMLBUILDER_EXPORT Document(Document&&) noexcept;
  VANTOR_XMLBUILDER_EXPORT Document& operator=(Document&&) noexcept;
  VANTOR_XMLBUILDER_EXPORT ~Document();

  /// None for a document without the instruction, and for one whose instruction is damaged.
  VANTOR_XMLBUILDER_EXPORT const std::optional<Description>& description() const;
  /// The vocabulary of the first element below the root that is in a namespace of either; none when no element is.
  VANTOR_XMLBUILDER_EXPORT std::optional<MetaMetadata::Vocabulary> vocabulary() const;
  /// Whether more sets stand within references than are pointed at from elsewhere; true for a document without either.
  VANTOR_XMLBUILDER_EXPORT bool isNested() const;

  /// Makes the sets of the document in a partition. Differs from the functions of `XML2Partition` in these ways:
  ///
  /// - Sets keep their InstanceUIDs, and dark groups theirs. A set element without one stays without where it stands
  ///   below the root or floats, and gets a new one within a reference.
  /// - A set that the document has twice is one set.
  /// - Fractions of a second are scaled back. JPEG 2000 values are read with and without an element around them, and
  ///   children of values in either vocabulary. An empty text is a text, and so is white space.
  /// - Elements and attributes are found by namespace and name, whatever prefix the document gives the namespace.
  /// - An unknown property whose tag means a property that the set may have, or that the dictionary has, becomes that
  ///   property when its octets decode and would be written back as they are, as in a file.
  /// - Texts of an array that are not of one length are padded with NULs to the longest.
  /// - Values that cannot be read and content that has no meaning become diagnostics.
  ///
  /// @param partition  its dictionary has to have the vocabulary of the document. No local tag of a dark set is given
  ///                   to a property: what it means stood in the primer of the file. With a base, the partition is to
  ///                   have a copy of its primer.
  /// @param base       the partition that the document was exported from; null when it is not known. It confirms what
  ///                   the document alone cannot: missing targets, dark sets that are no local sets, second properties,
  ///                   sets without InstanceUID, second Prefaces. Without one, missing targets of pointers that are
  ///                   named Dangling_REF, such dark sets, second unknown properties and sets without InstanceUID are
  ///                   taken as they are.
  /// @throws InvalidFormat, naming both, for two different sets of one InstanceUID, one of which the partition may have
  ///         had before. What was made before the failure stays in the partition.
  VANTOR_XMLBUILDER_EXPORT Import import(PartitionMetadata& partition, const PartitionMetadata* base = nullptr) const;

 private:
  struct Content;
  explicit Document(std::unique_ptr<Content> content);
  std::unique_ptr<Content> content_;
};

}  // namespace LosslessXML

}  // namespace Vantor
