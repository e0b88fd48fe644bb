#include "foundation/raster/XDMFileKernels.h"

#include <cstdint>

namespace {

template <class T>
void PredictRow(const T* __restrict row, unsigned char* __restrict planes, std::size_t planeBytes,
                std::size_t step, std::size_t n)
{
    for (std::size_t k = 0; k < sizeof(T); ++k) {
        unsigned char* __restrict plane = planes + k * planeBytes;
        const unsigned shift = static_cast<unsigned>(8 * k);
        for (std::size_t i = 0; i < step; ++i)
            plane[i] = static_cast<unsigned char>(row[i] >> shift);
        for (std::size_t i = step; i < n; ++i) {
            const T difference = static_cast<T>(row[i] - row[i - step]);
            plane[i] = static_cast<unsigned char>(difference >> shift);
        }
    }
}

template <class T>
void JoinRow(const unsigned char* __restrict planes, T* __restrict row, std::size_t planeBytes,
             std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i)
        row[i] = planes[i];
    for (std::size_t k = 1; k < sizeof(T); ++k) {
        const unsigned char* __restrict plane = planes + k * planeBytes;
        const unsigned shift = static_cast<unsigned>(8 * k);
        for (std::size_t i = 0; i < n; ++i) {
            row[i] = static_cast<T>(row[i] | static_cast<T>(static_cast<T>(plane[i]) << shift));
        }
    }
}

template <class T>
void SumRow(T* row, std::size_t step, std::size_t n)
{
    if (step == 1) {
        T sum = 0;
        for (std::size_t i = 0; i < n; ++i)
            row[i] = sum = static_cast<T>(sum + row[i]);
        return;
    }
    for (std::size_t i = step; i < n; ++i)
        row[i] = static_cast<T>(row[i] + row[i - step]);
}

template <class T>
void PredictTile(const void* values, unsigned char* planes, std::size_t step, std::size_t n,
                 std::size_t rows)
{
    const T* source = static_cast<const T*>(values);
    for (std::size_t y = 0; y < rows; ++y) {
        PredictRow(source + y * n, planes + y * n, rows * n, step, n);
    }
}

template <class T>
void UnpredictTile(const unsigned char* planes, void* values, std::size_t step, std::size_t n,
                   std::size_t rows)
{
    T* target = static_cast<T*>(values);
    for (std::size_t y = 0; y < rows; ++y) {
        JoinRow(planes + y * n, target + y * n, rows * n, n);
        SumRow(target + y * n, step, n);
    }
}

} // namespace

void XfnPredictXDMFileTile(const void* values, unsigned char* planes, int valueSize, int step,
                           std::size_t valuesPerRow, std::size_t rows)
{
    const std::size_t s = static_cast<std::size_t>(step);
    switch (valueSize) {
    case 1:
        return PredictTile<std::uint8_t>(values, planes, s, valuesPerRow, rows);
    case 2:
        return PredictTile<std::uint16_t>(values, planes, s, valuesPerRow, rows);
    case 4:
        return PredictTile<std::uint32_t>(values, planes, s, valuesPerRow, rows);
    default:
        return PredictTile<std::uint64_t>(values, planes, s, valuesPerRow, rows);
    }
}

void XfnUnpredictXDMFileTile(const unsigned char* planes, void* values, int valueSize, int step,
                             std::size_t valuesPerRow, std::size_t rows)
{
    const std::size_t s = static_cast<std::size_t>(step);
    switch (valueSize) {
    case 1:
        return UnpredictTile<std::uint8_t>(planes, values, s, valuesPerRow, rows);
    case 2:
        return UnpredictTile<std::uint16_t>(planes, values, s, valuesPerRow, rows);
    case 4:
        return UnpredictTile<std::uint32_t>(planes, values, s, valuesPerRow, rows);
    default:
        return UnpredictTile<std::uint64_t>(planes, values, s, valuesPerRow, rows);
    }
}
