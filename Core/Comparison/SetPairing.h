#pragma once

#include <limits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

/// How sets of two partitions are paired.
enum class Pairing {
  kByPlace,      ///< by the references to them; InstanceUIDs may differ
  kByIdentifier  ///< by InstanceUID, where it is that of one set in each partition and both are of one kind; then by
                 ///< place
};

/// Pairs the KLVs of two partitions.
///
/// The Prefaces are partners, and so are the targets that partners refer to by the same property, item by item: first
/// along strong references, then along weak ones. The remaining sets are paired by key and value where no set owns
/// them, and then by key; dark KLVs by key and octets, whether they are dark sets or dark groups, and object
/// directories by their key. Several candidates are paired in the order in which the partitions are serialised. Keys
/// are compared without octets 6 and 8.
///
/// Takes time in proportion to the partitions' sizes, whatever they refer to. Both partitions outlive the pairing.
class SetPairing {
 public:
  using SetPair = std::pair<const MetadataSet*, const MetadataSet*>;

  static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

  SetPairing(const PartitionMetadata& left, const PartitionMetadata& right, Pairing pairing = Pairing::kByPlace);

  /// For each entry of the left partition the place of its partner among the right partition's entries, or `kNone`.
  const std::vector<std::size_t>& partnersOfLeft() const { return left_.partners; }
  /// The same for the right partition.
  const std::vector<std::size_t>& partnersOfRight() const { return right_.partners; }
  /// The sets, dark groups included, whose partner is a set, in the order of pairing.
  const std::vector<SetPair>& setPairs() const { return setPairs_; }

 private:
  struct Side {
    explicit Side(const PartitionMetadata& partition);
    bool isFree(const MetadataSet& set) const { return partners[places.at(&set)] == kNone; }
    bool isDark(const MetadataSet& set) const;
    /// The first set that carries an InstanceUID.
    const MetadataSet* find(const Types::UUID& instanceUID) const;
    /// The sets that are free and not dark, owners before what they own.
    std::vector<const MetadataSet*> freeSets() const;

    const PartitionMetadata& partition;
    std::unordered_map<const MetadataSet*, std::size_t> places;  // among the entries
    std::vector<std::size_t> partners;
  };

  void pairByIdentifier();
  void pairFirstSets();
  void pairOwnersByValue();
  void pairByKey();
  void pairDark();
  /// @return false when the sets are not of one kind or one of them has a partner already.
  bool pair(const MetadataSet& left, const MetadataSet& right);
  void pairPlaces(std::size_t left, std::size_t right);
  /// Pairs with the first of a kind that is still free, and follows the references of both.
  template <class Waiting, class Kind>
  void pairWithFirst(const MetadataSet& left, Waiting& waiting, const Kind& kind);
  /// Follows the references of the pairs from one on, and of those that this adds.
  void follow(std::size_t firstPair, ReferenceKinds kinds);
  void followReferences(const SetPair& sets, ReferenceKinds kinds);

  Side left_;
  Side right_;
  std::vector<SetPair> setPairs_;
};

}  // namespace Vantor
