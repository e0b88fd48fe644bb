#include "foundation/raster/XSpatialFilterKernels.h"

#include "foundation/raster/XMedianKernels.h"
#include "foundation/raster/XNullSample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

constexpr int kMaxRadius = 5;
constexpr int kLanes = 8;

template <class R>
constexpr R kNaN = std::numeric_limits<R>::quiet_NaN();

// An image in memory, its origin anywhere inside.
template <class R>
struct tagPlane
{
    R* base;
    std::ptrdiff_t stride;

    R* Row(int y) const { return base + stride * y; }
};

template <class R>
bool IsFinite(R v)
{
    return v - v == R(0);
}

// 1 when a sample of the rectangle is not finite.
template <class R>
bool HasGaps(const R* first, std::ptrdiff_t stride, int width, int height)
{
    R lanes[kLanes] = {};
    for (int y = 0; y < height; ++y, first += stride) {
        int x = 0;
        for (; x + kLanes <= width; x += kLanes)
            for (int k = 0; k < kLanes; ++k)
                lanes[k] += first[x + k] * R(0); // 0 unless it is not finite
        for (; x < width; ++x)
            lanes[0] += first[x] * R(0);
    }
    R sum = 0;
    for (const R lane : lanes)
        sum += lane;
    return sum != R(0);
}

// One output row of a convolution with the symmetric weights w[0] (centre) .. w[Radius] in both
// directions. `column` is a row of width + 2 Radius samples for the sums down the columns.
template <class R, int Radius>
void SmoothRow(const R* src, std::ptrdiff_t stride, const R* w, int width, R* __restrict column,
               R* __restrict dst)
{
    const R* rows[2 * Radius + 1];
    for (int k = -Radius; k <= Radius; ++k)
        rows[k + Radius] = src + stride * k - Radius;
    const int wide = width + 2 * Radius;
    for (int x = 0; x < wide; ++x) {
        R sum = w[0] * rows[Radius][x];
        for (int k = 1; k <= Radius; ++k)
            sum += w[k] * (rows[Radius - k][x] + rows[Radius + k][x]);
        column[x] = sum;
    }
    for (int x = 0; x < width; ++x) {
        R sum = w[0] * column[x + Radius];
        for (int k = 1; k <= Radius; ++k)
            sum += w[k] * (column[x + Radius - k] + column[x + Radius + k]);
        dst[x] = sum;
    }
}

template <class R>
using XSmoothRow = void (*)(const R*, std::ptrdiff_t, const R*, int, R*, R*);

template <class R>
XSmoothRow<R> GetSmoothRow(int radius)
{
    static constexpr XSmoothRow<R> kRows[kMaxRadius] = {
        SmoothRow<R, 1>, SmoothRow<R, 2>, SmoothRow<R, 3>, SmoothRow<R, 4>, SmoothRow<R, 5>};
    return kRows[radius - 1];
}

// The weights of one direction, and what both directions sum up to.
template <class R>
struct tagWeights
{
    std::array<R, kMaxRadius + 1> w{};
    R total = 1;
};

// Ones, so that the sums of integers are exact.
template <class R>
tagWeights<R> MakeMean(int radius)
{
    tagWeights<R> made;
    made.w.fill(1);
    made.total = static_cast<R>((2 * radius + 1) * (2 * radius + 1));
    return made;
}

template <class R>
tagWeights<R> MakeGaussian(int radius)
{
    const double s = (2 * radius + 1) / 5.0;
    double sum = 1.0;
    for (int k = 1; k <= radius; ++k)
        sum += 2.0 * std::exp(-k * k / (2.0 * s * s));
    tagWeights<R> made;
    for (int k = 0; k <= radius; ++k)
        made.w[static_cast<std::size_t>(k)] =
            static_cast<R>(std::exp(-k * k / (2.0 * s * s)) / sum);
    return made;
}

