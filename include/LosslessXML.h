#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Path.h"
#include "Core/Types/UUID.h"
#include "Export.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor {

class MetadataSet;
class PartitionMetadata;

/// Header metadata to XML and back without loss. Documents describe what they are an export of.
///
/// Documents have the form of `XMLBuilder::partition2XML`, but hide nothing: see `exportDocument`. The reader accepts
/// documents of both kinds.
namespace LosslessXML {

/// What a document is an export of. The document has it as a processing instruction before the root:
/// `<?mxfxml form="nested" sets="all" partition="header" vocabulary="legacy" metadata="0123456789ABCDEF"?>`.
struct Description {
  bool isNested = true;           ///< form="nested" or form="flat"
  bool isStructuralOnly = false;  ///< sets="all" or sets="structural"
  /// start="urn:uuid:...": the InstanceUID of the set that the document starts from; none for the Preface.
  std::optional<Types::UUID> start = {};
  std::string partition = "header";  ///< which partition of the file: "header", "footer" or its number
  MetaMetadata::Vocabulary vocabulary = MetaMetadata::Vocabulary::kLegacy;
  uint64 digest = 0;  ///< `digestOf` the whole partition, with what the document leaves out
};

struct ExportOptions {
  bool nestStrongReferences = true;
  bool excludeNonStructural = false;
  const MetadataSet* start = nullptr;  ///< null for the Preface
  /// Which partition of the file this is: "header", "footer" or a number. Only written into the description.
  std::string partition = "header";
  Limits limits = {};  ///< memory and size of the output
};

/// Builds the document that `XMLBuilder::partition2XML` builds, with these differences:
/// - A processing instruction `mxfxml` before the root describes the document, unless the document starts from a set
///   without InstanceUID that is not the Preface.
/// - A nested document has a pointer, as a flat one does, for a reference to a dark group or to a set that is written
///   elsewhere. References to sets that `excludeNonStructural` leaves out are left out.
/// - A value whose text would not read back as the same octets is written as octets, like an unknown property: in
///   "groups:ExtensionElements", marked with its tag or label. Final NULs of a text count only for
///   properties in a namespace that their definitions chose.
/// - An empty collection is written as an empty element, required or not.
/// - Each set is written once, and each dark group: sets that the Preface does not lead to, and that share others, do
/// not
///   multiply these.
///
/// @return the document, owned by the caller: destroying the node destroys all of it. Empty when there is no set to
///         start from.
/// @throws as `partition2XML`; InvalidFormat when `options.partition` names no partition, and what `digestOf` throws.
VANTOR_XMLBUILDER_EXPORT std::unique_ptr<xercesc::DOMNode> exportDocument(PartitionMetadata& partition,
                                                                          const ExportOptions& options);

/// The same as bytes in an encoding; empty when there is no set to start from.
VANTOR_XMLBUILDER_EXPORT std::string exportBytes(PartitionMetadata& partition, const ExportOptions& options,
                                                 XMLUtils::EncodingType encoding);

/// A place in a document.
struct Place {
  uint64 line = 0;            ///< from 1; 0 when it is not known
  std::string set = {};       ///< the symbol of the set, with its InstanceUID when it has one; empty outside of sets
  std::string property = {};  ///< the symbol of the property; empty for the set itself
};

/// Content of a document that was not read, or not as it stands; `describe` renders it in English.
struct Diagnostic {
  /// The comment of each kind lists its arguments. A namespace is its URI, empty for none.
  enum class Kind {
    // Names unknown to the dictionary and to the form of documents. Nothing with such a name was read, except the root.
    kUnknownRoot,          ///< name, namespace
    kUnknownSet,           ///< name, namespace, dotted InstanceUID or nothing; no set has this name
    kSetOfOtherNamespace,  ///< the same; a set has this name in another namespace
    kUnknownProperty,      ///< name, namespace: of a child of a set
    kUnknownExtension,     ///< name, namespace: of a child of groups:ExtensionElements
    kUnknownAttribute,     ///< name, namespace: of an attribute of a set
    kStrayAttribute,       ///< element, name, namespace: of an attribute of any other element
    kStrayText,            ///< the text, quoted, and the name of the element: where only elements are expected
    // Content that occurs twice. The first occurrence counts.
    kSecondElement,          ///< name: of a child of a set
    kSecondProperty,         ///< symbol: an extension element for a property that the set has
    kSecondUnknownProperty,  ///< no argument: an unknown property with the tag of another one
    kSecondReference,        ///< no argument: in a property that refers to one set
    kSecondPreface,          ///< no argument; the set was read, and comes behind the first Preface
    kDifferentCopy,          ///< line of the first copy, nothing when both are on one line
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
    kMissingInstanceUID   ///< no argument; outside of references, where the base has no such set without one
  };
  Kind kind;
  Place place;
  std::vector<std::string> arguments = {};
};

/// One line in English, with the place in front.
VANTOR_XMLBUILDER_EXPORT std::string describe(const Diagnostic& diagnostic);

/// A property that the document has, but whose value could not be read.
struct UnreadProperty {
  MetadataSet* set;
  std::string property;  ///< the symbol
};

/// How many diagnostics of a kind are not listed.
struct FurtherDiagnostics {
  Diagnostic::Kind kind;
  std::size_t count;
};

/// The sets that an import made, and what it could not read.
struct Import {
  std::vector<MetadataSet*> sets;  ///< of children of the root and of the floating container, in document order
  /// In document order; missing targets come last. When there are `Limits::diagnostics` of them, only the first one of
  /// a kind that the list lacks is added; the others are counted.
  std::vector<Diagnostic> diagnostics;
  std::vector<FurtherDiagnostics> furtherDiagnostics;  ///< those that are not in the list; each kind once
  std::vector<UnreadProperty> unread;
};

/// How much of its base a document shows.
enum class Extent {
  kDescribed,  ///< what its description has: all sets without one. A set of the base that it omits was removed
  kPart        ///< a part: references may lead to sets of the base that it omits
};

/// A parsed document, whose sets are not read yet. Reading does not change it. For one thread at a time.
class Document {
 public:
  /// @param bytes  copied where need be; encodings as in `XML2Partition`.
  /// @param limits  of the document, and of what an import makes of it.
  /// @throws ParseError with line and column for what is not well-formed XML, and for encodings that are not read;
  ///         LimitExceeded, which is one; std::bad_alloc.
  VANTOR_XMLBUILDER_EXPORT static Document fromBytes(const void* bytes, std::size_t size, const Limits& limits = {});
  /// @throws IOError naming the file; ParseError as above.
  VANTOR_XMLBUILDER_EXPORT static Document fromFile(const Path& file, const Limits& limits = {});
  VANTOR_XMLBUILDER_EXPORT Document(Document&&) noexcept;
  VANTOR_XMLBUILDER_EXPORT Document& operator=(Document&&) noexcept;
  VANTOR_XMLBUILDER_EXPORT ~Document();

