#include "Core/MXF/HeaderMetadataKeys.h"

#include <algorithm>
#include <initializer_list>

#include "Core/KLV/Keys.h"

namespace Vantor::MXF {

namespace {

/// Whether octets stand in a key from the n-th on.
bool has(const KLV::Key& key, std::size_t n, std::initializer_list<uint8> octets) {
  return std::equal(octets.begin(), octets.end(), key.rawBuffer() + n - 1);
}

/// Partition packs, index table segments, the random index pack (ST 377-1), also with octets that no standard lists.
bool isStructure(const KLV::Key& key) {
  return has(key, 5, {0x02}) && has(key, 9, {0x0d, 0x01, 0x02, 0x01}) && !KLV::isPrimerPack(key);
}

/// Items of generic containers (ST 379-2), and essence elements of any organisation: octets 5 and 6 name their
/// register.
bool isEssence(const KLV::Key& key) { return has(key, 5, {0x01, 0x02}) || has(key, 9, {0x0d, 0x01, 0x03, 0x01}); }

bool isGenericStreamData(const KLV::Key& key) { return has(key, 5, {0x01}) && has(key, 9, {0x0d, 0x01, 0x05}); }

}  // namespace

bool endsHeaderMetadata(const KLV::Key& key) {
  if (!has(key, 1, {0x06, 0x0e, 0x2b, 0x34})) return key == KLV::Key();
  return isStructure(key) || isEssence(key) || isGenericStreamData(key);
}

bool isHeaderMetadataFraming(const KLV::Key& key) { return KLV::isPrimerPack(key) || KLV::isFill(key); }

}  // namespace Vantor::MXF
