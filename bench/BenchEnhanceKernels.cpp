#include "bench/BenchEnhanceKernels.h"

void XfnPlainCounterPass(const long long* __restrict from, long long* __restrict to)
{
    for (int i = 0; i < 256; ++i)
        to[i] += from[i];
}
