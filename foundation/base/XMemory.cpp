#include "foundation/base/XMemory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

void* XMemory::Alloc(std::size_t bytes, int flag)
{
    if (bytes > PTRDIFF_MAX - kAlignment) throw std::bad_alloc();
    const std::size_t size = std::max(bytes + kAlignment - 1, kAlignment) / kAlignment * kAlignment;
    void* block = std::aligned_alloc(kAlignment, size);
    if (!block) throw std::bad_alloc();
    if (flag) std::memset(block, 0, size);
    return block;
}

void XMemory::Free(void* block)
{
    std::free(block);
}
