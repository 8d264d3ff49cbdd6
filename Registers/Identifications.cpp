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

/// How many identifications have the order of keys, and how many the other one.
struct Orders {
  void count(bool isKey, bool isOther) {
    if (isKey != isOther) ++(isKey ? asKeys : swapped);
  }
  /// Whether most are swapped; none for a draw.
  std::optional<bool> majority() const { return asKeys == swapped ? std::nullopt : std::optional(asKeys < swapped); }

  std::size_t asKeys = 0, swapped = 0;
};

void count(const FileDefinition& definition, Orders& labels, Orders& uuids) {
  if (!definition.identification) return;
  const auto& one = *definition.identification;
  const auto other = swapped(one);
  const bool isLabel = KLV::isSmpteLabel(one), isOtherLabel = KLV::isSmpteLabel(other);
  if (isLabel || isOtherLabel) return labels.count(isLabel, isOtherLabel);
  uuids.count(KLV::isSwappedUUID(one), KLV::isSwappedUUID(other));
}

}  // namespace

Identifications::Identifications(const MetaDictionary& file, const PartitionMetadata& metadata) {
  Orders labels, uuids;
  for (const auto& one : file.classes) count(one, labels, uuids);
  for (const auto& one : file.properties) count(one, labels, uuids);
  for (const auto& one : file.types) count(one, labels, uuids);
  areSwapped_ = uuids.majority() ? uuids.majority() : labels.majority();
  for (const auto& entry : metadata.partitionDictionary().primerEntries()) listed_.insert(entry.label);
}

std::optional<KLV::Key> Identifications::keyOf(const KLV::Key& identification) const {
  const auto other = swapped(identification);
  if (KLV::isSmpteLabel(identification)) return identification;
  if (KLV::isSmpteLabel(other)) return other;
  const bool isUUID = KLV::isSwappedUUID(identification), isOtherUUID = KLV::isSwappedUUID(other);
  if (!isUUID && !isOtherUUID) return std::nullopt;
  if (isUUID != isOtherUUID) return isUUID ? identification : other;
  const bool isListed = listed_.count(identification) == 0 && listed_.count(other) != 0;
  return areSwapped_.value_or(isListed) ? other : identification;
}

}  // namespace Vantor::Registers
