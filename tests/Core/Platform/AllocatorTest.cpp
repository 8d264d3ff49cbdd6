#include "Core/Platform/Allocator.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "Core/Platform/Containers.h"

namespace Vantor {
namespace {

TEST(MallocAlloc, GivesUsableMemoryEvenForNoBytes) {
  void* const memory = Platform::malloc_alloc::allocate(0);
  EXPECT_NE(memory, nullptr);
  Platform::malloc_alloc::deallocate(memory);
}

TEST(StdAllocator, RefusesACountWhoseBytesOverflow) {
  Platform::StdAllocator<uint64> allocator;
  const std::size_t overflowing = std::numeric_limits<std::size_t>::max() / sizeof(uint64) + 1;
  EXPECT_THROW(allocator.allocate(overflowing), std::bad_alloc);
}

struct NeverAsked {
  static void* allocate(std::size_t bytes) {
    ADD_FAILURE() << bytes;
    throw std::bad_alloc();
  }
  static void deallocate(void*) noexcept {}
};

TEST(StdAllocator, AsksForNoObjectLargerThanTheLanguageAllows) {
  Platform::StdAllocator<uint64, NeverAsked> allocator;
  const std::size_t tooMany = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(uint64) + 1;
  EXPECT_THROW(allocator.allocate(tooMany), std::bad_alloc);
}

TEST(StdAllocator, ComparesEqualWhateverTypesItAllocates) {
  EXPECT_TRUE(Platform::StdAllocator<uint8>() == Platform::StdAllocator<uint64>());
  EXPECT_FALSE(Platform::StdAllocator<uint8>() != Platform::StdAllocator<uint64>());
}

TEST(Containers, HoldWhatIsPutIntoThem) {
  Templates::list<int> numbers = {1, 2};
  numbers.push_back(3);
  EXPECT_EQ(Templates::vector<int>(numbers.begin(), numbers.end()), (Templates::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace Vantor
