#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <memory>
#include <vector>

/// A block of samples: the one at column x of row y stands at base + rowOffset[y] + columnOffset[x].
///
/// Owns its samples. A block that Create made has no gaps, row after row. Offsets are in bytes.
struct XAPI tagXArr2
{
    int dataType = 0; ///< code of XRasterTypes.h
    int width = 0;
    int height = 0;
    unsigned char* base = nullptr;
    std::vector<std::size_t> rowOffset;
    std::vector<std::size_t> columnOffset;

    tagXArr2() = default;
    tagXArr2(const tagXArr2&) = delete;
    tagXArr2& operator=(const tagXArr2&) = delete;

    /// Makes room for width x height samples, whose values are undefined. What was there is reused
    /// when it is large enough.
    /// @return 0 when a size is below 1, the type is none, or memory does not suffice; the block is
    ///         then empty.
    int Create(int type, int blockWidth, int blockHeight);
    void Free();
    void Swap(tagXArr2& other) noexcept;

    const unsigned char* At(int x, int y) const; ///< null outside the block
    double GetValue(int x, int y) const;         ///< kXNoData outside; of a complex the real part
    std::size_t GetByteSize() const;             ///< of all samples

private:
    std::unique_ptr<unsigned char[]> m_storage;
    std::size_t m_capacity = 0;
};
