#include "bench/BenchStatisticsKernels.h"

void XfnPlainTablePass(const std::uint16_t* samples, std::size_t count, long long* table)
{
    for (std::size_t i = 0; i < count; ++i)
        ++table[samples[i] & 255u];
}