// Smooths width x height samples; reads `radius` further ones on every side.
template <class R>
void Smooth(const tagWeights<R>& weights, int radius, bool hasGaps, const R* src,
            std::ptrdiff_t stride, int width, int height, tagPlane<R> dst, std::vector<R>& scratch)
{
    const XSmoothRow<R> smoothRow = GetSmoothRow<R>(radius);
    const std::size_t wide = static_cast<std::size_t>(width) + 2 * radius;
    const std::size_t high = static_cast<std::size_t>(height) + 2 * radius;
    const R* w = weights.w.data();
    const auto need = [&scratch](std::size_t count) {
        if (scratch.size() < count) scratch.resize(count);
    };
    if (!hasGaps) {
        need(wide);
        for (int y = 0; y < height; ++y) {
            R* __restrict out = dst.Row(y);
            smoothRow(src + stride * y, stride, w, width, scratch.data(), out);
            if (weights.total != R(1))
                for (int x = 0; x < width; ++x)
                    out[x] /= weights.total;
        }
        return;
    }
    // the samples with zeros in the gaps, and where there are samples
    need(wide * (2 * high + 1) + static_cast<std::size_t>(width));
    R* column = scratch.data();
    R* shares = column + wide;
    R* values = shares + width;
    R* present = values + wide * high;
    for (std::size_t y = 0; y < high; ++y) {
        const R* row = src + stride * (static_cast<std::ptrdiff_t>(y) - radius) - radius;
        R* __restrict v = values + wide * y;
        R* __restrict p = present + wide * y;
        for (std::size_t x = 0; x < wide; ++x) {
            v[x] = IsFinite(row[x]) ? row[x] : R(0);
            p[x] = IsFinite(row[x]) ? R(1) : R(0);
        }
    }
    const std::size_t origin = wide * static_cast<std::size_t>(radius) + radius;
    for (int y = 0; y < height; ++y) {
        const std::size_t at = origin + wide * static_cast<std::size_t>(y);
        const std::ptrdiff_t step = static_cast<std::ptrdiff_t>(wide);
        R* __restrict out = dst.Row(y);
        smoothRow(values + at, step, w, width, column, out);
        smoothRow(present + at, step, w, width, column, shares);
        const R* centre = present + at;
        for (int x = 0; x < width; ++x)
            out[x] = centre[x] != R(0) ? out[x] / shares[x] : kNaN<R>;
    }
}

// The eight neighbours of a sample, those without data equal to it.
template <bool Gaps, class R>
R Take(R v, R centre)
{
    if constexpr (Gaps) return IsFinite(v) ? v : centre;
    return v;
}

template <bool Gaps, class R>
void SobelRow(const R* up, const R* at, const R* down, int width, R* __restrict dst)
{
    for (int x = 0; x < width; ++x) {
        const R c = at[x];
        const R nw = Take<Gaps>(up[x - 1], c), n = Take<Gaps>(up[x], c);
        const R ne = Take<Gaps>(up[x + 1], c), e = Take<Gaps>(at[x + 1], c);
        const R se = Take<Gaps>(down[x + 1], c), s = Take<Gaps>(down[x], c);
        const R sw = Take<Gaps>(down[x - 1], c), w = Take<Gaps>(at[x - 1], c);
        const R across = (ne - nw) + R(2) * (e - w) + (se - sw);
        const R along = (sw - nw) + R(2) * (s - n) + (se - ne);
        const R result = std::sqrt(across * across + along * along);
        dst[x] = !Gaps || IsFinite(c) ? result : kNaN<R>;
    }
}

template <bool Gaps, class R>
void LaplacianRow(const R* up, const R* at, const R* down, int width, R* __restrict dst)
{
    for (int x = 0; x < width; ++x) {
        const R c = at[x];
        const R corners = (Take<Gaps>(up[x - 1], c) - c) + (Take<Gaps>(up[x + 1], c) - c) +
                          (Take<Gaps>(down[x - 1], c) - c) + (Take<Gaps>(down[x + 1], c) - c);
        const R sides = (Take<Gaps>(up[x], c) - c) + (Take<Gaps>(down[x], c) - c) +
                        (Take<Gaps>(at[x - 1], c) - c) + (Take<Gaps>(at[x + 1], c) - c);
        const R result = (corners + R(2) * sides) * R(0.25);
        dst[x] = !Gaps || IsFinite(c) ? result : kNaN<R>;
    }
}

template <bool Gaps, class R>
void Derive(int type, const R* src, std::ptrdiff_t stride, int width, int height, tagPlane<R> dst)
{
    for (int y = 0; y < height; ++y) {
        const R* at = src + stride * y;
        if (type == kXFilterSobel)
            SobelRow<Gaps>(at - stride, at, at + stride, width, dst.Row(y));
        else
            LaplacianRow<Gaps>(at - stride, at, at + stride, width, dst.Row(y));
    }
}

} // namespace

