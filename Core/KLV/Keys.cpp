#include "Core/KLV/Keys.h"

#include <algorithm>
#include <initializer_list>

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

constexpr Key kObjectDirectory({0x96, 0x13, 0xB3, 0x8A, 0x87, 0x34, 0x87, 0x46, 0xF1, 0x02, 0x96, 0xF0, 0x56, 0xE0,
                                0x4D, 0x2A});
constexpr Key kObjectDirectoryRoot({0x80, 0x53, 0x08, 0x00, 0x36, 0x21, 0x08, 0x04, 0xB3, 0xB3, 0x98, 0xA5, 0x1C, 0x90,
                                    0x11, 0xD4});

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

/// Whether octets stand in a key from the n-th on.
bool has(const Key& key, std::size_t n, std::initializer_list<uint8> octets) {
  return std::equal(octets.begin(), octets.end(), key.rawBuffer() + n - 1);
}

/// Partition packs, index table segments, the random index pack (ST 377-1), also with octets that no standard lists.
bool isStructure(const Key& key) {
  return has(key, 5, {kGroup}) && has(key, 9, {0x0D, 0x01, 0x02, 0x01}) && !isPrimerPack(key);
}

/// Items of generic containers (ST 379-2), and essence elements of any organisation: octets 5 and 6 name their
/// register.
bool isEssence(const Key& key) { return has(key, 5, {0x01, 0x02}) || has(key, 9, {0x0D, 0x01, 0x03, 0x01}); }

bool isGenericStreamData(const Key& key) { return has(key, 5, {0x01}) && has(key, 9, {0x0D, 0x01, 0x05}); }

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

bool isSmpteLabel(const Key& key) { return has(key, 1, {0x06, 0x0E, 0x2B, 0x34}); }

bool isLocalSet(const Key& key) {
  const uint8 coding = key.octet(Key::kCodingOctet);
  return isSmpteLabel(key) && key.octet(5) == kGroup && (coding == kTwoByteLengths || coding == kBERLengths);
}

bool isSwappedUUID(const Key& key) { return key.octet(1) >= 0x80; }

bool hasBERLengths(const Key& key) { return !isSwappedUUID(key) && key.octet(Key::kCodingOctet) == kBERLengths; }

bool isFill(const Key& key) { return equalButVersion(key, kFill); }
bool isPrimerPack(const Key& key) { return equalButVersion(key, kPrimerPack); }
bool isRandomIndexPack(const Key& key) { return equalButVersion(key, kRandomIndexPack); }
bool isIndexTableSegment(const Key& key) { return isLocalSet(key) && key.matches(kIndexTableSegment); }

bool isObjectDirectory(const Key& key) { return key == kObjectDirectory; }
bool isObjectDirectoryRoot(const Key& key) { return key == kObjectDirectoryRoot; }
bool isOfObjectDirectory(const Key& key) { return isObjectDirectory(key) || isObjectDirectoryRoot(key); }

bool endsHeaderMetadata(const Key& key) {
  if (!isSmpteLabel(key)) return key == Key();
  return isStructure(key) || isEssence(key) || isGenericStreamData(key);
}

bool canBeSet(const Key& key) { return !endsHeaderMetadata(key) && !isPrimerPack(key) && !isFill(key); }

bool isPartitionPack(const Key& key) {
  const auto kind = static_cast<PartitionKind>(key.octet(14));
  return kind >= PartitionKind::kHeader && kind <= PartitionKind::kFooter && isPartitionStatus(key.octet(15), kind) &&
         equalButVersion(key, fileStructureKey(key.octet(14), key.octet(15)));
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

}  // namespace Vantor::KLV
