#include "foundation/raster/XStretchLUT.h"

#include "foundation/base/XPtrList.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompositeChannel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace {

constexpr int kBinCount = 256;
using Curve = std::array<double, kBinCount>;

Curve Identity()
{
    Curve curve;
    for (int i = 0; i < kBinCount; ++i)
        curve[i] = i / 255.0;
    return curve;
}

/// The share of the mass above bin 0 up to each bin. 0 when there is none; then the curve stays.
int CumulativeShare(const long long* histogram, Curve& curve)
{
    if (!histogram) return 0;
    Curve sums{};
    double sum = 0.0;
    for (int i = 1; i < kBinCount; ++i) {
        sum += static_cast<double>(std::max(histogram[i], 0LL));
        sums[i] = sum;
    }
    if (!(sum > 0.0)) return 0;
    for (int i = 0; i < kBinCount; ++i)
        curve[i] = sums[i] / sum;
    return 1;
}

double NormalShare(double sigma)
{
    return 0.5 * std::erfc(-sigma / std::sqrt(2.0));
}

/// The place in 0..1 at which the normal distribution cut at 3 sigma has passed each share.
Curve NormalPlaces(Curve shares)
{
    static const double low = NormalShare(-3.0);
    static const double mass = NormalShare(3.0) - low;
    double begin = -3.0; // the shares rise, so each search starts at the last result
    for (double& share : shares) {
        const double wanted = low + share * mass;
        double from = begin;
        double to = 3.0;
        for (int step = 0; step < 24; ++step) { // 6 sigma / 2^24: far below a display level
            const double middle = 0.5 * (from + to);
            (NormalShare(middle) < wanted ? from : to) = middle;
        }
        begin = from;
        share = std::clamp((0.5 * (from + to) + 3.0) / 6.0, 0.0, 1.0);
    }
    shares.front() = 0.0; // the ends stand exactly
    shares.back() = 1.0;
    return shares;
}

Curve MakeCurve(int type, const long long* histogram)
{
    Curve curve = Identity();
    switch (type) {
    case kXStretchLogarithmic:
        for (double& t : curve)
            t = std::log1p(255.0 * t) / std::log(256.0);
        break;
    case kXStretchInverseSquare:
        for (double& t : curve)
            t *= t;
        break;
    case kXStretchSquareRoot:
        for (double& t : curve)
            t = std::sqrt(t);
        break;
    case kXStretchEqualization:
        CumulativeShare(histogram, curve);
        break;
    case kXStretchGaussian:
        if (CumulativeShare(histogram, curve)) curve = NormalPlaces(curve);
        break;
    default:
        break;
    }
    return curve;
}

unsigned char ToLevel(double value)
{
    return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0, 255.0)));
}

void FillPiecewise(unsigned char* lut, unsigned char low, unsigned char high,
                   const XPtrList* points)
{
    std::vector<tagXHistPt> knots{{0, low}};
    if (points) {
        for (__POSITION* pos = points->GetHeadPosition(); pos;) {
            const auto* point = static_cast<const tagXHistPt*>(points->GetNext(pos));
            if (!point || point->position < knots.back().position) continue;
            if (point->position == knots.back().position)
                knots.pop_back(); // replaces the start too
            knots.push_back(*point);
        }
    }
    if (knots.back().position < 255) knots.push_back({255, high});
    lut[knots.front().position] = knots.front().value;
    for (std::size_t k = 1; k < knots.size(); ++k) {
        const tagXHistPt a = knots[k - 1];
        const tagXHistPt b = knots[k];
        const double slope = (static_cast<double>(b.value) - a.value) / (b.position - a.position);
        for (int i = a.position; i <= b.position; ++i)
            lut[i] = ToLevel(a.value + slope * (i - a.position));
    }
}

} // namespace

void XfnStretchLUT(int type, unsigned char* lut, unsigned char intensity000,
                   unsigned char intensity255, const XPtrList* points, const long long* histogramIn,
                   long long* histogramOut)
{
    if (type == kXStretchPiecewise) {
        FillPiecewise(lut, intensity000, intensity255, points);
    } else {
        const Curve curve = MakeCurve(type, histogramIn);
        const double low = intensity000;
        const double span = static_cast<double>(intensity255) - low;
        for (int i = 0; i < kBinCount; ++i)
            lut[i] = ToLevel(low + span * curve[i]);
    }
    if (!histogramOut) return;
    std::fill_n(histogramOut, kBinCount, 0LL);
    for (int i = 0; histogramIn && i < kBinCount; ++i)
        histogramOut[lut[i]] += histogramIn[i];
}

int XfnApplyCutToHistogram(const long long* source, double min, double max, double cutMin,
                           double cutMax, long long* applied)
{
    if (!XfnIsSet(min) || !XfnIsSet(max) || !XfnIsSet(cutMin) || !XfnIsSet(cutMax)) return 0;
    if (!(min < max)) return 0;
    const auto toBin = [min, max](double value) {
        return static_cast<int>(std::clamp((value - min) / (max - min) * 255.0, -1e6, 1e6));
    };
    const int low = std::max(toBin(cutMin), 0);
    const int high = std::min(toBin(cutMax), 255);
    if (low > high) return 0;
    if (low == 0 && high == 255) {
        std::copy_n(source, kBinCount, applied);
        return 1;
    }
    std::fill_n(applied, kBinCount, 0LL);
    const int span = high - low;
    for (int i = low; i <= high; ++i) {
        const int target = span > 0 ? static_cast<int>((i - low) * 255.0 / span + 0.5) : 0;
        applied[target] = source[i];
    }
    applied[0] += std::accumulate(source, source + low, 0LL);
    // the last bin is left out of this sum: stretches stored by hosts were made so
    for (int i = high + 1; i < 255; ++i)
        applied[255] += source[i];
    return 1;
}
