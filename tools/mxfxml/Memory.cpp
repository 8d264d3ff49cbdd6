#include <cstddef>
#include <new>

#include "Core/Platform/MemoryBudget.h"

// Every allocation of the program is charged to the budget of its thread: containers and strings, and with them what
// the libraries below take by operator new. Those for types of a larger alignment than the heap's stay as they are.

void* operator new(std::size_t size) { return Vantor::Platform::allocateMemory(size); }
void* operator new[](std::size_t size) { return Vantor::Platform::allocateMemory(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return Vantor::Platform::allocateMemory(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }

void operator delete(void* memory) noexcept { Vantor::Platform::releaseMemory(memory); }
void operator delete[](void* memory) noexcept { Vantor::Platform::releaseMemory(memory); }
void operator delete(void* memory, std::size_t) noexcept { Vantor::Platform::releaseMemory(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Vantor::Platform::releaseMemory(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Vantor::Platform::releaseMemory(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Vantor::Platform::releaseMemory(memory); }
