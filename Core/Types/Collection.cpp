#include "Core/Types/Collection.h"

#include <algorithm>
#include <utility>

#include "Core/KLV/CollectionHeader.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"

namespace Vantor::Types {

namespace {

using Exceptions::InvalidLength;
using Exceptions::raise;
using Items = Templates::vector<auto_ptr<SimpleDataType>>;

constexpr std::size_t kHeaderSize = KLV::CollectionHeader::kSize;

Items cloneAll(const Items& items) {
  Items clones;
  clones.reserve(items.size());
  for (const auto& item : items) clones.push_back(item->clone());
  return clones;
}

void requireIndex(uint32 index, std::size_t items) {
  if (index < items) return;
  raise<InvalidLength>("A collection of {} items has none at index {}", items, index);
}

void requireItemSize(uint32 size, uint32 itemSize) {
  if (size == itemSize) return;
  raise<InvalidLength>("An item of {} octets does not fit a collection of items of {} octets", size, itemSize);
}

/// Doubles the room when it is too small, so that adding items one by one stays linear.
void makeRoom(Bytes& octets, std::size_t size) {
  if (octets.capacity() < size) octets.reserve(std::max(size, 2 * octets.capacity()));
}

}  // namespace

Collection::Collection(int itemSize) : itemSize_(static_cast<uint32>(itemSize)), octets_(kHeaderSize) {
  if (itemSize < 0) raise<InvalidLength>("An item cannot have {} octets", itemSize);
  writeHeader();
}

Collection::Collection(const Collection& other)
    : SimpleDataType(other), items_(cloneAll(other.items_)), itemSize_(other.itemSize_), octets_(other.octets_) {}

Collection& Collection::operator=(const Collection& other) {
  Items items = cloneAll(other.items_);
  octets_ = other.octets_;
  items_.swap(items);
  itemSize_ = other.itemSize_;
  return *this;
}

const SimpleDataType& Collection::at(uint32 index) const {
  requireIndex(index, items_.size());
  return *items_[index];
}

void Collection::append(auto_ptr<SimpleDataType> item) {
  if (item == nullptr) return;
  const uint32 size = item->encodedSize();
  const uint32 itemSize = itemSize_ == 0 && items_.empty() ? size : itemSize_;
  if (size != 0) requireItemSize(size, itemSize);
  requireEncodable(uint64{octets_.size()} + itemSize);
  const std::size_t grown = octets_.size() + itemSize;
  makeRoom(octets_, grown);
  items_.push_back(std::move(item));
  octets_.insert(octets_.end(), items_.back()->rawBuffer(), items_.back()->rawBuffer() + size);
  octets_.resize(grown);
  itemSize_ = itemSize;
  writeHeader();
}

void Collection::removeAt(uint32 index) {
  requireIndex(index, items_.size());
  items_.erase(items_.begin() + index);
  const auto octets = octets_.begin() + static_cast<std::ptrdiff_t>(kHeaderSize + std::size_t{index} * itemSize_);
  octets_.erase(octets, octets + itemSize_);
  writeHeader();
}

bool Collection::hasSameValue(const SimpleDataType& other) const {
  const auto& collection = static_cast<const Collection&>(other);
  return itemSize_ == collection.itemSize_ &&
         std::equal(items_.begin(), items_.end(), collection.items_.begin(), collection.items_.end(),
                    [](const auto& left, const auto& right) { return left->equals(*right); });
}

bool Collection::readFrom(Identifiers::Identifier itemType, const uint8* bytes, std::size_t size) {
  if (size < kHeaderSize) return false;
  const auto header = KLV::CollectionHeader::parse(bytes);
  itemSize_ = header.itemSize;
  if (header.size() != size - kHeaderSize || (header.count != 0 && itemSize_ == 0)) return false;
  items_.reserve(header.count);
  for (const uint8* item = bytes + kHeaderSize; item != bytes + size; item += itemSize_) {
    items_.push_back(Factories::fromBytes(itemType, item, itemSize_));
    if (items_.back() == nullptr) return false;
  }
  octets_.assign(bytes, bytes + size);
  return true;
}

void Collection::writeHeader() { KLV::CollectionHeader{size(), itemSize_}.render(octets_.data()); }

}  // namespace Vantor::Types
