#pragma once

#include "Core/KLV/Key.h"

/// The keys that ST 377-1 gives to the parts of an MXF file. All tests here ignore the version, but for the keys of one
/// manufacturer, which have none.
namespace Vantor::KLV {

/// Octet 14 of a partition pack's key.
enum class PartitionKind : uint8 { kHeader = 0x02, kBody = 0x03, kFooter = 0x04 };

/// Octet 15 of a partition pack's key. `kGenericStream` is a body partition with a stream of other data (ST 410).
enum class PartitionStatus : uint8 {
  kOpenIncomplete = 0x01,
  kClosedIncomplete = 0x02,
  kOpenComplete = 0x03,
  kClosedComplete = 0x04,
  kGenericStream = 0x11
};

/// The coding octet of a local set with 2-byte tags (ST 336, ST 377-1): how its items give their lengths.
enum class LocalSetCoding : uint8 {
  kTwoByteLengths = 0x53,
  kBERLengths = 0x13,
};

/// The keys as they are written.
Key fillKey();
Key primerPackKey();
Key partitionPackKey(PartitionKind kind, PartitionStatus status);
Key randomIndexPackKey();

/// Whether the key is of a set of the structural metadata, 06.0E.2B.34.02.cc.01.vv.0D.01.01.01.01.01.xx.00, whatever
/// its coding cc.
bool isStructuralMetadataSet(const Key& key);
/// Whether the octets are those of a universal label, which begin 06.0E.2B.34 (ST 298).
bool isSmpteLabel(const Key& key);
/// Whether the key is of a SMPTE local set with 2-byte tags, in either coding.
bool isLocalSet(const Key& key);
/// Whether the octets are no label but a UUID with swapped halves, the key of a maker's own sets and properties: its
/// variant bits come first (ST 377-1). The coding of such a set is not in its key: local sets have 2-byte lengths.
bool isSwappedUUID(const Key& key);
/// Whether the items of a local set with this key have BER lengths.
bool hasBERLengths(const Key& key);
/// Whether the key is of a KLV fill item, with version 1 (as older files have it) or any later one.
bool isFill(const Key& key);
bool isPrimerPack(const Key& key);
bool isRandomIndexPack(const Key& key);
bool isIndexTableSegment(const Key& key);
/// Whether the key is of the KLV that lists the sets of OP-Atom files of one manufacturer with their offsets, or of the
/// one that has the offset of this list; see Core/MXF/ObjectDirectory.h.
bool isObjectDirectory(const Key& key);
bool isObjectDirectoryRoot(const Key& key);
/// Either of them.
bool isOfObjectDirectory(const Key& key);

/// Whether a KLV cannot be part of header metadata, which ends before it: partition packs, index table segments, the
/// random index pack, essence and generic stream data, and the zeros that may stand behind all KLVs.
bool endsHeaderMetadata(const Key& key);
/// Whether a KLV of header metadata may have the key and be a set: none that ends them, no primer pack and no fill.
bool canBeSet(const Key& key);

/// Whether the key is of a partition pack of one of the kinds and with one of the statuses above.
bool isPartitionPack(const Key& key);
bool isHeaderPartitionPack(const Key& key);
/// The kind and status of a partition pack's key.
/// @throws Exceptions::InvalidFormat naming the key when it is not one.
PartitionKind partitionKind(const Key& key);
PartitionStatus partitionStatus(const Key& key);
/// Whether the partition is closed; the numbers in the pack of an open one may still change. A generic stream partition
/// counts as closed.
bool isClosed(PartitionStatus status);

}  // namespace Vantor::KLV
