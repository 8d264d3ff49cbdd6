#include "Core/DataIO/Memory.h"

#include <cstring>
#include <utility>

namespace Vantor::DataIO::Memory {

MemoryDataSource::MemoryDataSource(const uint8* bytes, std::size_t size, bool copy, uint64 origin)
    : bytes_(bytes), size_(size), origin_(origin) {
  if (!copy || size == 0) return;
  copy_.assign(bytes, bytes + size);
  bytes_ = copy_.data();
}

void MemoryDataSource::read(uint8* to, std::size_t size) {
  require(size);
  // memcpy demands valid pointers even for no bytes.
  if (size != 0) std::memcpy(to, bytes_ + consumed_, size);
  consumed_ += size;
}

void MemoryDataSource::skip(uint64 size) {
  require(size);
  consumed_ += static_cast<std::size_t>(size);
}

MemoryFile::MemoryFile(Bytes bytes, std::string name)
    : own_(std::move(bytes)), bytes_(own_.data()), size_(own_.size()), name_(std::move(name)) {}

MemoryFile::MemoryFile(const uint8* bytes, std::size_t size, std::string name)
    : bytes_(bytes), size_(size), name_(std::move(name)) {}

void MemoryFile::readAt(uint64 offset, uint8* to, std::size_t size) { std::memcpy(to, bytes_ + offset, size); }

MemoryDataSink::MemoryDataSink(std::size_t size) { bytes_.reserve(size); }

void MemoryDataSink::write(const uint8* from, std::size_t size) {
  if (size != 0) bytes_.insert(bytes_.end(), from, from + size);
}

Bytes MemoryDataSink::take() { return std::exchange(bytes_, Bytes()); }

}  // namespace Vantor::DataIO::Memory
