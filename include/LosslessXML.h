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

/// The XML of header metadata that loses nothing on its way there and back, in documents that describe themselves.
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

/// Something that a document has twice, or that cannot be what it stands for. `describe` has the English.
struct Diagnostic {
  enum class Kind {
    kUnknownElement,  ///< placeholder: the kinds are listed by what they are, each with its arguments
  };
  Kind kind;
  Place place;
  std::vector<std::string> arguments;
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
  std::vector<Diagnostic> diagnostics;
  std::vector<UnreadProperty> unread;
};

/// A document that was loaded, and not yet read. One thread at a time may use it.
class VANTOR_XMLBUILDER_EXPORT Document {
 public:
  /// @throws ParseError with line and column for what is not well-formed XML, IOError naming the file.
  static Document fromBytes(const void* bytes, std::size_t size);
  static Document fromFile(const Path& file);
  Document(Document&&) noexcept;
  ~Document();

  /// None for a document without the instruction, and for one whose instruction is not to be understood.
  const std::optional<Description>& description() const;
  /// What the names in it belong to; none where they do not tell.
  std::optional<MetaMetadata::Vocabulary> vocabulary() const;
  /// Whether sets stand within the references to them: of most references.
  bool isNested() const;

  /// Makes the sets of the document in a partition.
  /// @param partition  its dictionary has to have the vocabulary of the document.
  /// @param base       the partition that the document was exported from; null when it is not known. It confirms what
  ///                   the document alone cannot: dangling references, dark KLVs that are no local sets, properties
  ///                   that a set has twice, sets without InstanceUID. The partition is to have a copy of its primer.
  Import import(PartitionMetadata& partition, const PartitionMetadata* base = nullptr) const;

 private:
  struct Content;
  explicit Document(std::unique_ptr<Content> content);
  std::unique_ptr<Content> content_;
};

}  // namespace LosslessXML

}  // namespace Vantor
