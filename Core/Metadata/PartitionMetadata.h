#pragma once

#include <atomic>
#include <iterator>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "Core/Metadata/DarkMetadataSet.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Containers.h"

namespace Vantor {

/// Sets of a partition, to walk over: `for (auto& track : metadata.findAll("TimelineTrack")) ...`.
class FoundSets {
 public:
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = MetadataSet;
    using difference_type = std::ptrdiff_t;
    using reference = MetadataSet&;
    using pointer = MetadataSet*;

    explicit iterator(MetadataSet* const* at = nullptr) : at_(at) {}
    reference operator*() const { return **at_; }
    pointer operator->() const { return *at_; }
    iterator& operator++() {
      ++at_;
      return *this;
    }
    iterator operator++(int) { return iterator(at_++); }
    bool operator==(const iterator& other) const { return at_ == other.at_; }
    bool operator!=(const iterator& other) const { return at_ != other.at_; }

   private:
    MetadataSet* const* at_;
  };

  explicit FoundSets(std::vector<MetadataSet*> sets) : sets_(std::move(sets)) {}
  iterator begin() const { return iterator(sets_.data()); }
  iterator end() const { return iterator(sets_.data() + sets_.size()); }
  std::size_t size() const { return sets_.size(); }
  bool empty() const { return sets_.empty(); }
  MetadataSet& operator[](std::size_t index) const { return *sets_[index]; }

