#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::XML2Partition {

/// Facts about the partition that a document was exported from. They decide whether something unusual in the document
/// comes from the file or is a mistake. Looked up on demand.
class BaseFacts {
 public:
  /// @param base  null when it is not known.
  /// @param isPart  whether the document may omit sets of the base.
  explicit BaseFacts(const PartitionMetadata* base, bool isPart = true) : base_(base), isPart_(isPart) {}

  bool isKnown() const { return base_ != nullptr; }

  /// Whether the base is known to have several sets with this InstanceUID.
  bool hasSeveral(const Types::UUID& instanceUID) const {
    return isKnown() && base_->findByInstanceUID(instanceUID).size() > 1;
  }

  // The base has to be known.

  /// Whether a reference without target in the document is right: to a set that the document may omit, or dangling
  /// in the base.
  bool hasTarget(const Types::UUID& instanceUID);
  bool hasDarkSet(const KLV::Key& key, const Bytes& octets);
  /// Takes one of the sets of a name that have no InstanceUID; false when none is left.
  bool takeWithoutInstanceUID(const std::string& name);
  std::size_t count(const KLV::Key& key) const { return base_->find(key).size(); }

  /// An extension property by its label, or by its tag where it has none.
  using PropertyName = std::pair<KLV::Key, uint16>;
  using PropertyCounts = std::map<PropertyName, std::size_t>;
  /// The name of an extension property. @param tags  of its partition.
  static PropertyName nameOf(const Element& property, const PartitionDictionary& tags);
  static PropertyName nameOf(const MetaMetadata::MetaElement& definition);
  static PropertyName nameOf(uint16 tag, const PartitionDictionary& tags);
  /// How often the set with the same InstanceUID has each of its extension properties. For a set without InstanceUID,
  /// the highest counts among the sets of its kind without one.
  PropertyCounts extensionsOf(const MetadataSet& set) const;

 private:
  const PartitionMetadata* base_;
  bool isPart_;
  std::optional<std::unordered_set<Types::UUID>> targets_;
  std::optional<std::set<std::pair<KLV::Key, Bytes>>> dark_;
  std::optional<std::map<std::string, std::size_t>> withoutInstanceUID_;
};

}  // namespace Vantor::XML2Partition
