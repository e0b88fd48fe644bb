#pragma once

#include <cstddef>
#include <memory>

/// Gives the memory of a tile back to the store that XfnNewTileMemory takes from.
struct tagXTileMemoryDelete
{
    std::size_t byteSize = 0;
    void operator()(unsigned char* block) const noexcept;
};

using XTileMemory = std::unique_ptr<unsigned char[], tagXTileMemoryDelete>;

/// A block for the samples of one tile, not initialised.
///
/// Tiles are made in one thread and dropped in another, nearly all of one size. Blocks that were
/// given back are kept, up to 16 MiB, and handed out again, so the heaps of the threads do not fill
/// with holes while a view moves over an image.
/// Throws std::bad_alloc. Any thread.
XTileMemory XfnNewTileMemory(std::size_t byteSize);
