#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Path.h"
#include "Core/Types/UUID.h"
#include "JSON/Diagnostic.h"

/// Header metadata as JSON and back, without loss. The form is described in docs/json.md, and in JSON Schema in
/// docs/mxf-metadata.schema.json.
///
///     {
///       "format": "mxfxml-metadata",
///       "version": 1,
///       "description": {"sets": "all", "partition": "header", "metadata": "031F122CD3E7BE73"},
///       "sets": [
///         {
///           "set": "Preface",
///           "instanceUID": "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0B.00.00.00.00",
///           "properties": {"FormatVersion": {"value": 258, "text": "1.2"}, ...}
///         },
///         ...
///
/// Sets stand in the order of the file, properties in that of their definition. What comes back has the same
/// InstanceUIDs and octets, but for the final NULs of texts and the item sizes of collections without items; as with
/// documents in XML, local tags, the primer pack and the length fields of known sets are made anew.
namespace Vantor::JSON {

inline constexpr const char* kFormat = "mxfxml-metadata";
inline constexpr int64 kVersion = 1;

/// What a document is an export of.
struct Description {
  std::string partition = "header";  ///< which partition of the file: "header", "footer" or its number
  /// The InstanceUID of the set that the document starts from; none for all sets.
  std::optional<Types::UUID> start = {};
  uint64 digest = 0;  ///< `digestOf` the partition, with what the document leaves out
};

/// The sets of a document that shows a part of a partition, beside the dark sets, which all documents have.
struct Selection {
  Types::UUID start;  ///< the InstanceUID of the set that it starts from; only written into the description
  std::function<bool(const MetadataSet&)> shows;
};

/// Writes a partition, set by set: no more than the text of one set is in memory.
/// @param partition  which one of the file it is; only written into the description.
/// @param selection  null for all sets.
/// @param limits     size of the output.
/// @throws Exceptions::InvalidFormat when `partition` names none; LimitExceeded before the set that goes beyond the
/// limit is written; what `digestOf` and the sink throw.
void writeDocument(const PartitionMetadata& metadata, const std::string& partition, DataIO::DataSink& sink,
                   const Selection* selection = nullptr, const Limits& limits = {});

/// A document whose outline has been read: its sets are not made yet. For one thread at a time.
class Document {
 public:
  /// @param text    in UTF-8.
  /// @param limits  size and memory of the document, and sets and memory of what an import makes of it.
  /// @throws Exceptions::ParseError with line and column for what is no JSON, has a member twice or nests too deep;
  /// with the line and the JSON pointer for another format or version, and for members that are missing or unknown;
  /// LimitExceeded, which is one.
  static Document fromText(std::string text, const Limits& limits = {});
  /// @throws Exceptions::IOError naming the file; ParseError as above.
  static Document fromFile(const Path& file, const Limits& limits = {});
  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;
  ~Document();

  /// None for a document without description.
  const std::optional<Description>& description() const;

  /// Makes the sets of the document in a partition, in their order. Names, labels and texts that the document has for
  /// people are compared with the values. An unknown property becomes a known one, as in a file, if its tag stands for
  /// a property of the set or of the dictionary, and its octets decode. References may lead to no set.
  /// @param partition  receives the sets. Properties get none of the local tags used in dark sets.
  /// @throws Exceptions::InvalidFormat "line 12: /sets/3/properties/EditRate: TimelineTrack AD.AB...: reason" for a
  /// name that the dictionary lacks, a value that the property cannot have, and a contradiction; LimitExceeded. Sets
  /// before that one stay.
  /// @param unknown  receives such a message for each name that the dictionary lacks; these sets and properties are
  ///                 left out then. Null to refuse them.
  /// @param diagnostics  receives what may not be meant, in the order of the sets; may be null.
  void import(PartitionMetadata& partition, std::vector<std::string>* unknown = nullptr,
              Diagnostics* diagnostics = nullptr) const;

 private:
  struct Content;
  explicit Document(std::unique_ptr<Content> content);
  void importWithin(PartitionMetadata& partition, std::vector<std::string>* unknown, Diagnostics* diagnostics) const;
  std::unique_ptr<Content> content_;
};

/// Whether a file looks like a JSON document (`looksLikeJSON`); false for one that cannot be read.
bool isJSONFile(const Path& file);

}  // namespace Vantor::JSON
