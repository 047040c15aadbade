#pragma once
// Memory for arrays that run to megabytes and are filled once (a route of a
// million cabinets, a layer's PSD channels). Large blocks are asked for in
// huge pages where the system offers them, which makes first filling them
// several times cheaper; small ones come from the ordinary heap.

#include "core/types.h"

#include <cstddef>

namespace Vantora_TesserinePro {

void* allocate_large_bytes(std::size_t size);
void free_large_bytes(void* memory, std::size_t size);

// A drawing target of that size in the drawing format, in huge pages where
// the system offers them: the first paint of a frame then touches a few huge
// pages instead of thousands of small ones. Null when the size is not
// allowed or the memory cannot be had.
image new_drawing_target(int width, int height);

template <class T> struct large_allocator {
    using value_type = T;
    large_allocator() = default;
    template <class U> large_allocator(const large_allocator<U>&) {}
    T* allocate(std::size_t n) { return static_cast<T*>(allocate_large_bytes(n * sizeof(T))); }
    void deallocate(T* p, std::size_t n) { free_large_bytes(p, n * sizeof(T)); }
    template <class U> bool operator==(const large_allocator<U>&) const { return true; }
};

} // namespace Vantora_TesserinePro
