#include "foundation/raster/XBlockKernels.h"

#include "foundation/raster/XBandStatistics.h"
#include "foundation/raster/XWideRegisters.h"

#include <algorithm>
#include <cmath>

#define X_LOOP static inline __attribute__((always_inline))

namespace {

// Each loop is compiled twice, for the plain and for the wide registers of the processor. Fused
// multiply-add stays off, and partial sums have their order: both give the same bits.

constexpr int kLanes = 8;
constexpr int kPartners = 4; // blocks multiplied with one at a time: their sums fit the registers

double JoinLanes(const double (&lanes)[kLanes])
{
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

/// Half of the partial sums. The compiler makes poor code of eight plain sums in a loop; of this it
/// makes one wide operation, or two narrow ones, element by element.
typedef double Quad __attribute__((vector_size(32), aligned(8), may_alias));

X_LOOP const Quad& At(const double* p)
{
    return *reinterpret_cast<const Quad*>(p);
}

X_LOOP Quad& At(double* p)
{
    return *reinterpret_cast<Quad*>(p);
}

X_LOOP void Range(const double* v, std::size_t n, double& low, double& high)
{
    double lows[kLanes], highs[kLanes];
    for (int k = 0; k < kLanes; ++k)
        lows[k] = highs[k] = v[0];
    Quad low0 = At(lows), low1 = low0, high0 = low0, high1 = low0;
    std::size_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        const Quad a = At(v + i), b = At(v + i + 4);
        low0 = a < low0 ? a : low0;
        low1 = b < low1 ? b : low1;
        high0 = a > high0 ? a : high0;
        high1 = b > high1 ? b : high1;
    }
    At(lows) = low0;
    At(lows + 4) = low1;
    At(highs) = high0;
    At(highs + 4) = high1;
    for (; i < n; ++i) {
        lows[0] = v[i] < lows[0] ? v[i] : lows[0];
        highs[0] = v[i] > highs[0] ? v[i] : highs[0];
    }
    low = lows[0];
    high = highs[0];
    for (int k = 1; k < kLanes; ++k) {
        low = lows[k] < low ? lows[k] : low;
        high = highs[k] > high ? highs[k] : high;
    }
}

X_LOOP double Centre(double* v, std::size_t n)
{
    // about one of the samples first: equal samples have exactly their value as mean, and a mean that
    // is large against the spread costs no digits
    const double origin = v[0];
    double lanes[kLanes] = {};
    Quad sum0 = At(lanes), sum1 = sum0;
    std::size_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        const Quad a = At(v + i) - origin, b = At(v + i + 4) - origin;
        At(v + i) = a;
        At(v + i + 4) = b;
        sum0 += a;
        sum1 += b;
    }
    At(lanes) = sum0;
    At(lanes + 4) = sum1;
    for (int k = 0; i < n; ++i, ++k) {
        v[i] -= origin;
        lanes[k] += v[i];
    }
    const double mean = JoinLanes(lanes) / static_cast<double>(n);
    for (i = 0; i < n; ++i)
        v[i] -= mean;
    return origin + mean;
}

X_LOOP double Product(const double* a, const double* b, std::size_t n)
{
    double lanes[kLanes] = {};
    Quad sum0 = At(lanes), sum1 = sum0;
    std::size_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        sum0 += At(a + i) * At(b + i);
        sum1 += At(a + i + 4) * At(b + i + 4);
    }
    At(lanes) = sum0;
    At(lanes + 4) = sum1;
    for (int k = 0; i < n; ++i, ++k)
        lanes[k] += a[i] * b[i];
    return JoinLanes(lanes);
}

X_LOOP void FourProducts(const double* a, const double* b0, std::size_t stride, std::size_t n,
                         double (&sums)[kPartners])
{
    const double* b1 = b0 + stride;
    const double* b2 = b1 + stride;
    const double* b3 = b2 + stride;
    double lanes[kPartners][kLanes] = {};
    Quad p0 = At(lanes[0]), q0 = p0, p1 = p0, q1 = p0, p2 = p0, q2 = p0, p3 = p0, q3 = p0;
    std::size_t s = 0;
    for (; s + kLanes <= n; s += kLanes) {
        const Quad u = At(a + s), v = At(a + s + 4);
        p0 += u * At(b0 + s);
        q0 += v * At(b0 + s + 4);
        p1 += u * At(b1 + s);
        q1 += v * At(b1 + s + 4);
        p2 += u * At(b2 + s);
        q2 += v * At(b2 + s + 4);
        p3 += u * At(b3 + s);
        q3 += v * At(b3 + s + 4);
    }
    At(lanes[0]) = p0, At(lanes[0] + 4) = q0;
    At(lanes[1]) = p1, At(lanes[1] + 4) = q1;
    At(lanes[2]) = p2, At(lanes[2] + 4) = q2;
    At(lanes[3]) = p3, At(lanes[3] + 4) = q3;
    for (int k = 0; s < n; ++s, ++k) {
        lanes[0][k] += a[s] * b0[s];
        lanes[1][k] += a[s] * b1[s];
        lanes[2][k] += a[s] * b2[s];
        lanes[3][k] += a[s] * b3[s];
    }
    for (int partner = 0; partner < kPartners; ++partner)
        sums[partner] = JoinLanes(lanes[partner]);
}

