#include "bench/BenchVectorKernels.h"

std::size_t XfnCountRangesAt(const double* ranges, std::size_t count, std::size_t stride, double x,
                             double y)
{
    std::size_t hits = 0;
    for (std::size_t i = 0; i < count; ++i, ranges += stride) {
        hits += static_cast<std::size_t>((ranges[0] <= x) & (ranges[3] >= x) & (ranges[1] <= y) &
                                         (ranges[4] >= y));
    }
    return hits;
}
