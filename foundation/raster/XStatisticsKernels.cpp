#include "foundation/raster/XStatisticsKernels.h"

#include "foundation/raster/XBlockKernels.h"
#include "foundation/raster/XWideRegisters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <type_traits>

namespace {

template <class T>
bool IsData(T sample, double value, bool hasNull, T nullValue)
{
    bool isData = !(hasNull & (sample == nullValue));
    if constexpr (std::is_floating_point_v<T>) isData &= (value > kXNoData) & (value < kXNotSet);
    return isData;
}

template <class T>
void ToDoubles(const T* samples, std::size_t count, double* out)
{
    for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<double>(samples[i]);
}

template <class T>
X_WIDE void ToDoublesWide(const T* samples, std::size_t count, double* out)
{
    for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<double>(samples[i]);
}

} // namespace

template <class T>
std::size_t XStatisticsKernels<T>::Convert(const T* samples, std::size_t count, std::size_t step,
                                           bool hasNull, T nullValue, double* out,
                                           unsigned char* valid)
{
    T gathered[kXBlock];
    if (step != 1) {
        for (std::size_t i = 0; i < count; ++i)
            gathered[i] = samples[i * step];
        samples = gathered;
    }
    if constexpr (!std::is_floating_point_v<T>) {
        if (!hasNull) {
            XfnHasWideRegisters() ? ToDoublesWide(samples, count, out)
                                  : ToDoubles(samples, count, out);
            return count;
        }
    }
    std::uint64_t gaps = 0;
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = static_cast<double>(samples[i]);
        gaps += !IsData(samples[i], out[i], hasNull, nullValue);
    }
    if (gaps > 0)
        for (std::size_t i = 0; i < count; ++i)
            valid[i] = IsData(samples[i], out[i], hasNull, nullValue);
    return count - gaps;
}

template <class T>
void XStatisticsKernels<T>::ReadValues(const T* samples, std::size_t count, bool hasNull,
                                       T nullValue, double* out)
{
    for (std::size_t i = 0; i < count; ++i) {
        const double value = static_cast<double>(samples[i]);
        const bool isGap = (hasNull & (samples[i] == nullValue)) | (value != value);
        out[i] = isGap ? kXNoData : value;
    }
}

template <class T>
void XStatisticsKernels<T>::AddMoments(const T* samples, std::size_t count, bool hasNull,
                                       T nullValue, tagXMoments& moments)
{
    double values[kXBlock];
    unsigned char valid[kXBlock];
    for (std::size_t start = 0; start < count; start += kXBlock) {
        const std::size_t n = std::min(kXBlock, count - start);
        std::size_t used = Convert(samples + start, n, 1, hasNull, nullValue, values, valid);
        if (used < n) used = XfnPackBlock(values, valid, n, values);
        moments.Merge(XfnBlockMoments(values, used));
    }
}

template <class T>
void XStatisticsKernels<T>::AddHistogram(const T* samples, std::size_t count, bool hasNull,
                                         T nullValue, double min, double max, long long* histogram)
{
    const tagXBinScale scale(min, max);
    if constexpr (sizeof(T) == 1) {
        // 256 values at most: count them first and place each once
        using Counts = XValueCountKernels<T>;
        std::uint32_t counts[Counts::kTables * Counts::kValues] = {};
        constexpr std::size_t kMost = 0xFFFFFFFFu;
        for (std::size_t start = 0; start < count; start += kMost) {
            Counts::Add(samples + start, std::min(kMost, count - start), counts);
            for (std::size_t i = 0; i < std::size(counts); ++i) {
                const T sample = static_cast<T>(i % Counts::kValues);
                if (counts[i] == 0 || (hasNull && sample == nullValue)) continue;
                histogram[scale.GetBin(static_cast<double>(sample))] += counts[i];
            }
            std::fill(std::begin(counts), std::end(counts), 0u);
        }
        return;
    }
    double values[kXBlock];
    unsigned char valid[kXBlock];
    tagXBinTables tables;
    for (std::size_t start = 0; start < count; start += kXBlock) {
        const std::size_t n = std::min(kXBlock, count - start);
        std::size_t used = Convert(samples + start, n, 1, hasNull, nullValue, values, valid);
        if (used < n) used = XfnPackBlock(values, valid, n, values);
        XfnBlockBins(values, used, scale, tables);
        if (start % (kXBlock << 20) == 0) tables.MoveTo(histogram); // before a count is full
    }
    tables.MoveTo(histogram);
}

template <class T>
void XValueCountKernels<T>::Add(const T* samples, std::size_t count, std::uint32_t* counts)
{
    using Bits = std::make_unsigned_t<T>;
    std::size_t i = 0;
    for (; i + kTables <= count; i += kTables)
        for (std::size_t k = 0; k < kTables; ++k)
            ++counts[k * kValues + static_cast<Bits>(samples[i + k])];
    for (; i < count; ++i)
        ++counts[static_cast<Bits>(samples[i])];
}

template <class T>
void XfnMagnitudes(const T* parts, std::size_t count, bool hasNull, T nullValue, double* out)
{
    for (std::size_t i = 0; i < count; ++i) {
        const T re = parts[2 * i];
        const T im = parts[2 * i + 1];
        const bool isNull = hasNull & (re == nullValue) & (im == T(0));
        out[i] = isNull ? std::numeric_limits<double>::quiet_NaN()
                        : std::hypot(static_cast<double>(re), static_cast<double>(im));
    }
}

template struct XStatisticsKernels<std::uint8_t>;
template struct XStatisticsKernels<std::int8_t>;
template struct XStatisticsKernels<std::uint16_t>;
template struct XStatisticsKernels<std::int16_t>;
template struct XStatisticsKernels<std::uint32_t>;
template struct XStatisticsKernels<std::int32_t>;
template struct XStatisticsKernels<float>;
template struct XStatisticsKernels<double>;

template struct XValueCountKernels<std::uint8_t>;
template struct XValueCountKernels<std::int8_t>;
template struct XValueCountKernels<std::uint16_t>;
template struct XValueCountKernels<std::int16_t>;

template void XfnMagnitudes(const std::uint8_t*, std::size_t, bool, std::uint8_t, double*);
template void XfnMagnitudes(const std::int8_t*, std::size_t, bool, std::int8_t, double*);
template void XfnMagnitudes(const std::uint16_t*, std::size_t, bool, std::uint16_t, double*);
template void XfnMagnitudes(const std::int16_t*, std::size_t, bool, std::int16_t, double*);
template void XfnMagnitudes(const std::uint32_t*, std::size_t, bool, std::uint32_t, double*);
template void XfnMagnitudes(const std::int32_t*, std::size_t, bool, std::int32_t, double*);
template void XfnMagnitudes(const float*, std::size_t, bool, float, double*);
template void XfnMagnitudes(const double*, std::size_t, bool, double, double*);
