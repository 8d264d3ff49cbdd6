#pragma once

#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Platform/Types.h"
#include "Core/Types/LocalTag.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor {

/// What one partition calls things: the metadata dictionary, and the primer pack that maps local tags to labels.
class PartitionDictionary {
 public:
  explicit PartitionDictionary(SharedPtr<const MetaMetadata::Dictionary> dictionary);

  const SharedPtr<const MetaMetadata::Dictionary>& dictionary() const { return dictionary_; }

  /// The label that the primer gives for a tag. @throws NotFoundInPrimer naming the tag.
  const Types::UniversalLabel& find(const Types::LocalTag& tag) const;
  /// The same, or null.
  const Types::UniversalLabel* tryFind(uint16 tag) const;

  /// The tag that `findOrGenerate` would return without making one up; 0 when it would have to.
  uint16 tryFindTag(const Types::UniversalLabel& label, uint16 preferredTag = 0) const;

  /// The tag that the partition uses for a label (octet 8 ignored). A label that the primer does not have gets the
  /// preferred tag while that is free, else the highest free dynamic tag (0xFFFF downwards), and is entered into the
  /// primer.
  /// @param preferredTag  such as the static tag of the property's definition; 0 for none.
  /// @throws InvalidLength when all 32,768 dynamic tags are taken.
  Types::LocalTag findOrGenerate(const Types::UniversalLabel& label, uint16 preferredTag = 0);

  /// A dynamic tag that the primer does not list and no property with a label gets, for a property of which not even a
  /// label is known.
  /// @param index  which of these tags; so many are made as are asked for, up to 256. The last that was made serves for
  /// all others, as it does when the dynamic tags are all taken.
  /// @throws InvalidLength when not even one can be made.
  Types::LocalTag unlistedTag(std::size_t index);
  /// Keeps a dynamic tag that the primer does not list from being given to another property. Other tags have their
  /// meaning from the dictionary and are not reserved.
  void reserve(const Types::LocalTag& tag);

  /// Appends an entry of a primer pack as it was read. A tag or label that is already mapped keeps its first mapping;
  /// the entry is kept all the same, for writing.
  void addPrimerEntry(const KLV::PrimerEntry& entry);
  /// The key of the primer pack and the octets of its length field: as read, else those of ST 377-1 and 4.
  const KLV::Key& primerKey() const { return primerKey_; }
  uint8 primerLengthOctets() const { return primerLengthOctets_; }
  void setPrimerCoding(const KLV::Key& key, uint8 lengthOctets) {
    primerKey_ = key;
    primerLengthOctets_ = lengthOctets;
  }
  /// The primer's entries: as read, then the generated ones.
  const Templates::vector<KLV::PrimerEntry>& primerEntries() const { return entries_; }

 private:
  bool isFree(uint16 tag) const { return labels_.count(tag) == 0 && reserved_.count(tag) == 0; }
  /// Goes down to the next free one.
  bool hasFreeDynamicTag();
  uint16 freeTag(uint16 preferredTag);

  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  KLV::Key primerKey_ = KLV::primerPackKey();
  uint8 primerLengthOctets_ = 4;
  Templates::vector<KLV::PrimerEntry> entries_;
  std::unordered_map<uint16, Types::UniversalLabel> labels_;
  std::unordered_map<KLV::Key, uint16, KLV::KeyHash> tags_;  // by label without its version octet
  std::vector<uint16> unlisted_;                             // tags of `unlistedTag`
  std::unordered_set<uint16> reserved_;                      // dynamic tags of properties without label
  uint32 nextDynamicTag_ = 0xFFFF;
};

}  // namespace Vantor
