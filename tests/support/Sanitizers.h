// SPDX-License-Identifier: MIT
#pragma once

namespace support {

/// True in a build with the address or thread sanitizer, which is slow and uses memory: its tests
/// use fewer inputs and do not measure memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif
#else
inline constexpr bool isSanitized = false;
#endif

/// True in a build with the thread sanitizer.
#if defined(__SANITIZE_THREAD__)
inline constexpr bool hasThreadSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr bool hasThreadSanitizer = true;
#else
inline constexpr bool hasThreadSanitizer = false;
#endif
#else
inline constexpr bool hasThreadSanitizer = false;
#endif

} // namespace support
