#pragma once

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XRasterTypes.h"

#include <cmath>
#include <limits>
#include <type_traits>

// What has no data: a real sample that equals the null value in its own type, a complex one whose
// real part does and whose imaginary part is 0.

/// The null value of a band as its real type, or the parts of its complex type, hold it.
/// @param hasNull  false when no sample can equal it: there is none, it is NaN (which is never data
///                 anyway), or the type cannot hold it
template <class T>
T XfnNullSample(double nullValue, bool& hasNull)
{
    hasNull = false;
    if (std::isnan(nullValue) || nullValue == kXNotSet) return T();
    if constexpr (std::is_floating_point_v<T>) {
        hasNull = std::isinf(nullValue) ||
                  std::fabs(nullValue) <= static_cast<double>(std::numeric_limits<T>::max());
        // headers round the largest float up or down by a digit
        if (!hasNull && std::fabs(nullValue) < 3.4029e38) {
            hasNull = true;
            return nullValue < 0 ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
        }
        return hasNull ? static_cast<T>(nullValue) : T();
    } else {
        if (nullValue < static_cast<double>(std::numeric_limits<T>::lowest()) ||
            nullValue > static_cast<double>(std::numeric_limits<T>::max()))
            return T();
        const T value = static_cast<T>(nullValue);
        hasNull = static_cast<double>(value) == nullValue;
        return value;
    }
}

/// The same to compare with samples that were read as doubles, for a data type code; NaN when no
/// sample can equal it.
inline double XfnNullNumber(double nullValue, int dataType)
{
    return XfnDispatchRealType<double>(XfnGetPartType(dataType), [&]<class T>(const T*) {
        bool hasNull = false;
        const T null = XfnNullSample<T>(nullValue, hasNull);
        return hasNull ? static_cast<double>(null) : std::numeric_limits<double>::quiet_NaN();
    });
}
