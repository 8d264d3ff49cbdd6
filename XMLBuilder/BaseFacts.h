#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::XML2Partition {

/// What the partition that a document was exported from has, where a document alone does not show whether something is
/// as the file has it or a mistake. Looks nothing up before it is asked.
class BaseFacts {
 public:
  /// @param base  null when it is not known.
  explicit BaseFacts(const PartitionMetadata* base) : base_(base) {}

  bool isKnown() const { return base_ != nullptr; }

  // The base has to be known.

  /// Whether a reference to this InstanceUID may stay: there is such a set, or a reference to it that dangles.
  bool hasTarget(const Types::UUID& instanceUID);
  bool hasDarkSet(const KLV::Key& key, const Bytes& octets);
  /// Whether there is one more set of a name that has no InstanceUID; each call takes one of them.
  bool takeWithoutInstanceUID(const std::string& name);
  std::size_t count(const KLV::Key& key) const { return base_->find(key).size(); }

  /// Extension properties of one set by their label, or by their tag where that has none.
  using PropertyName = std::pair<KLV::Key, uint16>;
  using PropertyCounts = std::map<PropertyName, std::size_t>;
  /// The name of an extension property. @param tags  of its partition.
  static PropertyName nameOf(const Element& property, const PartitionDictionary& tags);
  static PropertyName nameOf(const MetaMetadata::MetaElement& definition);
  static PropertyName nameOf(uint16 tag, const PartitionDictionary& tags);
  /// How often the set of the same InstanceUID has each of its extension properties. For a set without InstanceUID, the
  /// most that one of the sets of its kind has that lack theirs, too.
  PropertyCounts extensionsOf(const MetadataSet& set) const;

 private:
  void countProperties(const MetadataSet& set, PropertyCounts& counts) const;

  const PartitionMetadata* base_;
  std::optional<std::unordered_set<Types::UUID>> targets_;
  std::optional<std::set<std::pair<KLV::Key, Bytes>>> dark_;
  std::optional<std::map<std::string, std::size_t>> withoutInstanceUID_;
};

}  // namespace Vantor::XML2Partition
