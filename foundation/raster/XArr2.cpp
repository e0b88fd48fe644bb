#include "foundation/raster/XArr2.h"

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XRasterTypes.h"

#include <cstdint>
#include <new>
#include <utility>

int tagXArr2::Create(int type, int blockWidth, int blockHeight)
{
    const std::size_t size = XfnGetDataTypeSize(type);
    if (size == 0 || blockWidth < 1 || blockHeight < 1) {
        Free();
        return 0;
    }
    const std::size_t rowBytes = size * static_cast<std::size_t>(blockWidth);
    const std::size_t rows = static_cast<std::size_t>(blockHeight);
    if (rowBytes > (SIZE_MAX / 2) / rows) {
        Free();
        return 0;
    }
    try {
        if (rowBytes * rows > m_capacity) {
            Free();
            m_storage = std::make_unique_for_overwrite<unsigned char[]>(rowBytes * rows);
            m_capacity = rowBytes * rows;
        }
        rowOffset.resize(rows);
        columnOffset.resize(static_cast<std::size_t>(blockWidth));
    } catch (const std::bad_alloc&) {
        Free();
        return 0;
    }
    for (std::size_t y = 0; y < rows; ++y)
        rowOffset[y] = y * rowBytes;
    for (std::size_t x = 0; x < columnOffset.size(); ++x)
        columnOffset[x] = x * size;
    base = m_storage.get();
    dataType = type;
    width = blockWidth;
    height = blockHeight;
    return 1;
}

void tagXArr2::Free()
{
    m_storage.reset();
    m_capacity = 0;
    base = nullptr;
    dataType = width = height = 0;
    rowOffset.clear();
    columnOffset.clear();
}

void tagXArr2::Swap(tagXArr2& other) noexcept
{
    std::swap(dataType, other.dataType);
    std::swap(width, other.width);
    std::swap(height, other.height);
    std::swap(base, other.base);
    rowOffset.swap(other.rowOffset);
    columnOffset.swap(other.columnOffset);
    m_storage.swap(other.m_storage);
    std::swap(m_capacity, other.m_capacity);
}

const unsigned char* tagXArr2::At(int x, int y) const
{
    if (!base || x < 0 || y < 0 || x >= width || y >= height) return nullptr;
    return base + rowOffset[static_cast<std::size_t>(y)] +
           columnOffset[static_cast<std::size_t>(x)];
}

double tagXArr2::GetValue(int x, int y) const
{
    const unsigned char* sample = At(x, y);
    return sample ? XfnReadSample(sample, dataType) : kXNoData;
}

std::size_t tagXArr2::GetByteSize() const
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
           static_cast<std::size_t>(XfnGetDataTypeSize(dataType));
}
