#include "foundation/raster/XJointCountKernels.h"

#include "foundation/base/XSentinels.h"

template <class T>
void XJointBinKernels<T>::Bin(const T* samples, std::size_t count, bool hasNull, T nullValue,
                              double offset, double gain, std::uint16_t* bins)
{
    constexpr double kFarthest = 9007199254740992.0; // 2^53: beyond it the low bits mean nothing
    for (std::size_t i = 0; i < count; ++i) {
        const double value = static_cast<double>(samples[i]);
        const double t = (value - offset) * gain;
        const bool isData = !(hasNull && samples[i] == nullValue) && value > kXNoData &&
                            value < kXNotSet && t > -kFarthest && t < kFarthest;
        const long long bin = static_cast<long long>(isData ? t : 0.0);
        bins[i] = isData ? static_cast<std::uint16_t>(bin & 255) : kXNoBin;
    }
}

template <class X, class Y>
void XfnCountSamplePairs(const X* x, const Y* y, std::size_t count, const std::uint32_t* columns,
                         const std::uint32_t* rows, std::uint32_t* even, std::uint32_t* odd)
{
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        ++even[rows[y[i]] + columns[x[i]]];
        ++odd[rows[y[i + 1]] + columns[x[i + 1]]];
    }
    if (i < count) ++even[rows[y[i]] + columns[x[i]]];
}

void XfnCountPairs(const std::uint16_t* x, const std::uint16_t* y, std::size_t count,
                   std::uint32_t* even, std::uint32_t* odd)
{
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        ++even[y[i] * kXJointStride + x[i]];
        ++odd[y[i + 1] * kXJointStride + x[i + 1]];
    }
    if (i < count) ++even[y[i] * kXJointStride + x[i]];
}

template struct XJointBinKernels<std::uint8_t>;
template struct XJointBinKernels<std::int8_t>;
template struct XJointBinKernels<std::uint16_t>;
template struct XJointBinKernels<std::int16_t>;
template struct XJointBinKernels<std::uint32_t>;
template struct XJointBinKernels<std::int32_t>;
template struct XJointBinKernels<float>;
template struct XJointBinKernels<double>;
#define X_SAMPLE_PAIRS(X, Y)                                                                       \
    template void XfnCountSamplePairs(const X*, const Y*, std::size_t, const std::uint32_t*,       \
                                      const std::uint32_t*, std::uint32_t*, std::uint32_t*)
X_SAMPLE_PAIRS(std::uint8_t, std::uint8_t);
X_SAMPLE_PAIRS(std::uint8_t, std::uint16_t);
X_SAMPLE_PAIRS(std::uint16_t, std::uint8_t);
X_SAMPLE_PAIRS(std::uint16_t, std::uint16_t);
