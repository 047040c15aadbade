#include "core/large_allocator.h"

#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace Vantora_TesserinePro {

namespace {
constexpr std::size_t huge_page = std::size_t(2) << 20;

// Huge pages only where rounding up to whole ones wastes at most an eighth.
std::size_t huge_size(std::size_t size) {
    const std::size_t rounded = (size + huge_page - 1) / huge_page * huge_page;
    return (size >= huge_page / 2 && (rounded - size) * 8 <= size) ? rounded : 0;
}
} // namespace

void* allocate_large_bytes(std::size_t size) {
#if defined(MADV_HUGEPAGE)
    if (const std::size_t rounded = huge_size(size)) {
        void* memory = std::aligned_alloc(huge_page, rounded);
        if (!memory) throw std::bad_alloc();
        madvise(memory, rounded, MADV_HUGEPAGE); // only advice: ordinary pages serve too
        return memory;
    }
#endif
    return ::operator new(size);
}

void free_large_bytes(void* memory, std::size_t size) {
#if defined(MADV_HUGEPAGE)
    if (huge_size(size)) {
        std::free(memory);
        return;
    }
#endif
    ::operator delete(memory);
}

} // namespace Vantora_TesserinePro
