#pragma once

#include <functional>
#include <optional>

#include "Core/DataIO/DataSource.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Platform/Limits.h"

namespace Vantor::MXF {

/// Moves a source to an offset, back or on; to its end when the offset lies behind that. @return whether it does not.
using GoTo = std::function<bool(uint64 offset)>;

/// Looks for KLVs of header metadata among damaged bytes, for HeaderMetadataSalvage.cpp. Every function moves the
/// source, and reads no values. Takes time in proportion to the bytes that are searched.
class KLVSearch {
 public:
  /// How many bytes are searched at a time.
  static constexpr uint64 kMostSearched = uint64{1} << 26;

  /// All arguments outlive this.
  KLVSearch(DataIO::DataSource& source, const GoTo& goTo, const MetaMetadata::Dictionary& dictionary,
            const Limits& limits)
      : source_(source), goTo_(goTo), dictionary_(dictionary), limits_(limits) {}

  /// The key at an offset; none when fewer octets are left.
  std::optional<KLV::Key> keyAt(uint64 offset);
  /// Key and length at an offset; none when they are cut off, or the length is no BER length.
  std::optional<KLVHeader> headerAt(uint64 offset);
  /// How many octets the value has in the source. One of unknown size is not asked beyond `Limits::valueSize`.
  uint64 presentOctets(const KLVHeader& klv);

  /// Where the next KLV of header metadata begins, or the key that ends them: in `from` or behind it.
  /// @param end  of the search.
  /// @return `end` when there is none, or the end of the source, or where the search is given up.
  uint64 find(uint64 from, uint64 end);
  /// Whether a KLV that can be of header metadata begins at an offset.
  bool isStart(uint64 offset);
  /// Whether what stands at an offset can follow a KLV of header metadata.
  /// @param end  of the metadata.
  bool canFollow(uint64 offset, uint64 end);
  /// Whether the KLV at an offset is to be read, as far as its key, its length and what follows it show.
  bool isCredible(uint64 offset, uint64 end);

 private:
  bool isWhole(const KLVHeader& klv);
  bool isKnownSet(const KLV::Key& key) const;
  /// What a value needs to count as that of a set.
  enum class Demand {
    kItems,       ///< whole items, or nothing
    kInstanceUID  ///< an InstanceUID among them
  };
  bool hasWholeItems(const KLVHeader& klv, Demand demand = Demand::kItems);
  bool beginsWithInstanceUID(const KLVHeader& klv);

  /// An item of a local set.
  struct Item {
    uint16 tag = 0;
    uint64 size = 0;  ///< of its value
    uint64 end = 0;   ///< offset behind its value
  };
  std::optional<Item> itemAt(const KLVHeader& klv, uint64 offset, uint64 end);
  static bool isInstanceUID(const Item& item);

  DataIO::DataSource& source_;
  const GoTo& goTo_;
  const MetaMetadata::Dictionary& dictionary_;
  const Limits& limits_;
  uint64 searched_ = 0;
  uint64 failedItems_ = 0;  // of sets that have turned out to be none
};

}  // namespace Vantor::MXF
