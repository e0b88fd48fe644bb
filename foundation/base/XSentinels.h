#pragma once

#include <bit>
#include <cstdint>

/// Values that stand for "there is none", shared by every model, file and dialog.
///
/// They are exact bit patterns that are stored in files, so they are compared for equality.

/// A coordinate, statistic or number that is not set; also the start of a running minimum.
inline constexpr double kXNotSet = 1.7e308;

/// A pixel without data; also the start of a running maximum.
inline constexpr double kXNoData = -1.7e308;

/// The centre of a band that is not known.
inline constexpr double kXUnsetCentre = -2147483648.0;

static_assert(std::bit_cast<std::uint64_t>(kXNotSet) == 0x7FEE42D130773B76u);

/// 1 when `value` is a number to compute with: neither sentinel nor beyond one, no NaN, no infinity.
constexpr int XfnIsSet(double value)
{
    return value > kXNoData && value < kXNotSet ? 1 : 0;
}
