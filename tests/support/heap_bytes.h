#pragma once
// How much of the heap is in use, for tests of what stays behind. Linux only.
#include <cstddef>
#include <malloc.h>
#ifdef __SANITIZE_ADDRESS__
/// Of the sanitizer's runtime, whose headers not every compiler package brings.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

/// Bytes that stand allocated. The sanitizer has a heap of its own, of which the C library's count knows
/// nothing.
inline std::size_t HeapBytes() {
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}
