#include "foundation/raster/XDrawKernels.h"

#include <limits>

template <class R>
void XfnMixRows(const R* __restrict upper, const R* __restrict lower, R part, R skip, int n,
                R* __restrict values, R* __restrict weights)
{
    const R rest = R(1) - part;
    for (int i = 0; i < n; ++i) {
        const R a = upper[i];
        const R b = lower[i];
        const R wa = (a == a) & (a != skip) ? rest : R(0);
        const R wb = (b == b) & (b != skip) ? part : R(0);
        // a sample that does not count may be NaN, and NaN times 0 is NaN
        values[i] = (wa > R(0) ? a * wa : R(0)) + (wb > R(0) ? b * wb : R(0));
        weights[i] = wa + wb;
    }
}

template <class R>
void XfnMixColumns(const R* __restrict values, const R* __restrict weights,
                   const int* __restrict left, const int* __restrict right,
                   const R* __restrict parts, int n, R* __restrict out)
{
    for (int i = 0; i < n; ++i) {
        const R part = parts[i];
        const R rest = R(1) - part;
        // a weight of 0 silences an infinite neighbour too
        const R sum = (rest > R(0) ? values[left[i]] * rest : R(0)) +
                      (part > R(0) ? values[right[i]] * part : R(0));
        const R weight = weights[left[i]] * rest + weights[right[i]] * part;
        out[i] = weight > R(0) ? sum / weight : std::numeric_limits<R>::quiet_NaN();
    }
}

template <class R>
void XfnLerpRows(const R* __restrict upper, const R* __restrict lower, R part, int n,
                 R* __restrict values)
{
    const R rest = R(1) - part;
    for (int i = 0; i < n; ++i)
        values[i] = upper[i] * rest + lower[i] * part;
}

template <class R>
void XfnLerpColumns(const R* __restrict values, const int* __restrict left,
                    const int* __restrict right, const R* __restrict parts, int n,
                    R* __restrict out)
{
    for (int i = 0; i < n; ++i) {
        const R a = values[left[i]];
        out[i] = a + (values[right[i]] - a) * parts[i];
    }
}

void XfnPlacePixels(const double* __restrict positionsX, const double* __restrict positionsY, int n,
                    int width, int height, int* __restrict columns, int* __restrict rows)
{
    const double endX = width;
    const double endY = height;
    for (int i = 0; i < n; ++i) {
        const double x = positionsX[i];
        const double y = positionsY[i];
        const bool isInside = (x >= 0.0) & (x < endX) & (y >= 0.0) & (y < endY);
        // what is outside may be NaN or too large to convert
        const int column = static_cast<int>(isInside ? x : 0.0);
        const int row = static_cast<int>(isInside ? y : 0.0);
        columns[i] = isInside ? column : -1;
        rows[i] = row;
    }
}

template <class R>
void XfnMixTaps(const R* const taps[4], const R* __restrict partsX, const R* __restrict partsY,
                R skip, int n, R* __restrict out)
{
    const R* __restrict t0 = taps[0];
    const R* __restrict t1 = taps[1];
    const R* __restrict t2 = taps[2];
    const R* __restrict t3 = taps[3];
    for (int i = 0; i < n; ++i) {
        const R x = partsX[i];
        const R y = partsY[i];
        R sum = 0;
        R weight = 0;
        const auto add = [&](R value, R share) {
            const R own = (value == value) & (value != skip) ? share : R(0);
            sum += own > R(0) ? value * own : R(0);
            weight += own;
        };
        add(t0[i], (R(1) - x) * (R(1) - y));
        add(t1[i], x * (R(1) - y));
        add(t2[i], (R(1) - x) * y);
        add(t3[i], x * y);
        out[i] = weight > R(0) ? sum / weight : std::numeric_limits<R>::quiet_NaN();
    }
}

template void XfnMixRows(const float*, const float*, float, float, int, float*, float*);
template void XfnMixRows(const double*, const double*, double, double, int, double*, double*);
template void XfnMixColumns(const float*, const float*, const int*, const int*, const float*, int,
                            float*);
template void XfnMixColumns(const double*, const double*, const int*, const int*, const double*,
                            int, double*);
template void XfnMixTaps(const float* const[4], const float*, const float*, float, int, float*);
template void XfnMixTaps(const double* const[4], const double*, const double*, double, int,
                         double*);
template void XfnLerpRows(const float*, const float*, float, int, float*);
template void XfnLerpRows(const double*, const double*, double, int, double*);
template void XfnLerpColumns(const float*, const int*, const int*, const float*, int, float*);
template void XfnLerpColumns(const double*, const int*, const int*, const double*, int, double*);
