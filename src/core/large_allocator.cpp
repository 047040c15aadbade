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

image new_drawing_target(int width, int height) {
    if (!image_size_allowed((unsigned long long)width, (unsigned long long)height)) return {};
    const qsizetype stride = qsizetype(width) * 4;
    const std::size_t size = std::size_t(stride) * std::size_t(height);
    struct block {
        void* pixels;
        bool huge;
    };
    // A drawing target is touched whole at once (filled, then drawn): in
    // huge pages from half of one on, whatever the last one leaves unused.
    block* b = new block{nullptr, false};
#if defined(MADV_HUGEPAGE)
    if (size >= huge_page / 2) {
        const std::size_t rounded = (size + huge_page - 1) / huge_page * huge_page;
        b->pixels = std::aligned_alloc(huge_page, rounded);
        if (b->pixels) madvise(b->pixels, rounded, MADV_HUGEPAGE);
        b->huge = true;
    } else
#endif
        b->pixels = std::malloc(size);
    if (!b->pixels) {
        delete b;
        return {};
    }
    // The image gives the memory back when its last copy goes.
    return image(
        static_cast<uchar*>(b->pixels), width, height, stride, image_format,
        [](void* info) {
            auto* gone = static_cast<block*>(info);
            std::free(gone->pixels);
            delete gone;
        },
        b);
}

} // namespace Vantora_TesserinePro
