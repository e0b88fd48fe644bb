#pragma once

#include "foundation/base/XSentinels.h"

#include <cmath>
#include <limits>
#include <type_traits>

/// The null value of a band as its real type holds it.
/// @param hasNull  false when no sample can equal it: there is none, it is NaN (which is never data
///                 anyway), or the type cannot hold it
template <class T>
T XfnNullSample(double nullValue, bool& hasNull)
{
    hasNull = false;
    if (!std::isfinite(nullValue) || nullValue == kXNotSet) return T();
    if constexpr (std::is_floating_point_v<T>) {
        hasNull = std::fabs(nullValue) <= static_cast<double>(std::numeric_limits<T>::max());
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