 private:
  std::vector<MetadataSet*> sets_;
};

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

  /// The sets, dark groups included, in file order.
  const Sets& sets() const { return compacted().sets_; }
  /// The dark sets, in file order.
  DarkSets::const_iterator darkBegin() const { return compacted().darkSets_.begin(); }
  DarkSets::const_iterator darkEnd() const { return compacted().darkSets_.end(); }
  /// Sets and dark sets as they follow one another in the file.
  const std::vector<Entry>& entries() const { return compacted().entries_; }

  /// Every set with a key, octets 6 and 8 ignored, in file order.
  const Sets& find(const KLV::Key& key) const;
  /// The Preface, the first one of several; null when there is none.
  MetadataSet* preface() const;
  /// Every set that carries an InstanceUID, in file order.
  const Sets& findByInstanceUID(const Types::UUID& instanceUID) const;

  /// The set that a text chooses (`SetPath`):
  ///
  ///     "TimelineTrack"      the only set of that kind, by its symbol in the register, its tag name or its common name
  ///     "Component"          of an abstract kind, or of one without sets of its own: the only set that inherits from
  ///                          it
  ///     "Track"              both the common name of a kind and an abstract one: of the former where there are such
  ///                          sets; a condition that holds for none of these tries the others
  ///     "TimelineTrack[2]"   the second one, in file order
  ///     "TimelineTrack[-1]"  the last one
  ///     "TimelineTrack[TrackID=2]"  the only one with this value, in any form that `MetadataSet::set` takes
  ///     "MaterialPackage/Timecode"  the only one that strong references of the MaterialPackage lead to, directly or
  ///                          through other sets; the nearest is the first. Steps may have indexes and conditions,
  ///                          which count and choose among all sets that the step reaches: "Package[*]/Track[1]" is
  ///                          one set. Weak references and PackageIDs lead nowhere
  ///     "06.0E.2B.34...."    the set with that InstanceUID, or else the only one with that key; in any spelling of
  ///                          `KLV::identifierDigits`
  ///     "8d9dad"             the only set whose InstanceUID begins so, by four digits or more that are no name
  ///
  /// Costs a look-up by hash for a kind that has sets of its own or a whole identifier, else a look at all sets; every
  /// further step a look at the sets that it reaches.
  /// @throws InvalidFormat when there is no such set, and naming the choices when there are several; also for an index,
  ///         a condition or a path of a wrong form.
  MetadataSet& find(std::string_view text) const;
  /// The same; null when there is none.
  MetadataSet* tryFind(std::string_view text) const;
  /// All sets that the text chooses; "[*]" behind a step, for all of them, changes nothing.
  /// @throws InvalidFormat for an index, a condition or a path of a wrong form.
  FoundSets findAll(std::string_view text) const;
  /// The set that the text chooses, or with "[*]" at its end all of them, one at least. @throws as `find`.
  /// @param property  what the sets are wanted for: of sets of several kinds, only those count that can have it, so
  ///                  that "Component" chooses the only Timecode for "StartTimecode". Indexes count all of them all the
  ///                  same. Empty for none.
  FoundSets choose(std::string_view text, std::string_view property = {}) const;

  /// Adds a set at the end with every property of its definition, unset but for the InstanceUID, which is a new random
  /// one. A key that the dictionary does not know gives a set without definition and properties.
  MetadataSet* createMetadataSet(const KLV::Key& key);
  /// The same for a kind of sets, by its symbol in the register or its tag name.
  /// @throws InvalidFormat when the dictionary has no such set, or only an abstract one.
  MetadataSet& createMetadataSet(std::string_view name);
  MetadataSet* addMetadataSet(auto_ptr<MetadataSet> set);
  void addDarkMetadataSet(auto_ptr<DarkMetadataSet> set);

  /// Takes all sets and dark sets out, in file order, so that some of them can be put back, in any order. The primer
  /// stays.
  std::vector<Entry> releaseEntries();
  /// Takes a set out; references to it stay as they are. A loop over `sets()`, `entries()` or `findAll()` may remove
  /// any sets and find others on the way; n removals and one look at the lists take time in proportion to the sets.
  /// The object lives until `sets()`, `entries()` or `darkBegin()` is called again.
  /// @param set  of this partition.
  void remove(MetadataSet& set);
  void remove(DarkMetadataSet& set);

  /// Adds one KLV of the header metadata at the end. A known local set becomes a set; every property whose value does
  /// not decode, or would be written back as other bytes, is kept in it as unknown. An unknown local set becomes a
  /// `DarkParsedGroup`, anything else a `DarkMetadataSet`. Primer entries are added first (`partitionDictionary`).
  /// @param offset  where the value starts in the file, for messages.
  /// @return how many properties it has; 0 for a `DarkMetadataSet`.
  /// @throws ParseError naming the set and the offset when a known set's items do not fit it; nothing is added then.
  std::size_t addKLV(const KLV::Key& key, uint8 berOctets, const uint8* value, std::size_t size, uint64 offset);

  /// The sets in the order in which they are serialised: the Preface, then depth first along the strong references of
  /// each set in the order of its definition, then the sets that no such path reaches, each followed by its targets.
  /// @param order          receives the sets; emptied first.
  /// @param withUnreached  whether to list the sets that no path from the Preface reaches.
  /// @param followWeak     whether to follow weak references, too.
  /// @return the number of unreached sets at the end of `order`.
  uint32 calculateSerializationOrder(std::vector<const MetadataSet*>& order, bool withUnreached, bool followWeak) const;

 private:
  friend class MetadataSet;

  /// Sets with one key, in file order; removed ones until the next look-up.
  struct KeySets {
    Sets sets;
    bool hasRemoved = false;
  };

  /// This partition without the removed sets.
  const PartitionMetadata& compacted() const {
    if (hasRemoved_.load(std::memory_order_acquire)) compact();
    return *this;
  }
  void compact() const;
  static void dropRemoved(KeySets& sets);
  const MetaMetadata::MetaMetadataSet* definitionOf(const KLV::Key& key, const uint8* value, std::size_t size) const;
  std::size_t addKnownSet(const KLV::Key& key, const MetaMetadata::MetaMetadataSet& definition, uint8 berOctets,
                          const uint8* value, std::size_t size, uint64 offset);
  std::optional<std::size_t> addDarkParsedGroup(const KLV::Key& key, uint8 berOctets, const uint8* value,
                                                std::size_t size);
  void instanceUIDChanged(MetadataSet& set, const Types::UUID* before, const Types::UUID* after);

  PartitionDictionary dictionary_;
  // Removals are marked, and carried out together by the next look at the lists, so that many of them cost little.
  mutable std::mutex compacting_;
  mutable std::atomic<bool> hasRemoved_{false};
  mutable std::vector<Entry> entries_;
  mutable Sets sets_;
  mutable DarkSets darkSets_;
  mutable std::unordered_map<KLV::Key, KeySets, KLV::KeyHash> byKey_;
  std::unordered_map<Types::UUID, Sets> byInstanceUID_;
  std::size_t nextOrdinal_ = 0;
};

}  // namespace Vantor
