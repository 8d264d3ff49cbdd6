#include "XMLUtils/XercesHeap.h"

#include <cstdlib>
#include <functional>
#include <new>

#include "Core/Platform/MemoryBudget.h"

namespace Vantor::XMLUtils {

namespace {

/// The start of Xerces 3.2 takes less than a tenth of it; what goes beyond comes from the C heap.
constexpr std::size_t kBlockSize = std::size_t{4} << 20;

}  // namespace

void* XercesHeap::PlainHeap::allocate(XMLSize_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void XercesHeap::PlainHeap::deallocate(void* memory) { std::free(memory); }

XercesHeap::XercesHeap() : block_(static_cast<uint8*>(Platform::allocateMemory(kBlockSize))) {}

XercesHeap::~XercesHeap() { Platform::releaseMemory(block_); }

bool XercesHeap::isInBlock(const void* memory) const {
  return std::less_equal<const void*>()(block_, memory) && std::less<const void*>()(memory, block_ + kBlockSize);
}

void* XercesHeap::allocate(XMLSize_t size) {
  constexpr std::size_t kAlignment = alignof(std::max_align_t);
  if (isStarting_ && size <= kBlockSize - used_) {
    void* memory = block_ + used_;
    used_ += (size + kAlignment - 1) / kAlignment * kAlignment;
    return memory;
  }
  return Platform::allocateMemory(size);
}

void XercesHeap::deallocate(void* memory) {
  if (!isInBlock(memory)) Platform::releaseMemory(memory);
}

}  // namespace Vantor::XMLUtils
