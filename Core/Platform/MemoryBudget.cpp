#include "Core/Platform/MemoryBudget.h"

#include <cstdlib>
#include <limits>

#include "Core/Platform/System.h"
#include "Core/Platform/Types.h"

namespace Vantor::Platform {

namespace {

constexpr int64 kNoEnd = std::numeric_limits<int64>::max();

/// What one thread took and gave back. A thread may give back what another one took, so that the figure means nothing
/// but for its changes.
struct Account {
  int64 balance = 0;
  int64 end = kNoEnd;  // of the balance
  uint64 limit = 0;    // of the budget that ends there
};
thread_local Account account;

/// With the word in front of it in which the heap keeps the size of a block: of small blocks that is a third.
int64 chargeOf(void* memory) { return static_cast<int64>(System::allocatedSize(memory) + sizeof(std::size_t)); }

}  // namespace

MemoryBudget::MemoryBudget(uint64 bytes) noexcept
    : start_(account.balance), outerEnd_(account.end), outerLimit_(account.limit) {
  const bool isWider = bytes >= static_cast<uint64>(kNoEnd) || start_ > kNoEnd - static_cast<int64>(bytes) ||
                       start_ + static_cast<int64>(bytes) >= outerEnd_;
  if (isWider) return;
  account.end = start_ + static_cast<int64>(bytes);
  account.limit = bytes;
}

MemoryBudget::~MemoryBudget() {
  account.end = outerEnd_;
  account.limit = outerLimit_;
}

int64 MemoryBudget::used() const noexcept { return account.balance - start_; }

BudgetPause::BudgetPause() noexcept : balance_(account.balance), end_(account.end) { account.end = kNoEnd; }

BudgetPause::~BudgetPause() {
  account.balance = balance_;
  account.end = end_;
}

void* allocateMemory(std::size_t bytes) {
  if (static_cast<uint64>(bytes) > static_cast<uint64>(kNoEnd) / 2) throw std::bad_alloc();
  // Asked before the heap is: one allocation may be larger than what is left.
  if (account.balance + static_cast<int64>(bytes) > account.end) throw MemoryLimitReached(account.limit);
  void* memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (memory == nullptr) throw std::bad_alloc();
  account.balance += chargeOf(memory);
  return memory;
}

void releaseMemory(void* memory) noexcept {
  if (memory == nullptr) return;
  account.balance -= chargeOf(memory);
  std::free(memory);
}

}  // namespace Vantor::Platform
