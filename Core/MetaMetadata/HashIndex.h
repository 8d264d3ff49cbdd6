#pragma once

#include <cstddef>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::MetaMetadata {

/// Finds places in a list by hash, in one allocation. It holds no keys: the caller compares the candidates.
/// Open addressing, at most half full. Any thread may find while none inserts.
class HashIndex {
 public:
  static constexpr uint32 kNotFound = 0xFFFFFFFF;

  HashIndex() = default;

  /// Reserves room for this many places; more are possible.
  void reserve(std::size_t places);

  /// The first entered of the places with this hash for which `matches(place)` holds, or `kNotFound`.
  template <class Matches>
  uint32 find(uint32 hash, Matches&& matches) const {
    if (slots_.empty()) return kNotFound;
    for (std::size_t at = hash & mask(); slots_[at].place != kNotFound; at = (at + 1) & mask()) {
      if (slots_[at].hash == hash && matches(slots_[at].place)) return slots_[at].place;
    }
    return kNotFound;
  }

  /// Enters a place; several may have one hash.
  void insert(uint32 hash, uint32 place);

 private:
  struct Slot {
    uint32 hash = 0;
    uint32 place = kNotFound;
  };
  std::size_t mask() const { return slots_.size() - 1; }
  void rehash(std::size_t slots);

  Templates::vector<Slot> slots_;
  std::size_t used_ = 0;
};

}  // namespace Vantor::MetaMetadata
