#pragma once

#include <iterator>
#include <unordered_map>
#include <variant>
#include <vector>

#include "Core/Metadata/DarkMetadataSet.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Containers.h"

namespace Vantor {

/// The header metadata of one partition: its sets, its dark sets and its primer, in the order of the file.
///
/// Owns every set in it. Look-ups by key and by InstanceUID cost the same however many sets there are. Any number of
/// threads may read a partition; one that changes it must be alone with it.
class PartitionMetadata {
 public:
  using Sets = std::vector<MetadataSet*>;
  using DarkSets = std::vector<DarkMetadataSet*>;
  /// One KLV of the partition: a set or a dark set.
  using Entry = std::variant<auto_ptr<MetadataSet>, auto_ptr<DarkMetadataSet>>;

  explicit PartitionMetadata(SharedPtr<const MetaMetadata::Dictionary> dictionary);
  ~PartitionMetadata();
  PartitionMetadata(const PartitionMetadata&) = delete;
  PartitionMetadata& operator=(const PartitionMetadata&) = delete;

  PartitionDictionary& partitionDictionary() { return dictionary_; }
  const PartitionDictionary& partitionDictionary() const { return dictionary_; }

  /// The sets, dark parsed groups included, in file order.
  const Sets& sets() const { return sets_; }
  /// The dark sets, in file order.
  DarkSets::const_iterator darkBegin() const { return darkSets_.begin(); }
  DarkSets::const_iterator darkEnd() const { return darkSets_.end(); }
  /// Sets and dark sets as they follow one another in the file.
  const std::vector<Entry>& entries() const { return entries_; }

  /// Every set with a key, octets 6 and 8 ignored, in file order.
  const Sets& find(const KLV::Key& key) const;
  /// The Preface, the first one of several; null when there is none.
  MetadataSet* preface() const;
  /// Every set that carries an InstanceUID, in file order.
  const Sets& findByInstanceUID(const Types::UUID& instanceUID) const;

  /// Adds a set at the end with every property of its definition, unset but for the InstanceUID, which is a new random
  /// one. A key that the dictionary does not know gives a set without definition and properties.
  MetadataSet* createMetadataSet(const KLV::Key& key);
  MetadataSet* addMetadataSet(auto_ptr<MetadataSet> set);
  void addDarkMetadataSet(auto_ptr<DarkMetadataSet> set);

  /// Takes all sets and dark sets out, in the order of the file; the primer stays. For putting them back in another
  /// order, or some of them.
  std::vector<Entry> releaseEntries();

  /// Adds one KLV of the header metadata at the end. A known local set becomes a set; every property whose value does
  /// not decode, or would be written back as other bytes, is kept in it as unknown. An unknown local set becomes a
  /// `DarkParsedGroup`, anything else a `DarkMetadataSet`. Primer entries are added first (`partitionDictionary`).
  /// @param offset  where the value starts in the file, for messages.
  /// @throws ParseError naming the set and the offset when a known set's items do not fit it; nothing is added then.
  void addKLV(const KLV::Key& key, uint8 berOctets, const uint8* value, std::size_t size, uint64 offset);

  /// The sets in the order in which they are serialised: the Preface, then depth first along the strong references of
  /// each set in the order of its definition, then the sets that no such path reaches, each of these with what it
  /// refers to behind it.
  /// @param order              receives the sets; it is emptied first.
  /// @param withUnreached      whether the sets that no path from the Preface reaches are wanted at all.
  /// @param followWeak         whether weak references lead to sets, too.
  /// @return how many sets at the end of `order` were not reached.
  uint32 calculateSerializationOrder(std::vector<const MetadataSet*>& order, bool withUnreached, bool followWeak) const;

 private:
  friend class MetadataSet;

  void addKnownSet(const KLV::Key& key, const MetaMetadata::MetaMetadataSet& definition, uint8 berOctets,
                   const uint8* value, std::size_t size, uint64 offset);
  bool addDarkParsedGroup(const KLV::Key& key, uint8 berOctets, const uint8* value, std::size_t size);
  void instanceUIDChanged(MetadataSet& set, const Types::UUID* before, const Types::UUID* after);

  PartitionDictionary dictionary_;
  std::vector<Entry> entries_;
  Sets sets_;
  DarkSets darkSets_;
  std::unordered_map<KLV::Key, Sets, KLV::KeyHash> byKey_;
  std::unordered_map<Types::UUID, Sets> byInstanceUID_;
};

}  // namespace Vantor
