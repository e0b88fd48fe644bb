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

template <class T>
void AverageReal(const T* finer, double nullValue, const tagXLevelAxis& x, const tagXLevelAxis& y,
                 T* out)
{
    bool hasNull = false;
    const T null = XfnNullSample<T>(nullValue, hasNull);
    const std::size_t stride = static_cast<std::size_t>(x.end - x.begin);
    const std::size_t width = x.first.size();
    for (std::size_t j = 0; j < y.first.size(); ++j) {
        const T* top = finer + stride * static_cast<std::size_t>(y.first[j]);
        for (std::size_t i = 0; i < width; ++i) {
            const T* corner = top + x.first[i];
            double sum = 0.0;
            double share = 0.0;
            T valid = T();
            for (int r = 0; r < y.count[j]; ++r) {
                const T* row = corner + stride * static_cast<std::size_t>(r);
                for (int c = 0; c < x.count[i]; ++c) {
                    const T v = row[c];
                    if ((hasNull && v == null) || !IsNumber(v)) continue;
                    const double w = y.weight[3 * j + static_cast<std::size_t>(r)] *
                                     x.weight[3 * i + static_cast<std::size_t>(c)];
                    sum += w * static_cast<double>(v);
                    share += w;
                    valid = v;
                }
            }
            if (share > 0.0) {
                const double mean = sum / share;
                const T sample = std::isfinite(mean) ? ToSample<T>(mean) : valid;
                out[i] = (hasNull && sample == null) || !IsNumber(sample) ? valid : sample;
            } else {
                out[i] = corner[stride * static_cast<std::size_t>(y.count[j] / 2) +
                                static_cast<std::size_t>(x.count[i] / 2)];
            }
        }
        out += width;
    }
}

template <class T>
void AverageComplex(const T* finer, const tagXLevelAxis& x, const tagXLevelAxis& y, T* out)
{
    const std::size_t stride = 2 * static_cast<std::size_t>(x.end - x.begin);
    const std::size_t width = x.first.size();
    for (std::size_t j = 0; j < y.first.size(); ++j) {
        const T* top = finer + stride * static_cast<std::size_t>(y.first[j]);
        for (std::size_t i = 0; i < width; ++i) {
            const T* corner = top + 2 * static_cast<std::size_t>(x.first[i]);
            double re = 0.0;
            double im = 0.0;
            double share = 0.0;
            const T* valid = nullptr;
            for (int r = 0; r < y.count[j]; ++r) {
                const T* row = corner + stride * static_cast<std::size_t>(r);
                for (int c = 0; c < x.count[i]; ++c) {
                    const T* v = row + 2 * c;
                    if (!IsNumber(v[0]) || !IsNumber(v[1])) continue;
                    const double w = y.weight[3 * j + static_cast<std::size_t>(r)] *
                                     x.weight[3 * i + static_cast<std::size_t>(c)];
                    re += w * static_cast<double>(v[0]);
                    im += w * static_cast<double>(v[1]);
                    share += w;
                    valid = v;
                }
            }
            if (!valid)
                valid = corner + stride * static_cast<std::size_t>(y.count[j] / 2) +
                        2 * static_cast<std::size_t>(x.count[i] / 2);
            const bool isMean = share > 0.0 && std::isfinite(re) && std::isfinite(im);
            out[2 * i] = isMean ? ToSample<T>(re / share) : valid[0];
            out[2 * i + 1] = isMean ? ToSample<T>(im / share) : valid[1];
        }
        out += 2 * width;
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
            AverageComplex(static_cast<const T*>(finer), x, y, static_cast<T*>(out));
        else
            AverageReal(static_cast<const T*>(finer), nullValue, x, y, static_cast<T*>(out));
        return 1;
    });
}