template <class R>
void XfnFilterReals(const tagXSpatialFilter& filter, const R* src, std::ptrdiff_t srcStride,
                    int width, int height, R* dst, std::ptrdiff_t dstStride,
                    std::vector<R>& scratch)
{
    if (width < 1 || height < 1) return;
    const int radius = XfnGetFilterRadius(filter);
    const tagPlane<R> out{dst, dstStride};
    if (radius == 0) {
        for (int y = 0; y < height; ++y) {
            const R* in = src + srcStride * y;
            R* __restrict row = out.Row(y);
            for (int x = 0; x < width; ++x)
                row[x] = IsFinite(in[x]) ? in[x] : kNaN<R>;
        }
        return;
    }
    const bool hasGaps = HasGaps(src - srcStride * radius - radius, srcStride, width + 2 * radius,
                                 height + 2 * radius);
    switch (filter.type) {
    case kXFilterMean:
        Smooth(MakeMean<R>(radius), radius, hasGaps, src, srcStride, width, height, out, scratch);
        return;
    case kXFilterMedian:
        XfnMedianReals(radius, hasGaps, src, srcStride, width, height, dst, dstStride);
        return;
    case kXFilterGaussian:
    case kXFilterSharpen:
        Smooth(MakeGaussian<R>(radius), radius, hasGaps, src, srcStride, width, height, out,
               scratch);
        if (filter.type == kXFilterGaussian) return;
        for (int y = 0; y < height; ++y) {
            const R* in = src + srcStride * y;
            R* __restrict row = out.Row(y);
            const R amount = static_cast<R>(filter.amount);
            for (int x = 0; x < width; ++x)
                row[x] = in[x] + amount * (in[x] - row[x]);
        }
        return;
    default:
        break;
    }
    if (radius == 1) {
        if (hasGaps)
            Derive<true>(filter.type, src, srcStride, width, height, out);
        else
            Derive<false>(filter.type, src, srcStride, width, height, out);
        return;
    }
    const int wide = width + 2;
    std::vector<R> smoothed(static_cast<std::size_t>(wide) *
                            (static_cast<std::size_t>(height) + 2));
    Smooth(MakeGaussian<R>(radius - 1), radius - 1, hasGaps, src - srcStride - 1, srcStride, wide,
           height + 2, tagPlane<R>{smoothed.data(), wide}, scratch);
    const R* centre = smoothed.data() + wide + 1;
    if (hasGaps)
        Derive<true>(filter.type, centre, std::ptrdiff_t(wide), width, height, out);
    else
        Derive<false>(filter.type, centre, std::ptrdiff_t(wide), width, height, out);
}

template <class T, class R>
int XfnLoadReals(const T* src, std::size_t count, double nullValue, R* __restrict out)
{
    bool hasNull = false;
    const T null = XfnNullSample<T>(nullValue, hasNull);
    int hasGaps = 0;
    if (!hasNull && !std::is_floating_point_v<T>) {
        for (std::size_t i = 0; i < count; ++i)
            out[i] = static_cast<R>(src[i]);
        return 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
        bool isData = !hasNull || src[i] != null;
        if constexpr (std::is_floating_point_v<T>) isData &= src[i] - src[i] == T(0);
        out[i] = isData ? static_cast<R>(src[i]) : kNaN<R>;
        hasGaps |= !isData;
    }
    return hasGaps;
}

template <class T, class R>
void XfnStoreReals(const R* reals, std::size_t count, double nullValue, T* __restrict out)
{
    bool hasNull = false;
    const T null = XfnNullSample<T>(nullValue, hasNull);
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>) {
        const T gap = hasNull ? null : kNaN<T>;
        const T beside = std::nextafter(null, null > T(0) ? T(0) : Limits::max());
        for (std::size_t i = 0; i < count; ++i) {
            const T v = static_cast<T>(reals[i]);
            const T kept = hasNull && v == null ? beside : v;
            out[i] = IsFinite(v) ? kept : gap;
        }
    } else {
        const T gap = hasNull ? null : T(0);
        const T beside = null < Limits::max() ? static_cast<T>(null + 1) : static_cast<T>(null - 1);
        constexpr R low = static_cast<R>(Limits::lowest());
        constexpr R high = static_cast<R>(Limits::max());
        for (std::size_t i = 0; i < count; ++i) {
            R v = reals[i];
            const bool isData = v == v;
            v = v > low ? v : low; // in this order a NaN becomes a number
            v = v < high ? v : high;
            const T held = static_cast<T>(v + (v < R(0) ? R(-0.5) : R(0.5)));
            const T kept = hasNull && held == null ? beside : held;
            out[i] = isData ? kept : gap;
        }
    }
}

template void XfnFilterReals(const tagXSpatialFilter&, const float*, std::ptrdiff_t, int, int,
                             float*, std::ptrdiff_t, std::vector<float>&);
template void XfnFilterReals(const tagXSpatialFilter&, const double*, std::ptrdiff_t, int, int,
                             double*, std::ptrdiff_t, std::vector<double>&);

#define X_SAMPLE_LOOPS(T, R)                                                                       \
    template int XfnLoadReals(const T*, std::size_t, double, R*);                                  \
    template void XfnStoreReals(const R*, std::size_t, double, T*);
X_SAMPLE_LOOPS(std::uint8_t, float)
X_SAMPLE_LOOPS(std::int8_t, float)
X_SAMPLE_LOOPS(std::uint16_t, float)
X_SAMPLE_LOOPS(std::int16_t, float)
X_SAMPLE_LOOPS(std::uint32_t, double)
X_SAMPLE_LOOPS(std::int32_t, double)
X_SAMPLE_LOOPS(float, float)
X_SAMPLE_LOOPS(double, double)
#undef X_SAMPLE_LOOPS