X_LOOP void Bins(const double* v, std::size_t n, double unit, double low, double range, int* bins)
{
    for (std::size_t i = 0; i < n; ++i) {
        double t = (v[i] * unit - low) * 255.0 / range;
        t = t > 0.0 ? t : 0.0;
        t = t < 255.0 ? t : 255.0;
        bins[i] = static_cast<int>(t);
    }
}

X_WIDE void RangeWide(const double* v, std::size_t n, double& low, double& high)
{
    Range(v, n, low, high);
}
X_WIDE double CentreWide(double* v, std::size_t n)
{
    return Centre(v, n);
}
X_WIDE double ProductWide(const double* a, const double* b, std::size_t n)
{
    return Product(a, b, n);
}
X_WIDE void FourProductsWide(const double* a, const double* b0, std::size_t stride, std::size_t n,
                             double (&sums)[kPartners])
{
    FourProducts(a, b0, stride, n, sums);
}
X_WIDE void BinsWide(const double* v, std::size_t n, double unit, double low, double range,
                     int* bins)
{
    Bins(v, n, unit, low, range, bins);
}

} // namespace

void tagXBinTables::MoveTo(long long* histogram)
{
    for (auto& table : counts) {
        for (int bin = 0; bin < 256; ++bin) {
            histogram[bin] += table[bin];
            table[bin] = 0;
        }
    }
}

std::size_t XfnPackBlock(const double* v, const unsigned char* valid, std::size_t n, double* out)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < n; ++i) {
        out[count] = v[i];
        count += valid[i] != 0;
    }
    return count;
}

std::size_t XfnExcludeValue(const double* v, std::size_t n, double value, unsigned char* valid)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < n; ++i) {
        valid[i] = valid[i] && v[i] != value;
        count += valid[i];
    }
    return count;
}

void XfnBlockRange(const double* v, std::size_t n, double& low, double& high)
{
    XfnHasWideRegisters() ? RangeWide(v, n, low, high) : Range(v, n, low, high);
}

double XfnCentreBlock(double* v, std::size_t n)
{
    if (n == 0) return 0.0;
    return XfnHasWideRegisters() ? CentreWide(v, n) : Centre(v, n);
}

double XfnBlockProduct(const double* a, const double* b, std::size_t n)
{
    return XfnHasWideRegisters() ? ProductWide(a, b, n) : Product(a, b, n);
}

void XfnBlockProducts(const double* blocks, std::size_t stride, int bands, std::size_t n,
                      double* products)
{
    const auto put = [&](int i, int j, double value) {
        products[static_cast<std::size_t>(i) * bands + j] = value;
        products[static_cast<std::size_t>(j) * bands + i] = value;
    };
    for (int i = 0; i < bands; ++i) {
        const double* a = blocks + stride * i;
        int j = i;
        // the last group reaches back over pairs that are known already, with the same result
        for (; j < bands && bands >= kPartners; j += kPartners) {
            j = std::min(j, bands - kPartners);
            const double* b = blocks + stride * j;
            double sums[kPartners];
            XfnHasWideRegisters() ? FourProductsWide(a, b, stride, n, sums)
                                  : FourProducts(a, b, stride, n, sums);
            for (int k = 0; k < kPartners; ++k)
                put(i, j + k, sums[k]);
        }
        for (; j < bands; ++j)
            put(i, j, XfnBlockProduct(a, blocks + stride * j, n));
    }
}

tagXMoments XfnBlockMoments(double* v, std::size_t n)
{
    tagXMoments block;
    block.count = static_cast<long long>(n);
    if (n == 0) return block;
    XfnBlockRange(v, n, block.min, block.max);
    if (block.max - block.min <= 1e300) {
        block.mean = XfnCentreBlock(v, n);
    } else { // a difference of two samples may leave the range of a double
        for (std::size_t i = 0; i < n; ++i)
            block.mean += v[i] / static_cast<double>(n);
        for (std::size_t i = 0; i < n; ++i)
            v[i] -= block.mean;
    }
    block.squares = XfnBlockProduct(v, v, n);
    return block;
}

tagXBinScale::tagXBinScale(double min, double max)
    : unit(std::isfinite((max - min) * 255.0) ? 1.0 : 1.0 / 512.0),
      low(min * unit),
      range(max * unit - low)
{}

void XfnBlockBins(const double* v, std::size_t n, const tagXBinScale& scale, tagXBinTables& tables)
{
    if (!(scale.range > 0.0)) {
        tables.counts[0][0] += static_cast<std::uint32_t>(n);
        return;
    }
    int bins[kXBlock];
    XfnHasWideRegisters() ? BinsWide(v, n, scale.unit, scale.low, scale.range, bins)
                          : Bins(v, n, scale.unit, scale.low, scale.range, bins);
    std::size_t i = 0;
    for (; i + tagXBinTables::kTables <= n; i += tagXBinTables::kTables)
        for (int k = 0; k < tagXBinTables::kTables; ++k)
            ++tables.counts[k][bins[i + k]];
    for (; i < n; ++i)
        ++tables.counts[0][bins[i]];
}

void XfnTableBins(const double* v, std::size_t n, const std::uint8_t* table, tagXBinTables& tables)
{
    std::size_t i = 0;
    for (; i + tagXBinTables::kTables <= n; i += tagXBinTables::kTables)
        for (int k = 0; k < tagXBinTables::kTables; ++k)
            ++tables.counts[k][table[static_cast<std::uint16_t>(static_cast<int>(v[i + k]))]];
    for (; i < n; ++i)
        ++tables.counts[0][table[static_cast<std::uint16_t>(static_cast<int>(v[i]))]];
}
