#pragma once

#if defined(__ELF__)
extern "C" {
__attribute__((weak)) void __asan_init();
__attribute__((weak)) void __tsan_init();
}
#endif

namespace Vantor {

/// Whether the process runs with a sanitizer. It takes extra memory then, so measuring that is pointless, and several
/// times as long: tests that show how cost grows, or that go through thousands of random cases, are smaller there.
/// Asked of the process, not of the compiler: the same objects of tests are linked with and without one.
inline bool isSanitized() {
#if defined(__ELF__)
  return __asan_init != nullptr || __tsan_init != nullptr;
#else
  return false;
#endif
}

}  // namespace Vantor
