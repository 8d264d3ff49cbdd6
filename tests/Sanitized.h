#pragma once

namespace Vantor {

/// Whether the process was built for a sanitizer. It takes extra memory then, so measuring that is pointless, and
/// several times as long: tests that show how cost grows, or that go through thousands of random cases, are smaller
/// there.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kIsSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool kIsSanitized = false;
#endif

}  // namespace Vantor
