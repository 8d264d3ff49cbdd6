#include "Core/MetaMetadata/HashIndex.h"

#include <utility>

namespace Vantor::MetaMetadata {

void HashIndex::reserve(std::size_t places) {
  std::size_t slots = 4;
  while (slots < 2 * places) slots *= 2;
  if (slots > slots_.size()) rehash(slots);
}

void HashIndex::insert(uint32 hash, uint32 place) {
  if (2 * (used_ + 1) > slots_.size()) reserve(used_ + 1);
  std::size_t at = hash & mask();
  while (slots_[at].place != kNotFound) at = (at + 1) & mask();
  slots_[at] = {hash, place};
  ++used_;
}

void HashIndex::rehash(std::size_t slots) {
  const auto old = std::exchange(slots_, Templates::vector<Slot>(slots));
  used_ = 0;
  if (old.empty()) return;
  // Starting behind an empty slot keeps places with one hash in the order in which they were entered.
  std::size_t start = 0;
  while (old[start].place != kNotFound) ++start;
  for (std::size_t i = 1; i <= old.size(); ++i) {
    const auto& slot = old[(start + i) % old.size()];
    if (slot.place != kNotFound) insert(slot.hash, slot.place);
  }
}

}  // namespace Vantor::MetaMetadata
