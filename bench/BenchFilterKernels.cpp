#include "bench/BenchFilterKernels.h"

void XfnPlainScale(const float* src, std::ptrdiff_t stride, int width, int height, float factor,
                   float* __restrict out)
{
    for (int y = 0; y < height; ++y, src += stride, out += width)
        for (int x = 0; x < width; ++x)
            out[x] = src[x] * factor;
}