  /// None for a document without the instruction, and for one whose instruction is damaged.
  VANTOR_XMLBUILDER_EXPORT const std::optional<Description>& description() const;
  /// Whether the document has the instruction, in a form that cannot be read.
  VANTOR_XMLBUILDER_EXPORT bool isDescriptionDamaged() const;
  /// The vocabulary of the first element below the root that is in a namespace of either; none when no element is.
  VANTOR_XMLBUILDER_EXPORT std::optional<MetaMetadata::Vocabulary> vocabulary() const;
  /// Whether references nest, judged by counts: more sets stand inside references than sets at the top are pointed at,
  /// or none of those at the top is.
  VANTOR_XMLBUILDER_EXPORT bool isNested() const;

  /// Makes the sets of the document in a partition. Differs from the functions of `XML2Partition` in these ways:
  ///
  /// - Sets and dark groups keep their InstanceUIDs. A set without one gets a random one inside a reference, and none
  ///   below the root or in the floating container.
  /// - In place of its InstanceUID, a set may have a name of one's choice, "new:" and any text, by which references of
  ///   the document lead to it, before it or behind it. It gets a random InstanceUID, another one in every import.
  /// - A set that occurs twice in the document becomes one set.
  /// - Fractions of a second are scaled back. JPEG 2000 values are read with and without an element around them, and
  ///   children of values in either vocabulary. Empty texts and white space are values.
  /// - Elements and attributes are found by namespace and name, whatever prefix the document gives the namespace.
  /// - An unknown property becomes a known one, as in a file, if its tag stands for a property of the set or of the
  ///   dictionary, and its octets decode and would be written back unchanged.
  /// - Texts of an array are padded with NULs to the longest of them.
  /// - Values that cannot be read and content that has no meaning become diagnostics.
  ///
  /// @param partition  receives the sets; its dictionary has the vocabulary of the document. Properties get none of the
  ///                   local tags used in dark sets, whose meaning only the primer of the file has. With a base, the
  ///                   partition must have a copy of its primer.
  /// @param base       the partition that the document was exported from; null when it is not known. It confirms what
  ///                   the document alone cannot: missing targets, dark sets that are no local sets, second properties,
  ///                   sets without InstanceUID, second Prefaces. Without one, missing targets of pointers named
  ///                   Dangling_REF, dark sets that are no local sets, second unknown properties and sets without
  ///                   InstanceUID are accepted.
  /// @param extent     how much of the base the document shows, where its description does not give that.
  /// @throws LimitExceeded beyond the limits of the document; its diagnostics are cut instead (`furtherDiagnostics`).
  /// @throws InvalidFormat, naming both, for two different sets with one InstanceUID, one of which may have been in the
  ///         partition before, and for two sets with one name "new:..."; with the line, for a reference to such a name
  ///         that no set has. Sets made before the failure stay in the partition.
  VANTOR_XMLBUILDER_EXPORT Import import(PartitionMetadata& partition, const PartitionMetadata* base = nullptr,
                                         Extent extent = Extent::kDescribed) const;

 private:
  struct Content;
  explicit Document(std::unique_ptr<Content> content);
  static Document documentFrom(const uint8* bytes, std::size_t size, const Limits& limits);
  std::unique_ptr<Content> content_;
};

}  // namespace LosslessXML

}  // namespace Vantor
