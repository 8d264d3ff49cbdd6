#include "Core/KLV/Keys.h"

#include <array>

#include "Core/Platform/Raise.h"

namespace Vantor::KLV {

namespace {

/// ST 336: octet 5 of the keys of groups, and the coding octet of packs.
constexpr uint8 kGroup = 0x02;
constexpr uint8 kFixedLengthPack = 0x05;
constexpr auto kTwoByteLengths = static_cast<uint8>(LocalSetCoding::kTwoByteLengths);
constexpr auto kBERLengths = static_cast<uint8>(LocalSetCoding::kBERLengths);

constexpr Key kFill({0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02, 0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00});
/// Partition packs, primer packs, index tables: by octets 14 and 15.
constexpr Key kFileStructure({0x06, 0x0E, 0x2B, 0x34, kGroup, kFixedLengthPack, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01,
                              0x01, 0x00, 0x00, 0x00});
/// The set by octet 15.
constexpr Key kStructuralSet({0x06, 0x0E, 0x2B, 0x34, kGroup, kTwoByteLengths, 0x01, 0x01, 0x0D, 0x01, 0x01, 0x01, 0x01,
                              0x01, 0x00, 0x00});

constexpr Key fileStructureKey(uint8 octet14, uint8 octet15) {
  return kFileStructure.withOctet(14, octet14).withOctet(15, octet15);
}

constexpr Key kPrimerPack = fileStructureKey(0x05, 0x01);
constexpr Key kIndexTableSegment = fileStructureKey(0x10, 0x01);
constexpr Key kRandomIndexPack = fileStructureKey(0x11, 0x01);

bool equalButVersion(const Key& left, const Key& right) {
  return left.octet(Key::kCodingOctet) == right.octet(Key::kCodingOctet) && left.matches(right);
}

bool isPartitionStatus(uint8 octet, PartitionKind kind) {
  if (octet == static_cast<uint8>(PartitionStatus::kGenericStream)) return kind == PartitionKind::kBody;
  return octet >= static_cast<uint8>(PartitionStatus::kOpenIncomplete) &&
         octet <= static_cast<uint8>(PartitionStatus::kClosedComplete);
}

void requirePartitionPack(const Key& key) {
  if (isPartitionPack(key)) return;
  Exceptions::raise<Exceptions::InvalidFormat>("expected the key of a partition pack, found {}", key.toString());
}

}  // namespace

Key fillKey() { return kFill; }
Key primerPackKey() { return kPrimerPack; }
Key randomIndexPackKey() { return kRandomIndexPack; }
Key partitionPackKey(PartitionKind kind, PartitionStatus status) {
  return fileStructureKey(static_cast<uint8>(kind), static_cast<uint8>(status));
}

bool isStructuralMetadataSet(const Key& key) { return key.matches(kStructuralSet.withOctet(15, key.octet(15))); }

bool isLocalSet(const Key& key) {
  const bool ofSmpteGroup = key.octet(1) == 0x06 && key.octet(2) == 0x0E && key.octet(3) == 0x2B &&
                            key.octet(4) == 0x34 && key.octet(5) == kGroup;
  const uint8 coding = key.octet(Key::kCodingOctet);
  return ofSmpteGroup && (coding == kTwoByteLengths || coding == kBERLengths);
}

bool hasBERLengths(const Key& key) { return key.octet(Key::kCodingOctet) == kBERLengths; }

bool isFill(const Key& key) { return equalButVersion(key, kFill); }
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
  requirePartitionPack(key);
  return static_cast<PartitionKind>(key.octet(14));
}

PartitionStatus partitionStatus(const Key& key) {
  requirePartitionPack(key);
  return static_cast<PartitionStatus>(key.octet(15));
}

bool isClosed(PartitionStatus status) {
  return status != PartitionStatus::kOpenIncomplete && status != PartitionStatus::kOpenComplete;
}

bool isComplete(PartitionStatus status) {
  return status != PartitionStatus::kOpenIncomplete && status != PartitionStatus::kClosedIncomplete;
}

}  // namespace Vantor::KLV
