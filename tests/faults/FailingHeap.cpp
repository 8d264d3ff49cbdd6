#include "tests/faults/FailingHeap.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>

// What the system's own malloc is called in glibc.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace Vantor::FailingHeap {

namespace {

struct Plan {
  uint64 untilFailure = 0;  // 0 for none
  Fails which = Fails::kOnce;
  bool hasFailed = false;
  bool hasFailedInXMLStack = false;
};
// Of the model that needs no allocation of its own.
__attribute__((tls_model("initial-exec"))) thread_local Plan plan;
std::atomic<int64> live{0};

bool isInXMLStack() {
  std::array<void*, 64> frames{};
  const int count = ::backtrace(frames.data(), static_cast<int>(frames.size()));
  for (int i = 0; i < count; ++i) {
    Dl_info module{};
    if (::dladdr(frames[static_cast<std::size_t>(i)], &module) == 0 || module.dli_fname == nullptr) continue;
    for (const char* name : {"libxerces-c", "libxqilla"}) {
      if (std::strstr(module.dli_fname, name) != nullptr) return true;
    }
  }
  return false;
}

bool failsNow() {
  if (plan.untilFailure == 0 || --plan.untilFailure != 0) return false;
  if (!plan.hasFailed) plan.hasFailedInXMLStack = isInXMLStack();
  plan.untilFailure = plan.which == Fails::kFromThenOn ? 1 : 0;
  plan.hasFailed = true;
  errno = ENOMEM;
  return true;
}

void* counted(void* memory) {
  if (memory != nullptr) live.fetch_add(1, std::memory_order_relaxed);
  return memory;
}

}  // namespace

void failAt(uint64 number, Fails which) {
  static const bool isWarm = isInXMLStack();  // the first look at a stack allocates
  static_cast<void>(isWarm);
  plan = {number, which};
}

bool stop() {
  plan.untilFailure = 0;
  return plan.hasFailed;
}

bool hasFailedInXMLStack() { return plan.hasFailedInXMLStack; }

int64 liveBlocks() { return live.load(std::memory_order_relaxed); }

}  // namespace Vantor::FailingHeap

using namespace Vantor::FailingHeap;

extern "C" {

void* malloc(std::size_t size) { return failsNow() ? nullptr : counted(__libc_malloc(size)); }

void* calloc(std::size_t count, std::size_t size) { return failsNow() ? nullptr : counted(__libc_calloc(count, size)); }

void* realloc(void* memory, std::size_t size) {
  if (failsNow()) return nullptr;
  void* moved = __libc_realloc(memory, size);
  if (memory == nullptr) return counted(moved);
  if (size == 0) live.fetch_sub(1, std::memory_order_relaxed);
  return moved;
}

void free(void* memory) {
  if (memory != nullptr) live.fetch_sub(1, std::memory_order_relaxed);
  __libc_free(memory);
}

void* memalign(std::size_t alignment, std::size_t size) {
  return failsNow() ? nullptr : counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  *memory = memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}
}
