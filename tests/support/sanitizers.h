#pragma once

namespace support {

/// Whether the address or thread sanitizer watches: memory grows and cannot be limited then.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitizerTakesMemory = true;
#elif defined(__has_feature)
inline constexpr bool sanitizerTakesMemory =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool sanitizerTakesMemory = false;
#endif

/// Whether the thread sanitizer watches: Clang's has operators new and delete of its own, which refuse
/// nothing.
#if defined(__SANITIZE_THREAD__)
inline constexpr bool sanitizerTakesAllocations = true;
#elif defined(__has_feature)
inline constexpr bool sanitizerTakesAllocations = __has_feature(thread_sanitizer);
#else
inline constexpr bool sanitizerTakesAllocations = false;
#endif

/// Whether Clang's undefined behaviour sanitizer watches: its checks of types open a pipe to find out what
/// memory can be read, and report falsely where no descriptor is left.
#if defined(__has_feature)
inline constexpr bool sanitizerTakesDescriptors = __has_feature(undefined_behavior_sanitizer);
#else
inline constexpr bool sanitizerTakesDescriptors = false;
#endif

} // namespace support
