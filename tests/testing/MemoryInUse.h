#pragma once

#include <cstddef>

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// The bytes of memory in use; 0 where nobody tells: without glibc, and where another allocator took the
/// place of its own.
inline std::size_t memoryInUse() {
#ifdef __GLIBC__
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

/// Whether doing something again and again takes more and more memory, as objects do that are kept.
/// @param size what is kept each time, at least, in bytes
/// @param action what is done
template <class Action>
bool takesMemory(std::size_t size, const Action& action) {
    constexpr int times = 64;
    for (int i = 0; i < times; ++i) {
        action(); // what is remembered once is there then
    }
    const std::size_t before = memoryInUse();
    for (int i = 0; i < times; ++i) {
        action();
    }
    return memoryInUse() >= before + times * size;
}
