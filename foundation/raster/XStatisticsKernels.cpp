#include "foundation/raster/XStatisticsKernels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace {

constexpr std::size_t kBlock = 4096; // samples whose doubles stay in the nearest cache
constexpr int kLanes = 8;

// Turns a block into doubles and packs the valid ones together; the order does not matter.
template <class T>
std::size_t Pack(const T* samples, std::size_t count, bool hasNull, T nullValue, double* out)
{
    std::size_t n = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double v = static_cast<double>(samples[i]);
        bool isValid = !(hasNull && samples[i] == nullValue);
        if constexpr (std::is_floating_point_v<T>) isValid &= v > kXNoData && v < kXNotSet;
        out[n] = v;
        n += isValid;
    }
    return n;
}

double Sum(const double* v, std::size_t n)
{
    double lanes[kLanes] = {};
    std::size_t i = 0;
    for (; i + kLanes <= n; i += kLanes)
        for (int k = 0; k < kLanes; ++k)
            lanes[k] += v[i + k];
    double sum = 0.0;
    for (; i < n; ++i)
        sum += v[i];
    for (const double lane : lanes)
        sum += lane;
    return sum;
}

double SumSquares(const double* v, std::size_t n, double mean)
{
    double lanes[kLanes] = {};
    std::size_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        for (int k = 0; k < kLanes; ++k) {
            const double d = v[i + k] - mean;
            lanes[k] += d * d;
        }
    }
    double sum = 0.0;
    for (; i < n; ++i)
        sum += (v[i] - mean) * (v[i] - mean);
    for (const double lane : lanes)
        sum += lane;
    return sum;
}

tagXMoments MomentsOf(const double* v, std::size_t n)
{
    tagXMoments block;
    block.count = static_cast<long long>(n);
    if (n == 0) return block;
    double low = v[0];
    double high = v[0];
    for (std::size_t i = 0; i < n; ++i) {
        low = v[i] < low ? v[i] : low;
        high = v[i] > high ? v[i] : high;
    }
    block.min = low;
    block.max = high;
    // about one of the values, so that a constant block has exactly its value as mean and no spread
    const double origin = v[0];
    if (high - low <= 1e300) {
        double shifted[kBlock];
        for (std::size_t i = 0; i < n; ++i)
            shifted[i] = v[i] - origin;
        const double mean = Sum(shifted, n) / static_cast<double>(n);
        block.mean = origin + mean;
        block.squares = SumSquares(shifted, n, mean);
    } else {
        for (std::size_t i = 0; i < n; ++i)
            block.mean += v[i] / static_cast<double>(n);
        block.squares = SumSquares(v, n, block.mean);
    }
    return block;
}

} // namespace

template <class T>
void XStatisticsKernels<T>::AddMoments(const T* samples, std::size_t count, bool hasNull,
                                       T nullValue, tagXMoments& moments)
{
    double valid[kBlock];
    for (std::size_t start = 0; start < count; start += kBlock) {
        const std::size_t n =
            Pack(samples + start, std::min(kBlock, count - start), hasNull, nullValue, valid);
        moments.Merge(MomentsOf(valid, n));
    }
}

template <class T>
void XStatisticsKernels<T>::AddHistogram(const T* samples, std::size_t count, bool hasNull,
                                         T nullValue, double min, double max, long long* histogram)
{
    if constexpr (sizeof(T) == 1) {
        // 256 values at most: count them first and place each once
        long long counts[256] = {};
        for (std::size_t i = 0; i < count; ++i)
            ++counts[static_cast<unsigned char>(samples[i])];
        for (int byte = 0; byte < 256; ++byte) {
            const T value = static_cast<T>(static_cast<unsigned char>(byte));
            if (counts[byte] == 0 || (hasNull && value == nullValue)) continue;
            const double t = max > min ? (value - min) * 255.0 / (max - min) : 0.0;
            histogram[static_cast<int>(std::clamp(t, 0.0, 255.0))] += counts[byte];
        }
    } else {
        // a range wider than the doubles hold is measured in halves
        const double unit = std::isfinite((max - min) * 255.0) ? 1.0 : 1.0 / 512.0;
        const double low = min * unit;
        const double range = max * unit - low;
        double valid[kBlock];
        for (std::size_t start = 0; start < count; start += kBlock) {
            const std::size_t n =
                Pack(samples + start, std::min(kBlock, count - start), hasNull, nullValue, valid);
            for (std::size_t i = 0; i < n; ++i) {
                const double t = range > 0.0 ? (valid[i] * unit - low) * 255.0 / range : 0.0;
                ++histogram[static_cast<int>(t < 0.0 ? 0.0 : t > 255.0 ? 255.0 : t)];
            }
        }
    }
}

template <class T>
void XfnMagnitudes(const T* parts, std::size_t count, double* out)
{
    for (std::size_t i = 0; i < count; ++i)
        out[i] =
            std::hypot(static_cast<double>(parts[2 * i]), static_cast<double>(parts[2 * i + 1]));
}

template struct XStatisticsKernels<std::uint8_t>;
template struct XStatisticsKernels<std::int8_t>;
template struct XStatisticsKernels<std::uint16_t>;
template struct XStatisticsKernels<std::int16_t>;
template struct XStatisticsKernels<std::uint32_t>;
template struct XStatisticsKernels<std::int32_t>;
template struct XStatisticsKernels<float>;
template struct XStatisticsKernels<double>;

template void XfnMagnitudes(const std::uint8_t*, std::size_t, double*);
template void XfnMagnitudes(const std::int8_t*, std::size_t, double*);
template void XfnMagnitudes(const std::uint16_t*, std::size_t, double*);
template void XfnMagnitudes(const std::int16_t*, std::size_t, double*);
template void XfnMagnitudes(const std::uint32_t*, std::size_t, double*);
template void XfnMagnitudes(const std::int32_t*, std::size_t, double*);
template void XfnMagnitudes(const float*, std::size_t, double*);
template void XfnMagnitudes(const double*, std::size_t, double*);
