#include "foundation/raster/XJointCounts.h"

#include "foundation/raster/XBlockRun.h"
#include "foundation/raster/XJointCountKernels.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kBlock = 2048;                 // pixels whose bins stay in the nearest cache
constexpr std::size_t kPiece = std::size_t{1} << 22; // pixels worth a turn of a thread
constexpr std::size_t kCells = kXJointStride * kXJointStride;

bool IsSound(const tagXJointAxis& axis)
{
    return XfnIsRealType(axis.dataType) && std::isfinite(axis.offset) && std::isfinite(axis.gain);
}

template <class T>
void BinSamples(const tagXJointAxis& axis, const T* samples, std::size_t count, std::uint16_t* bins)
{
    bool hasNull = false;
    const T null = XfnNullSample<T>(axis.nullValue, hasNull);
    XJointBinKernels<T>::Bin(samples, count, hasNull, null, axis.offset, axis.gain, bins);
}

/// The bin of every sample of a type of one or two bytes, by the bits of the sample; empty for
/// another type.
std::vector<std::uint32_t> MakeTable(const tagXJointAxis& axis, std::uint32_t scale)
{
    std::vector<std::uint32_t> table;
    if (!IsSound(axis) || XfnGetDataTypeSize(axis.dataType) > 2) return table;
    XfnDispatchRealType<int>(axis.dataType, [&]<class T>(const T*) {
        if constexpr (sizeof(T) <= 2) {
            std::vector<T> samples(std::size_t{1} << (8 * sizeof(T)));
            for (std::size_t i = 0; i < samples.size(); ++i)
                samples[i] = static_cast<T>(i);
            std::vector<std::uint16_t> bins(samples.size());
            BinSamples(axis, samples.data(), samples.size(), bins.data());
            for (const std::uint16_t bin : bins)
                table.push_back(bin * scale);
        }
        return 1;
    });
    return table;
}

void BinBlock(const tagXJointAxis& axis, const void* data, std::size_t start, std::size_t count,
              std::uint16_t* bins)
{
    XfnDispatchRealType<int>(axis.dataType, [&]<class T>(const T*) {
        BinSamples(axis, static_cast<const T*>(data) + start, count, bins);
        return 1;
    });
}

} // namespace

XJointCounts::XJointCounts(const tagXJointAxis& x, const tagXJointAxis& y)
    : m_x(x),
      m_y(y),
      m_columns(MakeTable(x, 1)),
      m_rows(MakeTable(y, kXJointStride)),
      m_counts(kBins * kBins)
{}

int XJointCounts::IsValid() const
{
    return IsSound(m_x) && IsSound(m_y);
}

void XJointCounts::Clear()
{
    std::fill(m_counts.begin(), m_counts.end(), std::uint64_t{0});
}

void XJointCounts::CountPiece(const void* x, const void* y, std::size_t start, std::size_t end,
                              std::uint32_t* even) const
{
    std::uint32_t* odd = even + kCells;
    if (!m_columns.empty() && !m_rows.empty()) {
        const auto count = [&](auto* typeX, auto* typeY) {
            XfnCountSamplePairs(static_cast<decltype(typeX)>(x) + start,
                                static_cast<decltype(typeY)>(y) + start, end - start,
                                m_columns.data(), m_rows.data(), even, odd);
        };
        constexpr const std::uint8_t* kByte = nullptr;
        constexpr const std::uint16_t* kWord = nullptr;
        const bool isByteX = m_columns.size() == 256, isByteY = m_rows.size() == 256;
        if (isByteX)
            isByteY ? count(kByte, kByte) : count(kByte, kWord);
        else
            isByteY ? count(kWord, kByte) : count(kWord, kWord);
        return;
    }
    std::uint16_t binsX[kBlock], binsY[kBlock];
    for (std::size_t at = start; at < end; at += kBlock) {
        const std::size_t n = std::min(kBlock, end - at);
        BinBlock(m_x, x, at, n, binsX);
        BinBlock(m_y, y, at, n, binsY);
        XfnCountPairs(binsX, binsY, n, even, odd);
    }
}

int XJointCounts::Add(const void* x, const void* y, std::size_t count)
{
    if (!IsValid()) return 0;
    const int pieces = static_cast<int>((count + kPiece - 1) / kPiece);
    const int workers = XBlockRun::GetNumOfWorkers(pieces);
    std::vector<std::uint32_t> tables(static_cast<std::size_t>(workers) * 2 * kCells);
    std::vector<std::uint64_t> totals(static_cast<std::size_t>(workers) * kBins * kBins);
    const auto work = [&](int piece, int worker, XString&) {
        std::uint32_t* even = tables.data() + static_cast<std::size_t>(worker) * 2 * kCells;
        const std::size_t start = static_cast<std::size_t>(piece) * kPiece;
        CountPiece(x, y, start, std::min(count, start + kPiece), even);
        // a piece cannot fill a 32-bit count
        std::uint64_t* total = totals.data() + static_cast<std::size_t>(worker) * kBins * kBins;
        for (std::size_t cell = 0; cell < kCells; ++cell) {
            const std::size_t row = cell / kXJointStride, column = cell % kXJointStride;
            if (row < kBins && column < kBins)
                total[row * kBins + column] +=
                    std::uint64_t{even[cell]} + std::uint64_t{even[kCells + cell]};
        }
        std::fill_n(even, 2 * kCells, 0u);
        return 1;
    };
    XString message;
    if (!XBlockRun().Run(pieces, work, nullptr, message)) return 0;
    for (std::size_t i = 0; i < totals.size(); ++i)
        m_counts[i % m_counts.size()] += totals[i];
    return 1;
}
