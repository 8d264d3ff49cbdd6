#include "Registers/Identifications.h"

#include <algorithm>
#include <array>

#include "Core/KLV/Keys.h"

namespace Vantor::Registers {

namespace {

KLV::Key swapped(const KLV::Key& key) {
  std::array<uint8, KLV::Key::kSize> octets{};
  std::copy_n(key.rawBuffer(), octets.size(), octets.begin());
  std::rotate(octets.begin(), octets.begin() + octets.size() / 2, octets.end());
  return KLV::Key(octets);
}

}  // namespace

Identifications::Identifications(const PartitionMetadata& metadata) {
  for (const auto& entry : metadata.partitionDictionary().primerEntries()) listed_.insert(entry.label);
}

std::optional<KLV::Key> Identifications::keyOf(const KLV::Key& identification) const {
  const auto other = swapped(identification);
  if (KLV::isSmpteLabel(identification)) return identification;
  if (KLV::isSmpteLabel(other)) return other;
  const bool isUUID = KLV::isSwappedUUID(identification), isOtherUUID = KLV::isSwappedUUID(other);
  if (!isUUID && !isOtherUUID) return std::nullopt;
  if (isUUID != isOtherUUID) return isUUID ? identification : other;
  return listed_.count(identification) == 0 && listed_.count(other) != 0 ? other : identification;
}

}  // namespace Vantor::Registers
