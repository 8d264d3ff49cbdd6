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

/// The names that one partition uses: its metadata dictionary, and its primer pack, which maps local tags to labels.
class PartitionDictionary {
 public:
  explicit PartitionDictionary(SharedPtr<const MetaMetadata::Dictionary> dictionary);

  const SharedPtr<const MetaMetadata::Dictionary>& dictionary() const { return dictionary_; }

  /// The label that the primer gives for a tag. @throws NotFoundInPrimer naming the tag.
  const Types::UniversalLabel& find(const Types::LocalTag& tag) const;
  /// The same, or null.
  const Types::UniversalLabel* tryFind(uint16 tag) const;

  /// The tag that `findOrGenerate` would return; 0 when it would generate one.
  uint16 tryFindTag(const Types::UniversalLabel& label, uint16 preferredTag = 0) const;

  /// The tag that the partition uses for a label (octet 8 ignored). A label that the primer does not have gets the
  /// preferred tag while that is free, else the highest free dynamic tag (0xFFFF downwards), and is entered into the
  /// primer.
  /// @param preferredTag  such as the static tag of the property's definition; 0 for none.
  /// @throws InvalidLength when all 32,768 dynamic tags are taken.
  Types::LocalTag findOrGenerate(const Types::UniversalLabel& label, uint16 preferredTag = 0);

  /// A dynamic tag that the primer does not list, reserved for a property whose label is not known.
  /// @param index  the index of the tag. At most 256 are reserved, and fewer when the dynamic tags run out; larger
  /// indexes share the last one.
  /// @throws InvalidLength when no dynamic tag is free.
  Types::LocalTag unlistedTag(std::size_t index);
  /// Reserves a dynamic tag that the primer does not list, so that no other property gets it. Ignores other tags, which
  /// have a meaning already.
  void reserve(const Types::LocalTag& tag);

  /// What a local tag of a set means: the property that the primer gives for it, or else the one that has it as static
  /// tag; null when the set does not list that property.
  const MetaMetadata::MetaAttribute* findAttribute(const MetaMetadata::MetaMetadataSet& set, uint16 tag) const;
  /// The same for the properties of all sets; null when the dictionary does not have it.
  const MetaMetadata::MetaElement* findElement(uint16 tag) const;

  /// Appends an entry of a primer pack as it was read. A tag or label that is already mapped keeps its first mapping;
  /// the entry is still written.
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
  /// Moves on to the next free dynamic tag, downwards.
  bool hasFreeDynamicTag();
  uint16 freeTag(uint16 preferredTag);

  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  KLV::Key primerKey_ = KLV::primerPackKey();
  uint8 primerLengthOctets_ = 4;
  Templates::vector<KLV::PrimerEntry> entries_;
  std::unordered_map<uint16, Types::UniversalLabel> labels_;
  std::unordered_map<KLV::Key, uint16, KLV::KeyHash> tags_;  // by what counts of the label
  std::vector<uint16> unlisted_;                             // tags of `unlistedTag`
  std::unordered_set<uint16> reserved_;                      // dynamic tags of properties without label
  uint32 nextDynamicTag_ = 0xFFFF;
};

/// Reserves the dynamic local tags used in a dark set, so that no property gets one of them: only the primer gives them
/// a meaning. Ignores octets that are not a local set, whatever their key.
void reserveDarkTags(const KLV::Key& key, const uint8* octets, std::size_t size, PartitionDictionary& tags);

}  // namespace Vantor
