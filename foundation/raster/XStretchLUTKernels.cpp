#include "foundation/raster/XStretchLUTKernels.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr int kBinCount = 256;

/// Rounded, of a value that leaves 0..255 by rounding errors at most.
inline unsigned char ToLevel(double value)
{
    return static_cast<unsigned char>(static_cast<int>(value + 0.5));
}

/// The level of a value in 0..255 that a multiplication by a reciprocal has moved a little.
/// `isDoubtful` becomes non-zero when the true one may round to the level beside.
inline unsigned char QuickLevel(double value, int& isDoubtful)
{
    constexpr double kSlack = 1e-9; // against errors of at most 1e-11
    const int level = static_cast<int>(value + (0.5 + kSlack));
    isDoubtful |= level ^ static_cast<int>(value + (0.5 - kSlack));
    return static_cast<unsigned char>(level);
}

inline double Interpolate(const double* samples, double place)
{
    const int cell = static_cast<int>(place);
    return samples[cell] + (samples[cell + 1] - samples[cell]) * (place - cell);
}

/// Counts may wrap.
inline std::uint64_t ContinuedSum(std::uint64_t sum, bool isContinued, long long count)
{
    return (sum & (0 - static_cast<std::uint64_t>(isContinued))) +
           static_cast<std::uint64_t>(count);
}

} // namespace

void XfnCurveToLevels(const double* __restrict curve, double low, double span,
                      unsigned char* __restrict lut)
{
    for (int i = 0; i < kBinCount; ++i)
        lut[i] = ToLevel(low + span * curve[i]);
}

double XfnSumMass(const long long* __restrict histogram, double* __restrict sums)
{
    // in integers, where an addition waits less for the one before than in floating point; while
    // no count is negative or reaches 2^44 no sum reaches 2^52, and both ways are exact
    constexpr int kBits = 44;
    std::uint64_t sum = 0;
    std::uint64_t all = 0;
    sums[0] = 0.0;
    for (int i = 1; i < kBinCount; ++i) {
        const auto count = static_cast<std::uint64_t>(histogram[i]);
        all |= count;
        sum += count;
        sums[i] = static_cast<double>(static_cast<long long>(sum));
    }
    if (all >> kBits == 0) return sums[kBinCount - 1];
    double total = 0.0;
    for (int i = 1; i < kBinCount; ++i) {
        total += static_cast<double>(std::max(histogram[i], 0LL));
        sums[i] = total;
    }
    return total;
}

void XfnSharesToLevels(const double* __restrict sums, double total, double low, double span,
                       unsigned char* __restrict lut)
{
    const double factor = span / total;
    int isDoubtful = 0;
    for (int i = 0; i < kBinCount; ++i)
        lut[i] = QuickLevel(low + sums[i] * factor, isDoubtful);
    if (!isDoubtful) return;
    double curve[kBinCount];
    for (int i = 0; i < kBinCount; ++i)
        curve[i] = sums[i] / total;
    XfnCurveToLevels(curve, low, span, lut);
}

void XfnMatchedSharesToLevels(const double* __restrict sums, double total,
                              const double* __restrict samples, int cells, double low, double span,
                              unsigned char* __restrict lut)
{
    double curve[kBinCount];
    const double factor = cells / total;
    for (int i = 0; i < kBinCount; ++i)
        curve[i] = Interpolate(samples, sums[i] * factor);
    int isDoubtful = 0;
    for (int i = 0; i < kBinCount; ++i)
        lut[i] = QuickLevel(low + span * curve[i], isDoubtful);
    if (!isDoubtful) return;
    for (int i = 0; i < kBinCount; ++i)
        curve[i] = Interpolate(samples, sums[i] / total * cells);
    XfnCurveToLevels(curve, low, span, lut);
}

void XfnFillLine(double from, double slope, int count, unsigned char* __restrict levels)
{
    for (int i = 0; i < count; ++i)
        levels[i] = ToLevel(from + slope * i);
}

void XfnSpreadBins(const long long* __restrict source, int low, int high,
                   long long* __restrict applied)
{
    std::fill_n(applied, kBinCount, 0LL);
    const int span = high - low;
    if (span == 0) {
        applied[0] = source[low];
        return;
    }
    // i * 255 / span, rounded, as (510 i + span) / (2 span): by the reciprocal, which is exact for
    // numerators below 2^17
    const auto divisor = static_cast<std::uint64_t>(2 * span);
    const std::uint64_t reciprocal = ((std::uint64_t{1} << 32) + divisor - 1) / divisor;
    std::uint64_t place = static_cast<std::uint64_t>(span) * reciprocal;
    for (int i = low; i <= high; ++i) {
        applied[place >> 32] = source[i];
        place += 510 * reciprocal;
    }
}

void XfnSendThroughTable(const long long* __restrict in, const unsigned char* __restrict lut,
                         long long* __restrict out)
{
    unsigned char rises = 0, falls = 0;
    for (int i = 1; i < kBinCount; ++i) {
        rises |= lut[i - 1] < lut[i];
        falls |= lut[i - 1] > lut[i];
    }
    std::fill_n(out, kBinCount, 0LL);
    if (rises & falls) {
        for (int i = 0; i < kBinCount; ++i)
            out[lut[i]] = static_cast<long long>(static_cast<std::uint64_t>(out[lut[i]]) +
                                                 static_cast<std::uint64_t>(in[i]));
        return;
    }
    // the bins of a level are neighbours: their sum stays in a register instead of being read back,
    // and starts anew by a mask, since a branch on the levels of a real table is guessed wrong
    // often. From both ends at once, as neither waits for the other
    std::uint64_t front = 0, back = 0;
    unsigned char frontLevel = lut[0], backLevel = lut[kBinCount - 1];
    for (int i = 0, j = kBinCount - 1; i < j; ++i, --j) {
        front = ContinuedSum(front, lut[i] == frontLevel, in[i]);
        back = ContinuedSum(back, lut[j] == backLevel, in[j]);
        frontLevel = lut[i];
        backLevel = lut[j];
        out[frontLevel] = static_cast<long long>(front);
        out[backLevel] = static_cast<long long>(back);
    }
    if (frontLevel == backLevel) out[frontLevel] = static_cast<long long>(front + back);
}
