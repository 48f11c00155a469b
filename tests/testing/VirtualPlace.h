#pragma once

#include <cstddef>
#include <cstring>

/// The place of a virtual operation in the table of its class. Under the Itanium C++ ABI (every compiler but
/// Microsoft's) a pointer to a virtual member function holds its offset in that table, plus one.
template <class Pointer>
std::ptrdiff_t placeOf(Pointer pointer) {
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &pointer, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}
