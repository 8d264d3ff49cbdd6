#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

/// How much memory a call may take. What asks for memory reports it here; a budget bounds what its thread has asked for
/// and not given back since the budget was made.
///
/// Counted are the core library's allocator (`malloc_alloc`), and so its values, texts and octets; Xerces-C++, where
/// `XMLUtils::Initializer` started it; and whatever else takes it from `allocateMemory`, such as the operators new of
/// a program: those of `mxfxml` do. The figures are those of the C heap: the size of each block, and of its header.
namespace Vantor {
namespace Platform {

/// Thrown in the place of an allocation that a budget does not allow. Whoever asks for memory expects a std::bad_alloc.
class MemoryLimitReached : public std::bad_alloc {
 public:
  explicit MemoryLimitReached(std::uint64_t limit) noexcept : limit_(limit) {}
  const char* what() const noexcept override { return "the limit of memory is reached"; }
  /// Bytes that the budget allowed.
  std::uint64_t limit() const noexcept { return limit_; }

 private:
  std::uint64_t limit_;
};

/// As long as it lives, its thread has at most so many bytes more than when it was made. Of budgets within each other,
/// the one that leaves least counts. Lives on the stack of one thread.
class MemoryBudget {
 public:
  explicit MemoryBudget(std::uint64_t bytes) noexcept;
  ~MemoryBudget();
  MemoryBudget(const MemoryBudget&) = delete;
  MemoryBudget& operator=(const MemoryBudget&) = delete;

  /// Bytes that the thread has taken since the budget was made, less what it gave back; below zero where it gave back
  /// what is older.
  std::int64_t used() const noexcept;

 private:
  std::int64_t start_;
  std::int64_t outerEnd_;
  std::uint64_t outerLimit_;
};

/// As long as it lives, its thread is not bounded, for what belongs to the process and not to a call: it is not charged
/// to the budgets around it either.
class BudgetPause {
 public:
  BudgetPause() noexcept;
  ~BudgetPause();
  BudgetPause(const BudgetPause&) = delete;
  BudgetPause& operator=(const BudgetPause&) = delete;

 private:
  std::int64_t balance_;
  std::int64_t end_;
};

/// Memory of the C heap, charged to the budget of the thread; `bytes` of 0 count as 1.
/// @throws MemoryLimitReached; std::bad_alloc when the heap is exhausted.
void* allocateMemory(std::size_t bytes);
/// Gives back what `allocateMemory` gave, on any thread; null is ignored.
void releaseMemory(void* memory) noexcept;

}  // namespace Platform
}  // namespace Vantor
