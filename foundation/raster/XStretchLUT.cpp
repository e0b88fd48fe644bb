#include "foundation/raster/XStretchLUT.h"

#include "foundation/base/XPtrList.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompositeChannel.h"
#include "foundation/raster/XStretchLUTKernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
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

double NormalShare(double sigma)
{
    return 0.5 * std::erfc(-sigma / std::sqrt(2.0));
}

constexpr int kCells = 8192;

/// The place in 0..1 at which the normal distribution cut at 3 sigma has passed the share
/// i / kCells; between two, straight interpolation misses by less than a fiftieth of a level. One
/// more at the end, for the share 1.
std::array<double, kCells + 2> MakeNormalPlaces()
{
    std::array<double, kCells + 2> places;
    const double low = NormalShare(-3.0);
    const double mass = NormalShare(3.0) - low;
    double sigma = -3.0; // Newton's method, from the place before
    for (int i = 1; i < kCells / 2; ++i) {
        const double wanted = low + mass * i / kCells;
        for (int step = 0; step < 4; ++step) {
            const double density = 0.3989422804014327 * std::exp(-0.5 * sigma * sigma);
            sigma -= (NormalShare(sigma) - wanted) / density;
        }
        places[i] = (sigma + 3.0) / 6.0;
        places[kCells - i] = 1.0 - places[i];
    }
    places[0] = 0.0; // the ends and the middle stand exactly
    places[kCells / 2] = 0.5;
    places[kCells] = places[kCells + 1] = 1.0;
    return places;
}

/// A curve that is always the same, with its table between the intensities 0 and 255.
struct tagFixedCurve
{
    Curve curve = Identity();
    std::array<unsigned char, kBinCount> levels;

    template <class Function>
    explicit tagFixedCurve(Function function)
    {
        for (double& t : curve)
            t = function(t);
        XfnCurveToLevels(curve.data(), 0.0, 255.0, levels.data());
    }
};

const tagFixedCurve& GetFixedCurve(int type)
{
    static const tagFixedCurve linear([](double t) { return t; });
    static const tagFixedCurve logarithmic(
        [](double t) { return std::log1p(255.0 * t) / std::log(256.0); });
    static const tagFixedCurve inverseSquare([](double t) { return t * t; });
    static const tagFixedCurve squareRoot([](double t) { return std::sqrt(t); });
    switch (type) {
    case kXStretchLogarithmic:
        return logarithmic;
    case kXStretchInverseSquare:
        return inverseSquare;
    case kXStretchSquareRoot:
        return squareRoot;
    default:
        return linear;
    }
}

/// The table of a type that a histogram decides. 0 for other types, and when there is no mass.
int FillByHistogram(int type, const long long* histogram, double low, double span,
                    unsigned char* lut)
{
    if (type != kXStretchEqualization && type != kXStretchGaussian) return 0;
    Curve sums;
    const double total = histogram ? XfnSumMass(histogram, sums.data()) : 0.0;
    if (!(total > 0.0)) return 0;
    if (type == kXStretchEqualization) {
        XfnSharesToLevels(sums.data(), total, low, span, lut);
    } else {
        static const auto places = MakeNormalPlaces();
        XfnMatchedSharesToLevels(sums.data(), total, places.data(), kCells, low, span, lut);
    }
    return 1;
}

void FillPiecewise(unsigned char* lut, unsigned char low, unsigned char high,
                   const XPtrList* points)
{
    // positions rise, so that there is at most one knot for each of them
    std::array<tagXHistPt, kBinCount + 1> knots;
    std::size_t count = 0;
    knots[count++] = {0, low};
    if (points) {
        for (__POSITION* pos = points->GetHeadPosition(); pos;) {
            const auto* point = static_cast<const tagXHistPt*>(points->GetNext(pos));
            if (!point || point->position < knots[count - 1].position) continue;
            if (point->position == knots[count - 1].position) --count; // replaces the start too
            knots[count++] = *point;
        }
    }
    if (knots[count - 1].position < 255) knots[count++] = {255, high};
    for (std::size_t k = 1; k < count; ++k) {
        const tagXHistPt a = knots[k - 1];
        const tagXHistPt b = knots[k];
        const int span = b.position - a.position;
        XfnFillLine(a.value, (static_cast<double>(b.value) - a.value) / span, span,
                    lut + a.position);
    }
    lut[255] = knots[count - 1].value;
}

} // namespace

void XfnStretchLUT(int type, unsigned char* lut, unsigned char intensity000,
                   unsigned char intensity255, const XPtrList* points, const long long* histogramIn,
                   long long* histogramOut)
{
    if (type == kXStretchPiecewise) {
        FillPiecewise(lut, intensity000, intensity255, points);
    } else {
        const double low = intensity000;
        const double span = intensity255 - low;
        if (!FillByHistogram(type, histogramIn, low, span, lut)) {
            const tagFixedCurve& fixed = GetFixedCurve(type);
            if (span == 255.0)
                std::copy_n(fixed.levels.data(), kBinCount, lut);
            else
                XfnCurveToLevels(fixed.curve.data(), low, span, lut);
        }
    }
    if (!histogramOut) return;
    if (histogramIn)
        XfnSendThroughTable(histogramIn, lut, histogramOut);
    else
        std::fill_n(histogramOut, kBinCount, 0LL);
}

int XfnApplyCutToHistogram(const long long* source, double min, double max, double cutMin,
                           double cutMax, long long* applied)
{
    if (!XfnIsSet(min) || !XfnIsSet(max) || !XfnIsSet(cutMin) || !XfnIsSet(cutMax)) return 0;
    if (!(min < max) || !std::isfinite(max - min)) return 0;
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
    const auto add = [source](long long& count, int begin, int end) { // counts may wrap
        const auto own = static_cast<std::uint64_t>(count);
        count = static_cast<long long>(std::accumulate(source + begin, source + end, own));
    };
    XfnSpreadBins(source, low, high, applied);
    add(applied[0], 0, low);
    // the last bin is left out of this sum: stretches stored by hosts were made so
    if (high < 255) add(applied[255], high + 1, 255);
    return 1;
}
