#include "Core/MXF/KLVSearch.h"

#include <algorithm>
#include <array>

#include "Core/DataIO/BigEndian.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/UUID.h"

namespace Vantor::MXF {

namespace {

using Exceptions::ParseError;

constexpr uint64 kSearchPiece = uint64{1} << 16;
constexpr std::array<uint8, 4> kLabelStart = {0x06, 0x0e, 0x2b, 0x34};
constexpr uint64 kPrimerHeaderSize = 8;

/// Items of sets that turn out to be none: so many for nothing, and one for so many bytes searched. Sets have far fewer
/// than that; without an end to it, keys a few bytes apart could lead through the same items again and again.
constexpr uint64 kFreeItems = 100'000;
constexpr uint64 kBytesPerItem = 16;

/// Whether a key ends header metadata. Stricter than `KLV::endsHeaderMetadata`, which labels in values may meet.
bool endsSearch(const KLV::Key& key) {
  if (!KLV::isSmpteLabel(key)) return false;
  if (KLV::isPartitionPack(key) || KLV::isIndexTableSegment(key) || KLV::isRandomIndexPack(key)) return true;
  const bool isElement = key.octet(5) == 0x01 && key.octet(6) == 0x02;  // ST 336: essence items
  const bool isGroup = key.octet(5) == 0x02;                            // as system items are
  return isElement || (isGroup && KLV::endsHeaderMetadata(key));
}

bool isSetKey(const KLV::Key& key) { return KLV::isLocalSet(key) && !KLV::endsHeaderMetadata(key); }

}  // namespace

std::optional<KLV::Key> KLVSearch::keyAt(uint64 offset) {
  std::array<uint8, KLV::Key::kSize> octets{};
  if (!goTo_(offset) || source_.readUpTo(octets.data(), octets.size()) != octets.size()) return std::nullopt;
  return KLV::Key(octets);
}

std::optional<KLVHeader> KLVSearch::headerAt(uint64 offset) {
  const auto key = keyAt(offset);
  if (!key) return std::nullopt;
  try {
    return readKLVHeader(source_, *key);
  } catch (const ParseError&) {
    return std::nullopt;
  }
}

uint64 KLVSearch::presentOctets(const KLVHeader& klv) {
  const uint64 length = klv.length.value;
  goTo_(klv.valueOffset);
  const uint64 left = source_.remaining();
  if (left != DataIO::kUnknownSize || length > limits_.valueSize) return std::min(length, left);
  return goTo_(klv.valueOffset + length) ? length : source_.position() - klv.valueOffset;
}

bool KLVSearch::isWhole(const KLVHeader& klv) {
  return klv.length.value <= limits_.valueSize && presentOctets(klv) == klv.length.value;
}

bool KLVSearch::isKnownSet(const KLV::Key& key) const { return dictionary_.findSet(key) != nullptr; }

uint64 KLVSearch::find(uint64 from, uint64 end) {
  const uint64 searchEnd = std::min(end, from + kMostSearched);
  constexpr std::size_t kOverlap = kLabelStart.size() - 1;
  for (uint64 at = from; at < searchEnd;) {
    Bytes piece(static_cast<std::size_t>(std::min(kSearchPiece, searchEnd - at) + kOverlap));
    if (!goTo_(at)) return source_.position();
    const std::size_t found = source_.readUpTo(piece.data(), piece.size());
    const bool isLast = found < piece.size();
    piece.resize(found);
    searched_ += found;
    auto label = piece.begin();
    while ((label = std::search(label, piece.end(), kLabelStart.begin(), kLabelStart.end())) != piece.end()) {
      const uint64 offset = at + static_cast<uint64>(label - piece.begin());
      if (isStart(offset)) return offset;
      ++label;
    }
    if (isLast) return std::min(searchEnd, at + found);
    at += piece.size() - kOverlap;
  }
  return searchEnd;
}

bool KLVSearch::isStart(uint64 offset) {
  const auto klv = headerAt(offset);
  if (!klv) return false;
  if (endsSearch(klv->key)) return true;
  if (KLV::isFill(klv->key)) return isWhole(*klv);
  if (KLV::isPrimerPack(klv->key)) {
    const uint64 length = klv->length.value;
    return isWhole(*klv) && length >= kPrimerHeaderSize && (length - kPrimerHeaderSize) % KLV::kPrimerEntrySize == 0;
  }
  if (!isSetKey(klv->key)) return false;
  // Values have keys of sets, too, such as those of class definitions. A damaged set that the dictionary knows is
  // named.
  if (beginsWithInstanceUID(*klv) && isKnownSet(klv->key)) return true;
  return isWhole(*klv) && hasWholeItems(*klv, Demand::kInstanceUID);
}

bool KLVSearch::canFollow(uint64 offset, uint64 end) {
  if (offset == end) return true;
  std::array<uint8, KLV::Key::kSize> octets{};
  if (!goTo_(offset)) return false;
  const std::size_t found = source_.readUpTo(octets.data(), octets.size());
  const auto common = static_cast<std::ptrdiff_t>(std::min(found, kLabelStart.size()));
  const bool isLabel = std::equal(octets.begin(), octets.begin() + common, kLabelStart.begin());
  if (found < octets.size()) return isLabel;  // the file ends there, perhaps within a key
  const KLV::Key key(octets);
  return KLV::isLocalSet(key) || KLV::isFill(key) || KLV::isPrimerPack(key) || KLV::isOfObjectDirectory(key) ||
         endsSearch(key) || isKnownSet(key);
}

bool KLVSearch::isCredible(uint64 offset, uint64 end) {
  const auto klv = headerAt(offset);
  if (!klv) return false;
  if (KLV::isFill(klv->key)) return true;
  if (!isWhole(*klv)) return false;
  if (KLV::isPrimerPack(klv->key)) return true;  // to read it shows
  if (isSetKey(klv->key) && hasWholeItems(*klv)) return true;
  const bool isOtherKLV = !KLV::isLocalSet(klv->key) || !isKnownSet(klv->key);
  return isOtherKLV && canFollow(klv->valueOffset + klv->length.value, end);
}

/// Whatever its length.
bool KLVSearch::beginsWithInstanceUID(const KLVHeader& klv) {
  std::array<uint8, sizeof(uint16)> tag{};
  goTo_(klv.valueOffset);
  source_.readUpTo(tag.data(), tag.size());
  return DataIO::readBigEndian<uint16>(tag.data()) == MetaMetadata::MetaMetadataSet::kInstanceUIDTag;
}

bool KLVSearch::hasWholeItems(const KLVHeader& klv, Demand demand) {
  const uint64 most = kFreeItems + searched_ / kBytesPerItem;
  const uint64 end = klv.valueOffset + klv.length.value;
  bool isIdentified = demand == Demand::kItems;
  uint64 offset = klv.valueOffset;
  for (uint64 items = 0; offset != end; ++items) {
    const auto item = failedItems_ + items < most ? itemAt(klv, offset, end) : std::nullopt;
    if (!item) {
      failedItems_ += items + 1;
      return false;
    }
    isIdentified = isIdentified || isInstanceUID(*item);
    offset = item->end;
  }
  return isIdentified;
}

/// None when the item at the offset is not whole.
std::optional<KLVSearch::Item> KLVSearch::itemAt(const KLVHeader& klv, uint64 offset, uint64 end) {
  goTo_(offset);
  try {
    Item item;
    item.tag = DataIO::readBigEndian<uint16>(source_);
    item.size =
        KLV::hasBERLengths(klv.key) ? KLV::readBERLength(source_).value : DataIO::readBigEndian<uint16>(source_);
    const uint64 value = source_.position();
    if (value > end || item.size > end - value) return std::nullopt;
    item.end = value + item.size;
    return item;
  } catch (const ParseError&) {
    return std::nullopt;  // the source ends within it
  }
}

bool KLVSearch::isInstanceUID(const Item& item) {
  return item.tag == MetaMetadata::MetaMetadataSet::kInstanceUIDTag && item.size == Types::UUID::kSize;
}

}  // namespace Vantor::MXF
