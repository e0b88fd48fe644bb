#pragma once

#include <cstddef>

/// How many of `count` ranges hold a point, by reading them all once. Each is `stride` reals: the
/// least x, y and z, then the greatest.
std::size_t XfnCountRangesAt(const double* ranges, std::size_t count, std::size_t stride, double x,
                             double y);
