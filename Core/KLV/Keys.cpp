#include "Core/KLV/Keys.h"

#include <array>
#include <string>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"

namespace Vantor::KLV {

namespace {

/// ST 336: what octets 5 and 6 of a key say.
constexpr uint8 kGroup = 0x02;
constexpr uint8 kLocalSetWithTwoByteLengths = 0x53;
constexpr uint8 kLocalSetWithBERLengths = 0x13;
constexpr uint8 kFixedLengthPack = 0x05;

using Octets = std::array<uint8, Key::kSize>;

constexpr Octets kFill = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                          0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};
/// Partition packs, primer packs, index tables: octets 14 and 15 say which.
constexpr Octets kFileStructure = {0x06, 0x0E, 0x2B, 0x34, kGroup, kFixedLengthPack, 0x01, 0x01, 0x0D, 0x01, 0x02,
                                   0x01, 0x01, 0x00, 0x00, 0x00};
/// Octet 15 says which set.
constexpr Octets kStructuralSet = {0x06, 0x0E, 0x2B, 0x34, kGroup, kLocalSetWithTwoByteLengths,
                                   0x01, 0x01, 0x0D, 0x01, 0x01,   0x01,
                                   0x01, 0x01, 0x00, 0x00};

constexpr Key fileStructureKey(uint8 octet14, uint8 octet15) {
  Octets octets = kFileStructure;
  octets[14 - 1] = octet14;
  octets[15 - 1] = octet15;
  return Key(octets);
}

constexpr Key kPrimerPack = fileStructureKey(0x05, 0x01);
constexpr Key kIndexTableSegment = fileStructureKey(0x10, 0x01);
constexpr Key kRandomIndexPack = fileStructureKey(0x11, 0x01);

bool equalButVersion(const Key& left, const Key& right) {
  return left.octet(6) == right.octet(6) && left.matches(right);
}

bool isPartitionStatus(uint8 octet, PartitionKind kind) {
  if (octet == static_cast<uint8>(PartitionStatus::kGenericStream)) return kind == PartitionKind::kBody;
  return octet >= static_cast<uint8>(PartitionStatus::kOpenIncomplete) &&
         octet <= static_cast<uint8>(PartitionStatus::kClosedComplete);
}

void requirePartitionPack(const Key& key, int line) {
  if (isPartitionPack(key)) return;
  throw Exceptions::InvalidFormat(
      "expected the key of a partition pack, found " + Utils::wstringToString(key.toString()), "Core/KLV/Keys", line);
}

}  // namespace

Key fillKey() { return Key(kFill); }
Key primerPackKey() { return kPrimerPack; }
Key randomIndexPackKey() { return kRandomIndexPack; }
Key partitionPackKey(PartitionKind kind, PartitionStatus status) {
  return fileStructureKey(static_cast<uint8>(kind), static_cast<uint8>(status));
}

bool isStructuralMetadataSet(const Key& key) {
  Octets expected = kStructuralSet;
  expected[15 - 1] = key.octet(15);
  return key.matches(Key(expected));
}

bool isLocalSet(const Key& key) {
  const bool ofSmpteGroup = key.octet(1) == 0x06 && key.octet(2) == 0x0E && key.octet(3) == 0x2B &&
                            key.octet(4) == 0x34 && key.octet(5) == kGroup;
  return ofSmpteGroup && (key.octet(6) == kLocalSetWithTwoByteLengths || key.octet(6) == kLocalSetWithBERLengths);
}

bool isFill(const Key& key) { return equalButVersion(key, Key(kFill)); }
bool isPrimerPack(const Key& key) { return equalButVersion(key, kPrimerPack); }
bool isRandomIndexPack(const Key& key) { return equalButVersion(key, kRandomIndexPack); }
bool isIndexTableSegment(const Key& key) { return isLocalSet(key) && key.matches(kIndexTableSegment); }

bool isPartitionPack(const Key& key) {
  const uint8 kind = key.octet(14);
  if (kind < static_cast<uint8>(PartitionKind::kHeader) || kind > static_cast<uint8>(PartitionKind::kFooter))
    return false;
  return isPartitionStatus(key.octet(15), static_cast<PartitionKind>(kind)) &&
         equalButVersion(key, fileStructureKey(kind, key.octet(15)));
}

bool isHeaderPartitionPack(const Key& key) {
  return isPartitionPack(key) && partitionKind(key) == PartitionKind::kHeader;
}

PartitionKind partitionKind(const Key& key) {
  requirePartitionPack(key, __LINE__);
  return static_cast<PartitionKind>(key.octet(14));
}

PartitionStatus partitionStatus(const Key& key) {
  requirePartitionPack(key, __LINE__);
  return static_cast<PartitionStatus>(key.octet(15));
}

bool isClosed(PartitionStatus status) {
  return status != PartitionStatus::kOpenIncomplete && status != PartitionStatus::kOpenComplete;
}

bool isComplete(PartitionStatus status) {
  return status != PartitionStatus::kOpenIncomplete && status != PartitionStatus::kClosedIncomplete;
}

}  // namespace Vantor::KLV
