#include "foundation/raster/XDMLevelKernels.h"

#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>

namespace {

template <class T>
bool IsNumber(T v)
{
    if constexpr (std::is_floating_point_v<T>)
        return std::fabs(static_cast<double>(v)) < kXNotSet; // not so for NaN
    else
        return true;
}

/// A mean of samples of the type, as one of them. Adding and taking away this number rounds half to
/// even, for all that an integer of 32 bits may be.
template <class T>
T ToSample(double mean)
{
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(mean);
    } else {
        constexpr double kRound = 6755399441055744.0; // 1.5 * 2^52
        return static_cast<T>((mean + kRound) - kRound);
    }
}

/// Samples of one or two parts, and which of them have no data.
template <class T, int kParts>
struct tagSource
{
    T null = T();
    bool hasNull = false;
    std::size_t stride = 0; // parts a row

    bool IsValid(const T* v) const
    {
        if constexpr (kParts == 1)
            return !(hasNull && v[0] == null) && IsNumber(v[0]);
        else
            return !(hasNull && v[0] == null && v[1] == T(0)) && IsNumber(v[0]) && IsNumber(v[1]);
    }
};

/// The area of one sample of a level.
template <class T>
struct tagArea
{
    const T* corner;
    const double* across; // shares
    const double* down;
    int columns;
    int rows;
};

/// The sample with the largest share of those with data, which is the nearest to the middle of the
/// area; the one in the middle where there is none.
template <class T, int kParts>
const T* FindNearest(const tagSource<T, kParts>& source, const tagArea<T>& area)
{
    const T* nearest = area.corner + source.stride * static_cast<std::size_t>(area.rows / 2) +
                       kParts * static_cast<std::size_t>(area.columns / 2);
    double largest =
        source.IsValid(nearest) ? area.down[area.rows / 2] * area.across[area.columns / 2] : 0.0;
    for (int r = 0; r < area.rows; ++r) {
        for (int c = 0; c < area.columns; ++c) {
            const T* v = area.corner + source.stride * static_cast<std::size_t>(r) +
                         kParts * static_cast<std::size_t>(c);
            const double share = area.down[r] * area.across[c];
            if (!source.IsValid(v) || !(share > largest)) continue;
            nearest = v;
            largest = share;
        }
    }
    return nearest;
}

template <class T, int kParts>
void Average(const T* finer, double nullValue, const tagXLevelAxis& x, const tagXLevelAxis& y,
             T* out)
{
    tagSource<T, kParts> source;
    source.null = XfnNullSample<T>(nullValue, source.hasNull);
    source.stride = kParts * static_cast<std::size_t>(x.end - x.begin);
    const std::size_t width = x.first.size();
    for (std::size_t j = 0; j < y.first.size(); ++j) {
        const T* top = finer + source.stride * static_cast<std::size_t>(y.first[j]);
        for (std::size_t i = 0; i < width; ++i, out += kParts) {
            const tagArea<T> area = {top + kParts * static_cast<std::size_t>(x.first[i]),
                                     &x.weight[3 * i], &y.weight[3 * j], x.count[i], y.count[j]};
            double sums[kParts] = {};
            double share = 0.0;
            for (int r = 0; r < area.rows; ++r) {
                const T* v = area.corner + source.stride * static_cast<std::size_t>(r);
                for (int c = 0; c < area.columns; ++c, v += kParts) {
                    if (!source.IsValid(v)) continue;
                    const double w = area.down[r] * area.across[c];
                    for (int part = 0; part < kParts; ++part)
                        sums[part] += w * static_cast<double>(v[part]);
                    share += w;
                }
            }
            bool isMean = share > 0.0;
            for (int part = 0; part < kParts; ++part) {
                const double mean = sums[part] / share;
                isMean &= std::isfinite(mean);
                out[part] = isMean ? ToSample<T>(mean) : T();
            }
            if (isMean && source.IsValid(out)) continue;
            std::copy_n(FindNearest(source, area), kParts, out);
        }
    }
}

} // namespace

tagXLevelAxis XfnMakeLevelAxis(int from, int to, int size, int finerSize)
{
    tagXLevelAxis axis;
    // in units of 1 / size of a finer sample everything is whole
    const std::int64_t unit = size;
    for (std::int64_t i = from; i < to; ++i) {
        const std::int64_t low = i * finerSize;
        const std::int64_t high = low + finerSize;
        const int first = static_cast<int>(low / unit);
        const int count = static_cast<int>((high - 1) / unit) - first + 1;
        axis.first.push_back(first);
        axis.count.push_back(count);
        for (std::int64_t k = first; k < first + 3LL; ++k) {
            const std::int64_t covered = std::min(high, (k + 1) * unit) - std::max(low, k * unit);
            axis.weight.push_back(static_cast<double>(std::max<std::int64_t>(covered, 0)) /
                                  static_cast<double>(unit));
        }
    }
    axis.begin = axis.first.front();
    axis.end = axis.first.back() + axis.count.back();
    for (int& first : axis.first)
        first -= axis.begin;
    return axis;
}

void XfnAverageLevel(const void* finer, int dataType, double nullValue, const tagXLevelAxis& x,
                     const tagXLevelAxis& y, void* out)
{
    XfnDispatchRealType<int>(XfnGetPartType(dataType), [&]<class T>(const T*) {
        if (XfnIsComplexType(dataType))
            Average<T, 2>(static_cast<const T*>(finer), nullValue, x, y, static_cast<T*>(out));
        else
            Average<T, 1>(static_cast<const T*>(finer), nullValue, x, y, static_cast<T*>(out));
        return 1;
    });
}
