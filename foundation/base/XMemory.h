#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>

/// Blocks of memory for raster data, aligned for vector instructions.
class XAPI XMemory
{
public:
    static constexpr std::size_t kAlignment = 64;

    /// A block of at least `bytes` bytes (one of 0 bytes is a block too), filled with zeros when
    /// `flag` is not 0. Throws std::bad_alloc. Any thread.
    static void* Alloc(std::size_t bytes, int flag);

    /// Gives a block back; null is allowed.
    static void Free(void* block);
};
