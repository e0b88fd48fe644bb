#pragma once

#include <cstddef>

/// The pass that filters are measured against: every sample read, multiplied, written.
void XfnPlainScale(const float* src, std::ptrdiff_t stride, int width, int height, float factor,
                   float* out);
