#include "foundation/raster/XComplexPartKernels.h"

#include "foundation/raster/XDMBandComplex.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace {

template <class T, class R, class F>
void Convert(const T* parts, std::size_t count, bool hasNull, T nullValue, R* __restrict out, F f)
{
    for (std::size_t i = 0; i < count; ++i) {
        const T re = parts[2 * i];
        const T im = parts[2 * i + 1];
        const R v = static_cast<R>(f(static_cast<double>(re), static_cast<double>(im)));
        bool isData = !(hasNull & (re == nullValue) & (im == T(0)));
        isData &= v - v == R(0);
        // one part alone would hide that the other is broken
        if constexpr (std::is_floating_point_v<T>) isData &= (re - re == T(0)) & (im - im == T(0));
        out[i] = isData ? v : std::numeric_limits<R>::quiet_NaN();
    }
}

} // namespace

template <class T, class R>
void XfnConvertComplex(int part, const T* parts, std::size_t count, bool hasNull, T nullValue,
                       R* out)
{
    const auto convert = [&](auto f) { Convert(parts, count, hasNull, nullValue, out, f); };
    switch (part) {
    case kXComplexPhase:
        return convert([](double re, double im) { return std::atan2(im, re); });
    case kXComplexReal:
        return convert([](double re, double) { return re; });
    case kXComplexImaginary:
        return convert([](double, double im) { return im; });
    case kXComplexIntensity:
        return convert([](double re, double im) { return re * re + im * im; });
    case kXComplexLogMagnitude:
        return convert([](double re, double im) { return 20.0 * std::log10(std::hypot(re, im)); });
    default:
        // squares of doubles may leave their range, those of the other types do not
        if constexpr (std::is_same_v<T, double>)
            return convert([](double re, double im) { return std::hypot(re, im); });
        else
            return convert([](double re, double im) { return std::sqrt(re * re + im * im); });
    }
}

#define X_COMPLEX_LOOPS(T, R)                                                                      \
    template void XfnConvertComplex(int, const T*, std::size_t, bool, T, R*);
X_COMPLEX_LOOPS(std::uint8_t, float)
X_COMPLEX_LOOPS(std::int8_t, float)
X_COMPLEX_LOOPS(std::uint16_t, float)
X_COMPLEX_LOOPS(std::int16_t, float)
X_COMPLEX_LOOPS(std::uint32_t, double)
X_COMPLEX_LOOPS(std::int32_t, double)
X_COMPLEX_LOOPS(float, float)
X_COMPLEX_LOOPS(double, double)
#undef X_COMPLEX_LOOPS
