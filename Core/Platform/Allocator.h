#pragma once

#include <cstddef>
#include <limits>
#include <new>

#include "Core/Platform/MemoryBudget.h"

namespace Vantor {
namespace Platform {

/// Where the core library's strings, containers and values get their memory: the C heap.
/// Both functions may be called from any thread.
struct malloc_alloc {
  /// @throws std::bad_alloc when the heap is exhausted; MemoryLimitReached, which is one, beyond a MemoryBudget.
  static void* allocate(std::size_t bytes) { return allocateMemory(bytes); }
  static void deallocate(void* memory) noexcept { releaseMemory(memory); }
};

/// Base of classes whose objects live on the core library's heap (`malloc_alloc`).
struct HeapObject {
  static void* operator new(std::size_t size) { return malloc_alloc::allocate(size); }
  static void operator delete(void* memory) noexcept { malloc_alloc::deallocate(memory); }
  /// For construction in place, as in standard containers.
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*, void*) noexcept {}
};

/// Makes an allocation policy such as `malloc_alloc` usable by standard containers.
template <class T, class Policy = malloc_alloc>
class StdAllocator {
 public:
  using value_type = T;
  template <class U>
  struct rebind {
    using other = StdAllocator<U, Policy>;
  };

  StdAllocator() noexcept = default;
  template <class U>
  StdAllocator(const StdAllocator<U, Policy>&) noexcept {}  // NOLINT(google-explicit-constructor): containers rebind

  T* allocate(std::size_t count) {
    // No object is larger; GCC checks what it can prove about malloc's argument against the same limit.
    if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T)) throw std::bad_alloc();
    return static_cast<T*>(Policy::allocate(count * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t) noexcept { Policy::deallocate(memory); }
};

template <class T, class U, class Policy>
bool operator==(const StdAllocator<T, Policy>&, const StdAllocator<U, Policy>&) noexcept {
  return true;
}
template <class T, class U, class Policy>
bool operator!=(const StdAllocator<T, Policy>&, const StdAllocator<U, Policy>&) noexcept {
  return false;
}

}  // namespace Platform
}  // namespace Vantor
